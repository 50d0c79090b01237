#include "show/graph_ranges.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "edit/line_sample.h"
#include "model/evaluate.h"

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
        setup_graph_data_ranges(workspace(), ranges, prompts);
    }
    GraphRanges ranges;
};

}  // namespace

TEST(GraphRanges, without_a_body_the_calculated_curves_have_no_values) {
    Filled sample(false);
    const auto curve = sample.workspace().graphics.mag.calculated.span();
    EXPECT_TRUE(std::all_of(curve.begin(), curve.end(), [](double v) { return v == no_model_value; }));
    EXPECT_GT(sample.ranges.low[edit::chart_mag], -1000) << "and do not stretch the axis";
}

TEST(GraphRanges, series_are_distance_observed_residual_and_calculated_residual) {
    Filled sample(true);
    const Workspace& w = sample.workspace();
    EXPECT_EQ(w.graphics.mag.distance[51], w.distances[51]);
    EXPECT_EQ(w.graphics.mag.observed[51], w.mag.data(51, row_residual, stage_observed));
    EXPECT_EQ(w.graphics.grav.calculated[40], w.grav.data(40, row_residual, stage_calculated));
    EXPECT_EQ(w.graphics.topography[7], w.stations(7, column_ground));
}

TEST(GraphRanges, the_range_holds_both_curves) {
    Filled sample(true);
    const auto& curves = sample.workspace().graphics.mag;
    double low = 1e9;
    double high = -1e9;
    for (const auto* curve : {&curves.observed, &curves.calculated}) {
        const auto values = curve->span();
        low = std::min(low, *std::min_element(values.begin(), values.end()));
        high = std::max(high, *std::max_element(values.begin(), values.end()));
    }
    EXPECT_EQ(sample.ranges.low[edit::chart_mag], low);
    EXPECT_EQ(sample.ranges.high[edit::chart_mag], high);
}

TEST(GraphRanges, the_gradient_charts_show_the_kind_that_is_chosen) {
    Filled sample(true);
    Workspace& w = sample.workspace();
    EXPECT_EQ(w.graphics.mag_gradient.observed[50], w.mag.data(50, row_gradient, stage_observed));
    w.processing.display_total_gradient = 1;
    invalidate_filtered_data(0, w);
    sample.fill();
    EXPECT_EQ(w.graphics.mag_gradient.observed[50], w.mag.data(50, row_total_gradient, stage_observed));
    EXPECT_GE(sample.ranges.low[edit::chart_mag_gradient], 0);
}

TEST(GraphRanges, nothing_is_filled_while_the_mark_stands) {
    Filled sample(true);
    sample.workspace().graphics.mag.observed[3] = 4711;
    setup_graph_data_ranges(sample.workspace(), sample.ranges, sample.prompts);
    EXPECT_EQ(sample.workspace().graphics.mag.observed[3], 4711);
    sample.workspace().graph_ranges_ready = false;
    setup_graph_data_ranges(sample.workspace(), sample.ranges, sample.prompts);
    EXPECT_NE(sample.workspace().graphics.mag.observed[3], 4711);
}

TEST(GraphRanges, missing_and_infinite_values_do_not_stretch_the_axis) {
    Filled sample(false);
    Workspace& w = sample.workspace();
    w.mag.data(5, row_residual, stage_observed) = -1e32F;
    w.mag.data(6, row_residual, stage_observed) = std::numeric_limits<float>::infinity();
    w.graph_ranges_ready = false;
    setup_graph_data_ranges(w, sample.ranges, sample.prompts);
    EXPECT_GT(sample.ranges.low[edit::chart_mag], -1000);
    EXPECT_LT(sample.ranges.high[edit::chart_mag], 1000);
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
