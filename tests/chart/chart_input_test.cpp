#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

struct Input : Rig {
    Input() {
        make_plain();
        chart.XAxisLeftMargin(1350.0F);
        register_series({0.0, 7400.0}, {690.0, 690.0});
        chart.DisplayChart();
        log.forget();
    }
};

TEST(ChartInput, inside_the_plot_values_are_user_units) {
    Input rig;
    rig.chart.YAxisType(1);
    rig.set_limits(0.0, 7400.0, 1.0, 1000.0);
    rig.chart.DisplayChart();
    rig.move(0, 1350.0 + 6075.0, 1500.0);
    EXPECT_EQ(rig.log.last_move.outside, 0);
    EXPECT_NEAR(rig.log.last_move.x, 3700.0, 1e-6);
    EXPECT_NEAR(rig.log.last_move.y, 10.0, 1e-6);
    EXPECT_EQ(rig.log.last_move.dx, -1e32);
    EXPECT_EQ(rig.log.last_move.dy, -1e32);
}

TEST(ChartInput, outside_the_plot_values_are_transformed) {
    Input rig;
    rig.chart.YAxisType(1);
    rig.set_limits(0.0, 7400.0, 1.0, 1000.0);
    rig.chart.DisplayChart();
    rig.move(0, 100.0, 1500.0);
    EXPECT_EQ(rig.log.last_move.outside, 1);
    EXPECT_NEAR(rig.log.last_move.y, 2.0, 1e-6);
}

TEST(ChartInput, before_the_first_display_everything_is_outside) {
    Rig rig;
    rig.move(0, 5000.0, 2000.0);
    EXPECT_EQ(rig.log.last_move.outside, 1);
    rig.press(1, 5000.0, 2000.0);
    rig.release(1, 5000.0, 2000.0);
    rig.chart.HandleDoubleClick(1);
    rig.chart.HandleKeyDown(107, 0);
    rig.chart.HandlePinch(2.0, 5000.0F, 2000.0F);
    rig.chart.PanBy(100.0, 100.0);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"MouseMove", "MouseDown(1, 0)", "MouseUp(1, 0)",
                                                       "Click", "KeyDown(107, 0)"}));
}

TEST(ChartInput, a_disabled_chart_is_deaf) {
    Input rig;
    rig.chart.Enabled(false);
    rig.press(1, 5000.0, 2000.0);
    rig.move(1, 5000.0, 100.0);
    rig.release(1, 5000.0, 100.0);
    rig.chart.HandleWheel(0, 120, 5000.0F, 2000.0F);
    rig.chart.HandleKeyDown(107, 0);
    rig.chart.HandleKeyPress(65);
    rig.chart.HandleKeyUp(65, 0);
    rig.chart.HandleDoubleClick(1);
    EXPECT_TRUE(rig.log.names.empty());
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

TEST(ChartInput, places_that_are_no_numbers_are_ignored) {
    Input rig;
    const float bad = std::numeric_limits<float>::quiet_NaN();
    const float endless = std::numeric_limits<float>::infinity();
    rig.chart.HandleMouseDown(1, 0, bad, 0.0F);
    rig.chart.HandleMouseMove(1, 0, 0.0F, endless);
    rig.chart.HandleMouseUp(1, 0, bad, bad);
    rig.chart.HandleWheel(0, 120, bad, 0.0F);
    rig.chart.HandlePinch(std::nan(""), 5000.0F, 2000.0F);
    rig.chart.HandlePinch(0.0, 5000.0F, 2000.0F);
    rig.chart.PanBy(std::nan(""), 0.0);
    EXPECT_TRUE(rig.log.names.empty());
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    rig.press(1, 5000.0, 4000.0);
    rig.chart.HandleMouseMove(1, 0, 5000.0F, 3e38F);
    EXPECT_GT(rig.chart.CurrentZoom().zoom_x, 1e3);
}

TEST(ChartInput, the_wheel_forward_zooms_in_about_the_pointer) {
    Input rig;
    const Point anchor = rig.chart.SurfaceToUser({5000.0, 2000.0});
    rig.chart.HandleWheel(8, 120, 5000.0F, 2500.0F);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.1, 1e-9);
    const Point now = rig.chart.SurfaceToUser({5000.0, 2000.0});
    EXPECT_NEAR(now.x, anchor.x, 1e-3);
    EXPECT_NEAR(now.y, anchor.y, 1e-3);
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"ViewChanged", "MouseMove", "MouseWheel(8, 120)"}));
    rig.chart.HandleWheel(0, -120, 5000.0F, 2500.0F);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

