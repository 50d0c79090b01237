#include "show/chart_scales.h"

#include <gtest/gtest.h>

#include "edit/line_sample.h"

namespace anomalis::show {

TEST(ChartScales, a_curve_is_padded_and_stands_between_round_numbers) {
    const AxisScale scale = profile_scale(-24, 574);
    EXPECT_EQ(scale.interval, 100);
    EXPECT_EQ(scale.low, -100);
    EXPECT_EQ(scale.high, 600);
}

TEST(ChartScales, rounding_never_cuts_the_data) {
    for (const auto& [low, high] :
         {std::pair(-0.0021, 0.0038), std::pair(-149.9, 149.9), std::pair(51000.4, 51000.9),
          std::pair(-1e-12, 3e9), std::pair(0.0, 1.0)}) {
        const AxisScale scale = profile_scale(low, high);
        EXPECT_LE(scale.low, low);
        EXPECT_GE(scale.high, high);
    }
}

TEST(ChartScales, a_flat_curve_gets_a_range_of_about_1) {
    const AxisScale scale = profile_scale(7, 7);
    EXPECT_LT(scale.low, 7);
    EXPECT_GT(scale.high, 7);
    EXPECT_LE(scale.high - scale.low, 2);
}

namespace {

/// A line of 2500 m at a height of 100 m with constant sensors, without columns of either.
struct Level : edit::LineSample {
    Level() {
        workspace().definition.z_column = workspace().definition.dtm_column = 0;
        workspace().surface_elevation = 0;
        workspace().sensor_offset = 10;
        load();
    }
    AxisScale scale(double aspect) { return section_scale(workspace(), aspect, length); }
};

}  // namespace

TEST(ChartScales, a_metre_down_is_as_long_as_a_metre_along_where_it_can_be) {
    Level sample;
    sample.add_body(1000, -30);
    const AxisScale scale = sample.scale(0.2);
    EXPECT_DOUBLE_EQ(scale.high, 12.5);
    EXPECT_DOUBLE_EQ(scale.high - scale.low, 0.2 * edit::LineSample::length);
}

TEST(ChartScales, the_section_reaches_twice_the_depth_of_the_lowest_top) {
    Level sample;
    sample.add_body(1000, -30);
    sample.add_body(1500, -400);
    const AxisScale scale = sample.scale(0.2);
    EXPECT_DOUBLE_EQ(scale.low, 12.5 - 500 - 800);
}

TEST(ChartScales, without_bodies_the_section_follows_the_shape_of_the_plot) {
    Level sample;
    const AxisScale scale = sample.scale(0.02);
    EXPECT_DOUBLE_EQ(scale.low, 12.5 - 0.02 * edit::LineSample::length);
}

TEST(ChartScales, the_top_is_the_highest_sensor_or_ground_and_not_below_0) {
    edit::LineSample sample;
    sample.load();
    EXPECT_DOUBLE_EQ(section_scale(sample.workspace(), 0.2, 2500).high, 186 + 10 + 2.5);
    sample.workspace().definition.z_column = 0;
    EXPECT_DOUBLE_EQ(section_scale(sample.workspace(), 0.2, 2500).high, 104 + 10 + 2.5);
    Level below;
    below.workspace().surface_elevation = -300;
    below.load();
    EXPECT_DOUBLE_EQ(below.scale(0.2).high, 2.5);
}

TEST(ChartScales, a_pipe_above_or_below_the_window_is_brought_into_view) {
    Level sample;
    ModelBody& body = sample.add_body(1000, 80, pipe);
    const AxisScale above = sample.scale(0.02);
    EXPECT_DOUBLE_EQ(above.high, 81);
    EXPECT_DOUBLE_EQ(above.high - above.low, 50);
    body.top.value = -600;
    const AxisScale deep = sample.scale(0.02);
    EXPECT_LT(deep.low, -600);
    EXPECT_NEAR(deep.high - deep.low, 50, 1e-9);
}

TEST(ChartScales, a_window_without_height_is_opened) {
    Level sample;
    const AxisScale scale = sample.scale(0);
    EXPECT_DOUBLE_EQ(scale.high - scale.low, 2);
}

}  // namespace anomalis::show
