#pragma once

#include <cmath>

#include "core/body_parameters.h"
#include "core/ensemble.h"
#include "core/model_mark.h"
#include "core/workspace.h"

namespace anomalis {

/// An ensemble that is in force of a workspace: top and width of body 1 in `count` models, spread evenly by
/// 20 m and 40 m about their values, and a fan of 10 nT to both sides of the calculated residual of stations
/// 11 to 91.
inline Ensemble ensemble_about(const Workspace& workspace, int count = 60) {
    Ensemble ensemble;
    const ModelBody& body = workspace.body(1);
    for (const int code : {param_top, param_width}) {
        const float value = body_param(body, code).value;
        const double half = code == param_top ? 20 : 40;
        ensemble.parameters.push_back({.body = 1,
                                       .param_code = code,
                                       .value = value,
                                       .lower = static_cast<double>(value) - half,
                                       .upper = static_cast<double>(value) + half,
                                       .median = value});
    }
    for (int i = 0; i < count; ++i) {
        const float part = (static_cast<float>(i) + 0.5F) / static_cast<float>(count) - 0.5F;
        EnsembleSample sample;
        for (const EnsembleParameter& p : ensemble.parameters)
            sample.values.push_back(p.value + part * static_cast<float>(p.upper - p.lower));
        sample.mag_rms = 2;
        ensemble.samples.push_back(sample);
    }
    EnsembleFan fan{.channel = channel_mag, .first_station = 11, .lower = {}, .upper = {}};
    const auto curve = workspace.mag.data.row(workspace.residual_row, stage_calculated);
    for (std::size_t i = 10; i < 91 && i < curve.size(); ++i) {
        fan.lower.push_back(curve[i] - 10);
        fan.upper.push_back(curve[i] + 10);
    }
    ensemble.fans.push_back(fan);
    ensemble.words = {"Top of body 1: 84 to 118 m below ground (90 %)"};
    ensemble.model_mark = model_mark(workspace);
    return ensemble;
}

}  // namespace anomalis
