#include "show/regional_curve.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

#include "chart_sample.h"
#include "edit/settings_boxes.h"

namespace anomalis::show {

namespace {

std::size_t dashed_lines(ChartSample& sample, int chart) {
    const auto lines = sample.device(chart).of_kind(chart::RecordingDevice::Kind::polyline);
    return static_cast<std::size_t>(std::ranges::count_if(
        lines, [](const auto& line) { return line.pen.style == chart::LineStyle::dash; }));
}

}  // namespace

TEST(RegionalCurve, lies_about_its_mean_over_the_fit) {
    ChartSample sample;
    Workspace& w = sample.workspace();
    w.first_station = 20;
    w.last_station = 60;
    w.mag.regional = {1, w.distances[40], 500, {-700, 12, 0, 0}};
    const auto curve = regional_curve(w, edit::chart_mag);
    ASSERT_EQ(curve.size(), static_cast<std::size_t>(w.station_count));
    EXPECT_NEAR(std::accumulate(curve.begin() + 19, curve.begin() + 60, 0.0) / 41, 0, 1e-4);
    EXPECT_NEAR(curve[49] - curve[39], 12 * 250.0 / 500, 1e-4);
}

TEST(RegionalCurve, ends_with_the_stations_of_the_fit) {
    ChartSample sample;
    Workspace& w = sample.workspace();
    w.first_station = 20;
    w.last_station = 60;
    w.mag.regional = {3, w.distances[40], 500, {0, 0, 0, 12}};
    const auto curve = regional_curve(w, edit::chart_mag);
    ASSERT_EQ(curve.size(), static_cast<std::size_t>(w.station_count));
    EXPECT_EQ(std::ranges::count_if(curve, [](float value) { return value > missing_limit; }), 41);
    EXPECT_LT(curve[18], missing_limit);
    EXPECT_GT(curve[19], missing_limit);
    EXPECT_GT(curve[59], missing_limit);
    EXPECT_LT(curve[60], missing_limit);
}

TEST(RegionalCurve, gradients_and_channels_without_one_have_none) {
    ChartSample sample;
    Workspace& w = sample.workspace();
    for (int chart = 0; chart < edit::model_chart_count; ++chart)
        EXPECT_TRUE(regional_curve(w, chart).empty());
    w.mag.regional.degree = 0;
    EXPECT_FALSE(regional_curve(w, edit::chart_mag).empty());
    for (const int chart : {edit::chart_mag_gradient, edit::chart_grav, edit::chart_section})
        EXPECT_TRUE(regional_curve(w, chart).empty());
}

TEST(RegionalCurve, is_drawn_dashed_over_a_scale_that_it_does_not_move) {
    ChartSample sample;
    sample.view->display_model();
    EXPECT_EQ(dashed_lines(sample, edit::chart_mag), 0U);
    edit::change_regional(sample.workbench, channel_mag, 3);
    sample.forget();
    sample.view->display_model();
    EXPECT_GE(dashed_lines(sample, edit::chart_mag), 1U);
    EXPECT_EQ(dashed_lines(sample, edit::chart_grav), 0U);
    const edit::ChartWindow with = sample.workbench.view.charts[edit::chart_mag];
    sample.workbench.view.show_regional = false;
    sample.forget();
    sample.view->redraw();
    EXPECT_EQ(dashed_lines(sample, edit::chart_mag), 0U);
    EXPECT_EQ(sample.workbench.view.charts[edit::chart_mag].chart_min, with.chart_min);
    EXPECT_EQ(sample.workbench.view.charts[edit::chart_mag].chart_max, with.chart_max);
}

}  // namespace anomalis::show
