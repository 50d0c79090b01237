#include "inversion/find/model_trials.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "core/body_parameters.h"
#include "inversion/line_place.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::VectorXd;

constexpr int alone_iterations = 12, joint_iterations = 25, polish_iterations = 12;
/// Noise is at least this part of the range of the readings: no model of geology is truer.
constexpr double least_noise_part = 1e-4;

constexpr double degrees_per_radian = 180 / std::numbers::pi;

}  // namespace

ModelTrials::ModelTrials(LineFit& line, const GrowthRequest& request, Pacer& pacer)
    : request_(request),
      rows_(line.rows(pacer)),
      bank_(line.workspace(), line.channels().front(), request.thick, pacer) {
    for (const LineFit::ChannelRows& rows : rows_)
        floor_.push_back(std::max(0.7 * rows.noise,
                                  least_noise_part * (rows.observed.maxCoeff() - rows.observed.minCoeff())));
}

std::vector<bool> ModelTrials::free_of(const std::vector<ModelBody>& bodies) const {
    std::vector<bool> free(bodies.size(), true);
    for (std::size_t i = 0; i < request_.present.size(); ++i)
        free[i] = request_.free_present && is_sheet(bodies[i].type) && bodies[i].turned_off == 0;
    return free;
}

ModelBody ModelTrials::body_of(const LineFit& line, const Source& source) const {
    const Workspace& workspace = line.workspace();
    ModelBody body;
    body.type = request_.thick ? thick_sheet : thin_sheet;
    body.distance.value = static_cast<float>(source.distance);
    body.top.value =
        static_cast<float>(elevation_at(workspace, source.distance, column_sensor) - source.depth);
    body.dip.value = static_cast<float>(source.dip);
    body.width.value = static_cast<float>(request_.thick ? source.width : 0.1 * source.depth);
    // As a new body stands across the line: rounded, so that an east line gives 0.
    constexpr double unit = 1e4;
    body.strike.value = static_cast<float>(
        std::round((static_cast<double>(workspace.azimuth) * degrees_per_radian + 90) * unit) / unit + 0.0);
    body.susc.value = 10000;
    body.density.value = line.magnetic() && line.channels().size() == 1 ? 2.67F : 0.1F;
    return body;
}

LineNoise ModelTrials::white_noise(const TriedModel& model) const {
    LineNoise noise;
    Index at = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        const Index count = rows_[c].distance.size();
        ResidualCovariance one;
        one.white =
            std::max(std::sqrt(model.residual.segment(at, count).squaredNorm() / static_cast<double>(count)),
                     std::max(floor_[c], 1e-12));
        one.independent = static_cast<double>(count);
        noise.push_back(one);
        at += count;
    }
    return noise;
}

LineNoise ModelTrials::noise_of(const TriedModel& model, Pacer& pacer) const {
    LineNoise noise;
    Index at = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        const Index count = rows_[c].distance.size();
        ResidualCovariance one = find_residual_covariance(
            rows_[c].distance, model.residual.segment(at, count), rows_[c].basis, pacer);
        one.white = std::max(one.white, std::max(floor_[c], 1e-12));
        noise.push_back(one);
        at += count;
    }
    return noise;
}

JudgedModel ModelTrials::judge(const TrialBench& bench, TriedModel model, int found) const {
    JudgedModel judged{.noise = noise_of(model, bench.pacer), .found = found};
    const std::vector<bool> free = free_of(model.bodies);
    if (std::ranges::find(free, true) != free.end()) {
        model = bench.line.fit(std::move(model.bodies), free, judged.noise, polish_iterations, bench.pacer);
        judged.noise = noise_of(model, bench.pacer);
    }
    model = bench.line.as_it_is(std::move(model.bodies), judged.noise, bench.pacer);
    double minus_two_log = model.squares, independent = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        minus_two_log += Whitening(judged.noise[c], rows_[c].distance).log_determinant();
        independent += static_cast<double>(rows_[c].distance.size());
        // Correlated noise has two numbers more.
        if (judged.noise[c].correlated > 0)
            minus_two_log += 2 * std::log(static_cast<double>(rows_[c].distance.size()));
    }
    std::size_t parameters = 0;
    for (std::size_t i = 0; i < free.size(); ++i)
        if (free[i]) parameters += bench.line.free_parameters(model.bodies[i]).size();
    for (const LineFit::ChannelRows& rows : rows_) parameters += static_cast<std::size_t>(rows.basis.cols());
    judged.criterion = minus_two_log + static_cast<double>(parameters) * std::log(std::max(independent, 3.0));
    judged.model = std::move(model);
    return judged;
}

std::vector<Source> ModelTrials::sources(const TriedModel& model, std::size_t count, Pacer& pacer) const {
    return bank_.best(model.residual.head(rows_.front().distance.size()), count, pacer);
}

TriedModel ModelTrials::with_source(const TrialBench& bench, const TriedModel& model, const Source& source,
                                    const LineNoise& noise) const {
    std::vector<ModelBody> bodies = model.bodies;
    bodies.push_back(body_of(bench.line, source));
    std::vector<bool> free(bodies.size(), false);
    free.back() = true;
    return bench.line.fit(std::move(bodies), free, noise, alone_iterations, bench.pacer);
}

TriedModel ModelTrials::refitted(const TrialBench& bench, const TriedModel& model,
                                 const LineNoise& noise) const {
    return bench.line.fit(model.bodies, free_of(model.bodies), noise, joint_iterations, bench.pacer);
}

}  // namespace anomalis::inversion