TEST(ChartInput, small_turns_of_the_wheel_add_up_to_whole_steps) {
    Input rig;
    for (int i = 0; i < 7; ++i) rig.chart.HandleWheel(0, 15, 5000.0F, 2500.0F);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    rig.chart.HandleWheel(0, 15, 5000.0F, 2500.0F);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.1, 1e-9);
    // Turning back starts anew.
    rig.chart.HandleWheel(0, 110, 5000.0F, 2500.0F);
    rig.chart.HandleWheel(0, -15, 5000.0F, 2500.0F);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.1, 1e-9);
    EXPECT_EQ(rig.log.count("MouseWheel"), 10);
    rig.chart.HandleWheel(0, 360, 5000.0F, 2500.0F);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, std::pow(1.1, 4), 1e-9);
    rig.chart.HandleWheel(0, std::numeric_limits<int>::min(), 5000.0F, 2500.0F);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

TEST(ChartInput, a_wheel_that_does_not_turn_or_turns_outside_zooms_nothing) {
    Input rig;
    rig.chart.HandleWheel(0, 0, 5000.0F, 2500.0F);
    EXPECT_TRUE(rig.log.names.empty());
    rig.chart.HandleWheel(0, 120, 100.0F, 2500.0F);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_TRUE(rig.log.has("MouseWheel(0, 120)"));
}

TEST(ChartInput, a_pinch_zooms_by_its_factor) {
    Input rig;
    const Point anchor = rig.chart.SurfaceToUser({5000.0, 2000.0});
    rig.chart.HandlePinch(2.5, 5000.0F, 2500.0F);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 2.5, 1e-9);
    EXPECT_NEAR(rig.chart.SurfaceToUser({5000.0, 2000.0}).x, anchor.x, 1e-3);
    EXPECT_TRUE(rig.log.has("ViewChanged"));
    rig.chart.HandlePinch(1e-300, 5000.0F, 2500.0F);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

TEST(ChartInput, a_pinch_ends_the_drag_of_its_first_finger) {
    Rig rig;
    rig.make_a();
    rig.register_series({0.0, 7400.0}, {0.0, 0.0});
    rig.chart.DisplayChart();
    rig.chart.HandleMouseDown(1, 0, 6000.0F, 1500.0F);
    ASSERT_EQ(rig.chart.MouseMode(), 4);
    rig.chart.HandlePinch(2.0, 6000.0F, 1500.0F);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 2.0, 1e-9);
    rig.chart.HandleMouseMove(1, 0, 6000.0F, 2500.0F);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 2.0, 1e-9);
}

TEST(ChartInput, a_pan_by_a_distance_needs_a_zoom) {
    Input rig;
    rig.chart.PanBy(1000.0, 0.0);
    EXPECT_TRUE(rig.log.names.empty());
    rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
    const Rect before = rig.chart.ViewLimits();
    rig.chart.PanBy(12150.0 / 18.5, -450.0);
    EXPECT_NEAR(rig.chart.ViewLimits().x_low, before.x_low + 100.0, 1e-6);
    EXPECT_NEAR(rig.chart.ViewLimits().y_low, before.y_low - 25.0, 1e-6);
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"ViewChanged"}));
}

