#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis {
namespace {

void expect_plot(const Rig& rig, double x_low, double x_high, double y_low, double y_high) {
    const Rect plot = rig.chart.PlotRect();
    EXPECT_NEAR(plot.x_low, x_low, 1e-9);
    EXPECT_NEAR(plot.x_high, x_high, 1e-9);
    EXPECT_NEAR(plot.y_low, y_low, 1e-9);
    EXPECT_NEAR(plot.y_high, y_high, 1e-9);
}

void expect_scales(const Rig& rig, double x, double y) {
    EXPECT_NEAR(rig.chart.XAxisScale(), x, 1e-6);
    EXPECT_NEAR(rig.chart.YAxisScale(), y, 1e-6);
}

TEST(Layout, numbers_and_titles_on_both_sides_take_their_room) {
    Rig rig;
    rig.make_a();
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 772.5, 12727.5, 577.5, 3675.0);
    expect_scales(rig, 1.615541, 3.0975);
}

TEST(Layout, one_sided_numbers_take_one_side) {
    Rig rig;
    rig.make_b();
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 772.5, 13500.0, 577.5, 4252.5);
    expect_scales(rig, 1.719932, 3.675);
}

TEST(Layout, numbers_inside_take_no_room) {
    Rig both;
    both.make_a();
    both.chart.AxisLabellingLocation(1);
    ASSERT_EQ(both.chart.Layout(), 0);
    expect_plot(both, 247.5, 13252.5, 247.5, 4005.0);
    expect_scales(both, 1.757432, 3.7575);

    Rig one;
    one.make_b();
    one.chart.AxisLabellingLocation(1);
    ASSERT_EQ(one.chart.Layout(), 0);
    expect_plot(one, 247.5, 13500.0, 247.5, 4252.5);
    expect_scales(one, 1.790878, 4.005);
}

TEST(Layout, axes_off_leave_the_title_alone) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayAxes(false);
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 0.0, 13500.0, 0.0, 4252.5);
    expect_scales(rig, 1.824324, 4.2525);
}

TEST(Layout, a_plain_chart_fills_the_surface) {
    Rig rig;
    rig.make_plain();
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 0.0, 13500.0, 0.0, 4500.0);
    expect_scales(rig, 1.824324, 4.5);
}

}  // namespace
}  // namespace anomalis
