#include "show/graph_ranges.h"

#include <algorithm>
#include <array>
#include <limits>

#include "show/regional_curve.h"

namespace anomalis::show {

namespace {

/// So many least and greatest values side by side, so that one need not wait for the one before.
constexpr std::size_t lanes = 16;
constexpr auto least_reading = static_cast<float>(missing_limit);

struct Extremes {
    std::array<float, lanes> low;
    std::array<float, lanes> high;

    void take(std::size_t lane, float value) {
        const bool there = value > least_reading && value <= std::numeric_limits<float>::max();
        const float for_low = there ? value : std::numeric_limits<float>::infinity();
        const float for_high = there ? value : -std::numeric_limits<float>::infinity();
        low[lane] = for_low < low[lane] ? for_low : low[lane];
        high[lane] = for_high > high[lane] ? for_high : high[lane];
    }
};

void widen(std::span<const float> curve, double& low, double& high) {
    Extremes seen;
    seen.low.fill(std::numeric_limits<float>::infinity());
    seen.high.fill(-std::numeric_limits<float>::infinity());
    std::size_t i = 0;
    for (; i + lanes <= curve.size(); i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) seen.take(lane, curve[i + lane]);
    for (; i < curve.size(); ++i) seen.take(0, curve[i]);
    low = std::min(low, static_cast<double>(*std::min_element(seen.low.begin(), seen.low.end())));
    high = std::max(high, static_cast<double>(*std::max_element(seen.high.begin(), seen.high.end())));
}

}  // namespace

int channel_of_chart(int chart) {
    return chart == edit::chart_mag || chart == edit::chart_mag_gradient ? channel_mag : channel_grav;
}

std::span<const float> chart_curve(const Workspace& workspace, int chart, Stage stage) {
    if (stage == stage_calculated && workspace.body_count <= 0) return {};
    const bool gradient = chart == edit::chart_mag_gradient || chart == edit::chart_grav_gradient;
    const ChannelTable& data = workspace.channel(channel_of_chart(chart)).data;
    return data.row(gradient ? workspace.gradient_row_in_use() : workspace.residual_row, stage);
}

GraphRanges graph_ranges(const Workspace& workspace) {
    GraphRanges ranges;
    for (int chart = 0; chart < edit::profile_chart_count; ++chart) {
        double& low = ranges.low.at(static_cast<std::size_t>(chart));
        double& high = ranges.high.at(static_cast<std::size_t>(chart));
        low = empty_low;
        high = empty_high;
        const std::span<const float> observed = chart_curve(workspace, chart, stage_observed);
        widen(observed, low, high);
        if (const auto held = with_regional_held(workspace, chart, observed); !held.empty()) {
            double held_low = empty_low, held_high = empty_high;
            widen(held, held_low, held_high);
            low = std::max(low, held_low);
            high = std::min(high, held_high);
        }
        widen(chart_curve(workspace, chart, stage_calculated), low, high);
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