TEST(ChartInput, a_double_click_of_the_left_button_clears_the_zoom) {
    Input rig;
    rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
    rig.chart.HandleDoubleClick(2);
    EXPECT_NE(rig.chart.CurrentZoom(), ZoomValues{});
    rig.chart.HandleDoubleClick(1);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"ViewChanged", "ZoomCleared"}));
    EXPECT_EQ(rig.log.count("DblClick"), 0);
}

TEST(ChartInput, keys_pan_zoom_and_reset) {
    Input rig;
    rig.chart.HandleKeyDown(39, 0);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    for (const int plus : {107, 187}) rig.chart.HandleKeyDown(plus, 0);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.21, 1e-9);
    const auto moved = [&](int key) {
        rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
        const Rect before = rig.chart.ViewLimits();
        rig.chart.HandleKeyDown(key, 0);
        const Rect after = rig.chart.ViewLimits();
        return Point{after.x_low - before.x_low, after.y_low - before.y_low};
    };
    EXPECT_NEAR(moved(37).x, -185.0, 1e-6);
    EXPECT_NEAR(moved(39).x, 185.0, 1e-6);
    EXPECT_NEAR(moved(38).y, 25.0, 1e-6);
    EXPECT_NEAR(moved(40).y, -25.0, 1e-6);
    for (const int minus : {109, 189}) rig.chart.HandleKeyDown(minus, 0);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 4.0 / 1.21, 1e-9);
    for (const int reset : {48, 96, 36}) {
        rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
        rig.chart.HandleKeyDown(reset, 0);
        EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{}) << reset;
    }
}

TEST(ChartInput, a_host_may_keep_a_key_for_itself) {
    Input rig;
    rig.log.swallow_keys = true;
    rig.chart.HandleKeyDown(107, 2);
    rig.chart.HandleKeyDown(93, 0);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"KeyDown(107, 2)", "KeyDown(93, 0)"}));
}

TEST(ChartInput, the_menu_key_asks_for_the_menu) {
    Input rig;
    rig.chart.HandleKeyDown(93, 0);
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"KeyDown(93, 0)", "MenuRequested"}));
}

TEST(ChartInput, keys_and_clicks_are_told) {
    Input rig;
    rig.chart.HandleKeyPress(65);
    rig.chart.HandleKeyUp(65, 4);
    rig.press(4, 5000.0, 2000.0);
    rig.release(4, 5000.0, 2000.0);
    rig.press(1, 5000.0, 2000.0, 3);
    rig.release(1, 5000.0, 2000.0, 3);
    EXPECT_EQ(rig.log.names,
              (std::vector<std::string>{"KeyPress(65)", "KeyUp(65, 4)", "MouseDown(4, 0)", "MouseUp(4, 0)",
                                        "MouseDown(1, 3)", "MouseUp(1, 3)", "Click"}));
}

TEST(ChartInput, a_key_that_nobody_used_is_left_to_whoever_stands_behind_the_chart) {
    Input rig;
    EXPECT_FALSE(rig.chart.HandleKeyDown(112, 0));
    EXPECT_FALSE(rig.chart.HandleKeyDown(46, 0));
    EXPECT_FALSE(rig.chart.HandleKeyDown(48, 2)) << "with Control it is a command";
    EXPECT_TRUE(rig.chart.HandleKeyDown(48, 0));
    EXPECT_TRUE(rig.chart.HandleKeyDown(39, 2)) << "with Control the arrows pan where plain ones move a body";
    EXPECT_TRUE(rig.chart.HandleKeyDown(107, 1)) << "plus is a shifted key on many keyboards";
    EXPECT_FALSE(rig.chart.HandleKeyUp(48, 0));
    EXPECT_EQ(rig.log.count("KeyDown"), 6) << "all of them are told";
    rig.log.swallow_keys = true;
    EXPECT_TRUE(rig.chart.HandleKeyDown(112, 0));
}

