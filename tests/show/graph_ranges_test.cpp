#include "show/graph_ranges.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <gtest/gtest.h>

#include "edit/line_sample.h"
#include "model/refresh_model.h"

namespace anomalis::show {

namespace {

struct Filled : edit::LineSample {
    explicit Filled(bool with_body) {
        load();
        if (with_body) add_body(1260, 60);
        fill();
    }
    void fill() {
        model::refresh_model(session);
        ranges = graph_ranges(workspace());
    }
    std::span<const float> curve(int chart, Stage stage) { return chart_curve(workspace(), chart, stage); }
    GraphRanges ranges;
};

}  // namespace

TEST(GraphRanges, without_a_body_the_calculated_curves_have_no_values) {
    Filled sample(false);
    EXPECT_TRUE(sample.curve(edit::chart_mag, stage_calculated).empty());
    EXPECT_FALSE(sample.curve(edit::chart_mag, stage_observed).empty());
    EXPECT_GT(sample.ranges.low[edit::chart_mag], -1000) << "and do not stretch the axis";
}

TEST(GraphRanges, curves_are_the_residual_rows_where_they_stand) {
    Filled sample(true);
    const Workspace& w = sample.workspace();
    EXPECT_EQ(sample.curve(edit::chart_mag, stage_observed).data(),
              w.mag.data.row(row_residual, stage_observed).data());
    EXPECT_EQ(sample.curve(edit::chart_grav, stage_calculated).data(),
              w.grav.data.row(row_residual, stage_calculated).data());
}

TEST(GraphRanges, the_range_holds_both_curves) {
    Filled sample(true);
    float low = 1e9F;
    float high = -1e9F;
    for (const Stage stage : {stage_observed, stage_calculated}) {
        const auto values = sample.curve(edit::chart_mag, stage);
        low = std::min(low, *std::min_element(values.begin(), values.end()));
        high = std::max(high, *std::max_element(values.begin(), values.end()));
    }
    EXPECT_EQ(sample.ranges.low[edit::chart_mag], low);
    EXPECT_EQ(sample.ranges.high[edit::chart_mag], high);
}

TEST(GraphRanges, the_gradient_charts_show_the_kind_that_is_chosen) {
    Filled sample(true);
    Workspace& w = sample.workspace();
    const auto gradient = [&] { return sample.curve(edit::chart_mag_gradient, stage_observed)[49]; };
    EXPECT_EQ(gradient(), w.mag.data(50, row_gradient, stage_observed));
    w.processing.display_total_gradient = 1;
    sample.fill();
    EXPECT_EQ(gradient(), w.mag.data(50, row_total_gradient, stage_observed));
    EXPECT_GE(sample.ranges.low[edit::chart_mag_gradient], 0);
}

TEST(GraphRanges, missing_and_infinite_values_do_not_stretch_the_axis) {
    Filled sample(false);
    Workspace& w = sample.workspace();
    w.mag.data(5, row_residual, stage_observed) = -1e32F;
    w.mag.data(6, row_residual, stage_observed) = std::numeric_limits<float>::infinity();
    const GraphRanges ranges = graph_ranges(w);
    EXPECT_GT(ranges.low[edit::chart_mag], -1000);
    EXPECT_LT(ranges.high[edit::chart_mag], 1000);
}

namespace {

/// A regional of some degree, found over the stations 40 to 60 alone.
struct FittedInWindow : Filled {
    explicit FittedInWindow(std::int32_t degree) : Filled(true) {
        workspace().first_station = 40;
        workspace().last_station = 60;
        workspace().mag.regional_degree = degree;
        fill();
    }
    std::array<float, 2> extremes(std::size_t from, std::size_t to) {
        const auto part = curve(edit::chart_mag, stage_observed).subspan(from, to - from);
        const auto [low, high] = std::ranges::minmax(part);
        return {low, high};
    }
    std::size_t stations() { return static_cast<std::size_t>(workspace().station_count); }
};

}  // namespace

TEST(GraphRanges, a_cubic_of_a_window_does_not_stretch_the_axis_beyond_it) {
    FittedInWindow sample(3);
    const auto [low, high] = sample.extremes(0, sample.stations());
    const auto [fit_low, fit_high] = sample.extremes(39, 60);
    const double shown = sample.ranges.high[edit::chart_mag] - sample.ranges.low[edit::chart_mag];
    EXPECT_GT(high - low, 20 * shown) << "the row itself is as it was";
    EXPECT_LE(sample.ranges.low[edit::chart_mag], fit_low);
    EXPECT_GE(sample.ranges.high[edit::chart_mag], fit_high);
}

TEST(GraphRanges, an_anomaly_beyond_the_window_counts) {
    FittedInWindow sample(1);
    Workspace& w = sample.workspace();
    w.mag.regional.coefficients[1] = 100;  // nT over half the window
    w.body_count = 0;
    for (int station = 1; station <= w.station_count; ++station)
        w.mag.data(station, row_residual, stage_observed) = station == 80 ? 5000 : 0;
    w.mag.data(10, row_residual, stage_observed) = -1e32F;
    const GraphRanges ranges = graph_ranges(w);
    EXPECT_EQ(ranges.high[edit::chart_mag], 5000);
    EXPECT_EQ(ranges.low[edit::chart_mag], 0);
}

TEST(GraphRanges, a_regional_that_goes_on_beyond_the_window_as_the_field_does_takes_no_room) {
    FittedInWindow sample(1);
    Workspace& w = sample.workspace();
    w.mag.regional.coefficients[1] = 1e4;  // nT over half the window
    for (int station = 1; station <= w.station_count; ++station)
        w.mag.data(station, row_residual, stage_observed) = static_cast<float>(station % 2);
    w.body_count = 0;
    const GraphRanges ranges = graph_ranges(w);
    EXPECT_EQ(ranges.low[edit::chart_mag], 0);
    EXPECT_EQ(ranges.high[edit::chart_mag], 1);
}

TEST(GraphRanges, with_all_stations_in_the_fit_the_regional_does_not_matter) {
    FittedInWindow sample(3);
    Workspace& w = sample.workspace();
    w.first_station = 1;
    w.last_station = w.station_count;
    sample.fill();
    const auto [low, high] = sample.extremes(0, sample.stations());
    EXPECT_LE(sample.ranges.low[edit::chart_mag], low);
    EXPECT_GE(sample.ranges.high[edit::chart_mag], high);
}

TEST(GraphRanges, a_channel_without_a_column_and_a_gradient_without_a_filter_have_no_chart) {
    edit::LineSample sample;
    sample.workspace().definition.grav_column = 0;
    EXPECT_EQ(charts_with_data(sample.workspace()), (std::array{true, true, false, false, true}));
    sample.workspace().definition.grav_column = 7;
    sample.workspace().processing.vg_filter_width = 0;
    EXPECT_EQ(charts_with_data(sample.workspace()), (std::array{true, false, true, false, true}));
}

}  // namespace anomalis::show
