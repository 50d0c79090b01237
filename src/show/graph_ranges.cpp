#include "show/graph_ranges.h"

#include <algorithm>
#include <cmath>

namespace anomalis::show {

namespace {

void widen(std::span<const float> curve, double& low, double& high) {
    for (const float single : curve) {
        const auto value = static_cast<double>(single);
        if (!std::isfinite(value) || value <= missing_limit) continue;
        low = std::min(low, value);
        high = std::max(high, value);
    }
}

}  // namespace

std::span<const float> chart_curve(const Workspace& workspace, int chart, Stage stage) {
    if (stage == stage_calculated && workspace.body_count <= 0) return {};
    const bool magnetic = chart == edit::chart_mag || chart == edit::chart_mag_gradient;
    const bool gradient = chart == edit::chart_mag_gradient || chart == edit::chart_grav_gradient;
    const ChannelTable& data = workspace.channel(magnetic ? channel_mag : channel_grav).data;
    return data.row(gradient ? workspace.gradient_row_in_use() : workspace.residual_row, stage);
}

GraphRanges graph_ranges(const Workspace& workspace) {
    GraphRanges ranges;
    for (int chart = 0; chart < edit::profile_chart_count; ++chart) {
        double& low = ranges.low.at(static_cast<std::size_t>(chart));
        double& high = ranges.high.at(static_cast<std::size_t>(chart));
        low = empty_low;
        high = empty_high;
        for (const Stage stage : {stage_observed, stage_calculated})
            widen(chart_curve(workspace, chart, stage), low, high);
        if (low > high) low = high = 0;
    }
    return ranges;
}

std::array<bool, edit::model_chart_count> charts_with_data(const Workspace& workspace) {
    const bool gradients = workspace.processing.vg_filter_width > 0;
    return {workspace.has_mag(), workspace.has_mag() && gradients, workspace.has_grav(),
            workspace.has_grav() && gradients, true};
}

}  // namespace anomalis::show