TEST(ChartInput, after_a_wheel_a_key_or_a_double_click_the_place_under_the_pointer_is_told) {
    Input rig;
    rig.chart.HandleWheel(0, 240, 3000.0F, 1500.0F);
    Point under = rig.chart.SurfaceToUser({3000.0, 3000.0});
    EXPECT_NEAR(rig.log.last_move.x, under.x, 1e-6) << "the wheel says where the pointer is";
    EXPECT_NEAR(rig.log.last_move.y, under.y, 1e-6);
    rig.chart.HandleKeyDown(107, 0);
    under = rig.chart.SurfaceToUser({3000.0, 3000.0});
    EXPECT_NEAR(rig.log.last_move.x, under.x, 1e-6);
    rig.chart.HandleDoubleClick(1);
    under = rig.chart.SurfaceToUser({3000.0, 3000.0});
    EXPECT_NEAR(rig.log.last_move.x, under.x, 1e-6);
    EXPECT_NEAR(rig.log.last_move.y, under.y, 1e-6);
}

TEST(ChartInput, a_chart_without_a_host_takes_every_input) {
    Input rig;
    rig.chart.SetEvents(nullptr);
    rig.press(1, 5000.0, 2000.0);
    rig.move(1, 5000.0, 1000.0);
    rig.release(1, 5000.0, 1000.0);
    rig.press(2, 5000.0, 2000.0);
    rig.release(2, 5000.0, 2000.0);
    rig.chart.HandleWheel(0, 120, 5000.0F, 2500.0F);
    rig.chart.HandleDoubleClick(1);
    for (const int key : {27, 93, 107}) rig.chart.HandleKeyDown(key, 0);
    rig.chart.HandleKeyPress(1);
    rig.chart.HandleKeyUp(1, 0);
    rig.chart.SetSeriesOptions(9, 9, 0, "", 0, 0, 0);
    rig.chart.ResetZoom();
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.1, 1e-9);
}

TEST(ChartInput, the_crosshair_follows_the_pointer_and_reads_it_out) {
    Input rig;
    rig.chart.Crosshair(true);
    EXPECT_TRUE(rig.chart.Crosshair());
    rig.device.forget();
    rig.move(0, 1350.0 + 6075.0, 2250.0);
    EXPECT_EQ(rig.device.of_kind(Kind::present).size(), 1U);
    EXPECT_TRUE(rig.device.of_kind(Kind::clear).empty());
    RecordingDevice top(13500.0, 4500.0);
    rig.chart.DrawTopLayer(top);
    ASSERT_EQ(top.of_kind(Kind::polyline).size(), 2U);
    EXPECT_EQ(top.of_kind(Kind::polyline)[0].points[0], (Point{1350.0, 2250.0}));
    EXPECT_EQ(top.of_kind(Kind::polyline)[1].points[1], (Point{7425.0, 4500.0}));
    EXPECT_EQ(top.texts(), (std::vector<std::string>{"3700, 200"}));
    // Near the right upper corner the words go to the other side.
    rig.move(0, 13400.0, 4400.0);
    top.forget();
    rig.chart.DrawTopLayer(top);
    ASSERT_EQ(top.texts().size(), 1U);
    const auto words = top.of_kind(Kind::text)[0];
    EXPECT_LT(words.points[0].x + 90.0 * static_cast<double>(words.text.size()), 13400.0);
    EXPECT_LT(words.points[0].y + 165.0, 4400.0);
    rig.chart.HandleMouseLeave();
    top.forget();
    rig.chart.DrawTopLayer(top);
    EXPECT_TRUE(top.entries.empty());
    rig.move(0, 100.0, 2000.0);
    rig.chart.DrawTopLayer(top);
    EXPECT_TRUE(top.entries.empty());
}

TEST(ChartInput, the_read_out_has_as_many_digits_as_a_pixel_can_tell) {
    Input rig;
    rig.set_limits(0.0, 7.4, 1e-7, 3e-6);
    rig.chart.Crosshair(true);
    rig.chart.DisplayChart();
    rig.move(0, 1350.0 + 6075.0, 2250.0);
    RecordingDevice top(13500.0, 4500.0);
    rig.chart.DrawTopLayer(top);
    EXPECT_EQ(top.texts(), (std::vector<std::string>{"3.700, 0.000001550"}));
}

std::vector<std::string> top_texts(Input& rig) {
    RecordingDevice top(13500.0, 4500.0);
    rig.chart.DrawTopLayer(top);
    return top.texts();
}

TEST(ChartInput, a_linked_crosshair_stands_at_its_distance_and_tells_what_it_was_given) {
    Input rig;
    rig.chart.Crosshair(true);
    rig.device.forget();
    rig.chart.LinkCrosshair(LinkedCrosshair{3700.0, {"Observed 12.5 nT", "Calculated 11.9 nT"}});
    EXPECT_EQ(rig.device.of_kind(Kind::present).size(), 1U);
    EXPECT_TRUE(rig.device.of_kind(Kind::clear).empty()) << "nothing is drawn anew";
    RecordingDevice top(13500.0, 4500.0);
    rig.chart.DrawTopLayer(top);
    ASSERT_EQ(top.of_kind(Kind::polyline).size(), 1U);
    EXPECT_EQ(top.of_kind(Kind::polyline)[0].points, (std::vector<Point>{{7425.0, 0.0}, {7425.0, 4500.0}}));
    EXPECT_EQ(top.texts(), (std::vector<std::string>{"Observed 12.5 nT", "Calculated 11.9 nT"}));
    // Under the pointer the lines stand in place of the chart's own read-out.
    rig.move(0, 7425.0, 2250.0);
    EXPECT_EQ(top_texts(rig), (std::vector<std::string>{"Observed 12.5 nT", "Calculated 11.9 nT"}));
    rig.chart.HandleMouseLeave();
    rig.chart.LinkCrosshair(LinkedCrosshair{9000.0, {"out of view"}});
    EXPECT_TRUE(top_texts(rig).empty());
    rig.chart.LinkCrosshair(LinkedCrosshair{3700.0, {"in view"}});
    rig.chart.Crosshair(false);
    EXPECT_TRUE(top_texts(rig).empty());
    rig.chart.Crosshair(true);
    rig.chart.LinkCrosshair({});
    EXPECT_TRUE(top_texts(rig).empty());
}

TEST(ChartInput, the_measuring_box_tells_its_sides_and_slope_with_units) {
    Input rig;
    rig.chart.Crosshair(true);
    rig.chart.ReadOutUnits("m", "nT");
    rig.move(0, 1350.0 + 6075.0, 2250.0);
    EXPECT_EQ(top_texts(rig), (std::vector<std::string>{"3700 m, 200 nT"}));
    rig.press(1, 1350.0 + 6075.0, 2250.0, 1);
    EXPECT_EQ(top_texts(rig).size(), 1U) << "no box yet: the crosshair";
    rig.move(1, 1350.0 + 6075.0 - 1215.0, 2250.0 + 450.0, 1);
    EXPECT_EQ(top_texts(rig), (std::vector<std::string>{"dx -740 m", "dy 100 nT", "slope -0.135 nT/m"}));
    rig.chart.ReadOutUnits("m", "nT per station");
    EXPECT_EQ(top_texts(rig)[2], "slope -0.135 nT per station per m");
    rig.chart.ReadOutUnits("m", "m");
    EXPECT_EQ(top_texts(rig)[2], "slope -0.135 (7.7 degrees)");
    // Straight up there is no slope.
    rig.move(1, 1350.0 + 6075.0, 2250.0 + 450.0, 1);
    EXPECT_EQ(top_texts(rig), (std::vector<std::string>{"dx 0 m", "dy 100 m"}));
    rig.release(1, 1350.0 + 6075.0, 2250.0 + 450.0, 1);
    EXPECT_EQ(top_texts(rig).size(), 1U);
}

}  // namespace
}  // namespace anomalis::chart
