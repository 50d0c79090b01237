#include <cmath>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// The plain chart with a curve near its top edge, out of the way of the presses.
struct Mouse : Rig {
    Mouse() {
        make_plain();
        register_series({0.0, 7400.0}, {690.0, 690.0});
        chart.DisplayChart();
        log.forget();
    }
    Rect view() const { return chart.ViewLimits(); }
    void zoom() {
        chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
        log.forget();
    }
    std::vector<RecordingDevice::Entry> top(Kind kind) {
        RecordingDevice layer(13500.0, 4500.0);
        chart.DrawTopLayer(layer);
        return layer.of_kind(kind);
    }
};

TEST(Gestures, a_drag_down_zooms_in_and_up_out_about_the_press) {
    Mouse rig;
    const Point anchor = rig.chart.SurfaceToUser({5000.0, 2000.0});
    rig.press(1, 5000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 4);
    rig.move(1, 5000.0, 2000.0 - 150.0);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.21, 1e-9);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_y, 1.21, 1e-9);
    const Point now = rig.chart.SurfaceToUser({5000.0, 2000.0});
    EXPECT_NEAR(now.x, anchor.x, 1e-6);
    EXPECT_NEAR(now.y, anchor.y, 1e-6);
    rig.move(1, 5000.0, 2000.0 - 75.0);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.1, 1e-9);
    rig.release(1, 5000.0, 1925.0);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    EXPECT_EQ(rig.log.count("ViewChanged"), 2);
}

TEST(Gestures, a_drag_counts_distance_and_not_events) {
    Mouse one;
    one.press(1, 5000.0, 4000.0);
    one.move(1, 5000.0, 4000.0 - 1500.0);
    Mouse many;
    many.press(1, 5000.0, 4000.0);
    for (int i = 1; i <= 100; ++i) many.move(1, 5000.0, 4000.0 - 15.0 * i);
    EXPECT_NEAR(one.chart.CurrentZoom().zoom_x, std::pow(1.1, 20), 1e-9);
    EXPECT_NEAR(many.chart.CurrentZoom().zoom_x, one.chart.CurrentZoom().zoom_x, 1e-9);
    EXPECT_NEAR(many.view().x_low, one.view().x_low, 1e-6);
    EXPECT_NEAR(many.view().y_high, one.view().y_high, 1e-6);
}

TEST(Gestures, a_tremor_of_the_hand_zooms_nothing) {
    Mouse rig;
    rig.press(1, 5000.0, 2000.0);
    for (const double y : {2004.0, 1996.0, 2074.0, 1926.0}) rig.move(1, 5000.0, y);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.log.count("ViewChanged"), 0);
}

TEST(Gestures, zooming_out_past_the_whole_chart_ends_at_1) {
    Mouse rig;
    rig.chart.SetZoomValues(2.0, 0.3, 2.0, 0.6);
    rig.press(1, 5000.0, 200.0);
    rig.move(1, 5000.0, 200.0 + 75.0 * 30.0);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.view(), (Rect{0.0, 7400.0, -300.0, 700.0}));
}

TEST(Gestures, the_deepest_zoom_holds_its_anchor) {
    Mouse rig;
    const Point anchor = rig.chart.SurfaceToUser({5000.0, 2000.0});
    for (int i = 0; i < 40; ++i) {
        rig.press(1, 5000.0, 2000.0);
        rig.move(1, 5000.0, 100.0);
        rig.release(1, 5000.0, 100.0);
    }
    EXPECT_LE(rig.chart.CurrentZoom().zoom_x, 1e4 * (1.0 + 1e-6));
    EXPECT_GT(rig.chart.CurrentZoom().zoom_x, 1e4 / 1.11);
    const Point now = rig.chart.SurfaceToUser({5000.0, 2000.0});
    EXPECT_NEAR(now.x, anchor.x, 7400.0 / 1e4 / 100.0);
    EXPECT_NEAR(now.y, anchor.y, 1000.0 / 1e4 / 100.0);
}

TEST(Gestures, a_drag_begins_only_in_the_plot) {
    Mouse rig;
    rig.chart.XAxisLeftMargin(1000.0F);
    rig.chart.DisplayChart();
    rig.press(1, 500.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    rig.move(1, 500.0, 200.0);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

TEST(Gestures, the_right_button_pans_a_zoomed_chart) {
    Mouse rig;
    rig.zoom();
    const Rect before = rig.view();
    rig.press(2, 5000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 1);
    rig.move(2, 5000.0 + 13500.0 / 18.5, 2000.0 - 450.0);
    EXPECT_NEAR(rig.view().x_low, before.x_low - 100.0, 1e-4);
    EXPECT_NEAR(rig.view().x_high, before.x_high - 100.0, 1e-4);
    EXPECT_NEAR(rig.view().y_low, before.y_low + 25.0, 1e-6);
    EXPECT_EQ(rig.log.count("ViewChanged"), 1);
    rig.release(2, 5000.0, 2000.0);
    EXPECT_FALSE(rig.log.has("MenuRequested"));
}

TEST(Gestures, a_pan_stops_at_the_edge) {
    Mouse rig;
    rig.zoom();
    rig.press(2, 5000.0, 2000.0);
    rig.move(2, 5000.0 + 1e6, 2000.0);
    EXPECT_EQ(rig.view().x_low, 0.0);
    EXPECT_NEAR(rig.view().x_high, 1850.0, 1e-6);
}

TEST(Gestures, pan_and_magnifier_need_a_zoom) {
    Mouse rig;
    for (const int button : {2, 4}) {
        rig.press(button, 5000.0, 2000.0);
        EXPECT_EQ(rig.chart.MouseMode(), 0);
        rig.release(button, 5000.0, 2000.0);
    }
    // A zoom of either axis is enough.
    rig.chart.SetZoomValues(1.0, 0.5, 2.0, 0.5);
    rig.press(2, 5000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 1);
}

TEST(Gestures, a_right_press_that_moves_under_4_pixels_opens_the_menu) {
    for (const bool zoomed : {false, true}) {
        Mouse rig;
        if (zoomed) rig.zoom();
        const Rect before = rig.view();
        rig.press(2, 5000.0, 2000.0);
        rig.move(2, 5000.0 + 45.0, 2000.0);
        rig.release(2, 5045.0, 2000.0);
        EXPECT_EQ(rig.view(), before);
        EXPECT_EQ(rig.log.names.back(), "MenuRequested");
        rig.log.forget();
        rig.press(2, 5000.0, 2000.0);
        rig.move(2, 5000.0 + 60.0, 2000.0);
        rig.release(2, 5000.0, 2000.0);
        EXPECT_FALSE(rig.log.has("MenuRequested"));
    }
}

TEST(Gestures, the_menu_opens_when_the_event_is_over) {
    class MenuHost : public EventLog {
      public:
        void MenuRequested(float, float) override { chart->HandleWheel(0, 120, 5000.0F, 2500.0F); }
        AX_Grapher* chart = nullptr;
    };
    Mouse rig;
    MenuHost host;
    host.chart = &rig.chart;
    rig.chart.SetEvents(&host);
    rig.press(2, 5000.0, 2000.0);
    rig.release(2, 5000.0, 2000.0);
    EXPECT_TRUE(host.has("MouseWheel(0, 120)"));
    rig.chart.SetEvents(nullptr);
}

TEST(Gestures, the_magnifier_shows_the_whole_chart_with_a_box_where_the_view_was) {
    Mouse rig;
    rig.chart.DrawLine(0.0, 0.0, 7400.0, 0.0, 1, 1);
    rig.chart.SetZoomValues(4.0, 0.5, 2.0, 0.5);
    rig.device.forget();
    rig.press(4, 5000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 2);
    EXPECT_EQ(rig.view(), (Rect{0.0, 7400.0, -300.0, 700.0}));
    EXPECT_TRUE(rig.device.of_kind(Kind::polyline, Layer::surface).empty());
    auto boxes = rig.top(Kind::polygon_outline);
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_NEAR(boxes[0].points[0].x, 6750.0 - 13500.0 / 8.0, 1e-6);
    EXPECT_NEAR(boxes[0].points[2].y, 2250.0 + 1125.0, 1e-6);
    rig.move(4, 9000.0, 2250.0);
    boxes = rig.top(Kind::polygon_outline);
    EXPECT_NEAR(boxes[0].points[0].x, 9000.0 - 13500.0 / 8.0, 1e-6);
    EXPECT_EQ(rig.log.count("ViewChanged"), 0);
    rig.release(4, 9000.0, 2250.0);
    EXPECT_NEAR(rig.view().x_low, 9000.0 / 1.8243243243 - 925.0, 1e-5);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 4.0, 1e-9);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_y, 2.0, 1e-9);
    EXPECT_EQ(rig.log.count("ViewChanged"), 1);
    EXPECT_FALSE(rig.device.of_kind(Kind::polyline, Layer::surface).empty());
    EXPECT_EQ(rig.chart.SavedCount(), 1);
}

TEST(Gestures, a_magnifier_that_does_not_move_changes_nothing) {
    Mouse rig;
    rig.zoom();
    const Rect before = rig.view();
    rig.press(4, 100.0, 100.0);
    rig.release(4, 100.0, 100.0);
    EXPECT_NEAR(rig.view().x_low, before.x_low, 1e-6);
    EXPECT_NEAR(rig.view().y_high, before.y_high, 1e-6);
}

TEST(Gestures, an_overlay_rebuilt_under_the_magnifier_is_whole_afterwards) {
    Mouse rig;
    rig.chart.DrawLine(0.0, 0.0, 7400.0, 0.0, 1, 1);
    rig.zoom();
    rig.press(4, 5000.0, 2000.0);
    rig.chart.ClearSavedGraphics();
    EXPECT_EQ(rig.chart.SavedCount(), 0);
    for (int i = 0; i < 3; ++i) rig.chart.DrawLine(0.0, 200.0 + i, 7400.0, 200.0 + i, 1, 1);
    EXPECT_EQ(rig.chart.SavedCount(), 3);
    rig.release(4, 6750.0, 2250.0);
    EXPECT_EQ(rig.chart.SavedCount(), 3);
    rig.device.forget();
    rig.chart.RefreshGraph(1);
    EXPECT_EQ(rig.device.of_kind(Kind::polyline, Layer::surface).size(), 3U);
}

TEST(Gestures, escape_gives_the_magnified_view_back) {
    Mouse rig;
    rig.zoom();
    rig.chart.save_zoom_values();
    const Rect before = rig.view();
    rig.press(4, 5000.0, 2000.0);
    rig.move(4, 9000.0, 3000.0);
    rig.chart.HandleKeyDown(27, 0);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    EXPECT_NEAR(rig.view().x_low, before.x_low, 1e-6);
    EXPECT_NEAR(rig.view().y_high, before.y_high, 1e-6);
    EXPECT_TRUE(rig.top(Kind::polygon_outline).empty());
    rig.release(4, 9000.0, 3000.0);
    EXPECT_NEAR(rig.view().x_low, before.x_low, 1e-6);
}

TEST(Gestures, a_box_tells_its_size_and_zooms_nothing) {
    Mouse rig;
    rig.press(1, 1824.3243243, 900.0, 1);
    EXPECT_EQ(rig.chart.MouseMode(), 8);
    EXPECT_TRUE(rig.top(Kind::polygon_outline).empty());
    rig.move(1, 3648.6486486, 1350.0, 1);
    EXPECT_EQ(rig.top(Kind::polygon_outline).size(), 2U);  // the box, and what tells of it
    EXPECT_NEAR(rig.log.last_move.dx, 1000.0, 1e-3);
    EXPECT_NEAR(rig.log.last_move.dy, 100.0, 1e-3);
    rig.release(1, 3648.6486486, 1350.0, 1);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    EXPECT_TRUE(rig.top(Kind::polygon_outline).empty());
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.log.count("ViewChanged"), 0);
}

TEST(Gestures, a_lost_release_ends_every_gesture_at_the_next_move) {
    for (const auto& [button, shift] : {std::pair{1, 0}, {1, 1}, {2, 0}, {4, 0}}) {
        Mouse rig;
        rig.zoom();
        const Rect before = rig.view();
        rig.press(button, 5000.0, 2000.0, shift);
        EXPECT_NE(rig.chart.MouseMode(), 0);
        rig.move(0, 9000.0, 100.0, shift);
        EXPECT_EQ(rig.chart.MouseMode(), 0) << button;
        EXPECT_NEAR(rig.view().x_low, before.x_low, 1e-6);
        EXPECT_TRUE(rig.top(Kind::polygon_outline).empty());
    }
}

TEST(Gestures, a_second_button_ends_the_gesture_of_the_first) {
    Mouse rig;
    rig.zoom();
    const Rect before = rig.view();
    rig.press(4, 5000.0, 2000.0);
    rig.press(2, 5000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 1);
    EXPECT_NEAR(rig.view().x_low, before.x_low, 1e-6);
}

TEST(Gestures, locks_stop_zooming_and_not_panning) {
    Mouse rig;
    rig.chart.ZoomLock(0, true);
    EXPECT_TRUE(rig.chart.ZoomLock(0));
    EXPECT_FALSE(rig.chart.ZoomLock(1));
    rig.press(1, 5000.0, 4000.0);
    rig.move(1, 5000.0, 3000.0);
    rig.release(1, 5000.0, 3000.0);
    EXPECT_EQ(rig.chart.CurrentZoom().zoom_x, 1.0);
    EXPECT_GT(rig.chart.CurrentZoom().zoom_y, 3.0);
    rig.zoom();
    const Rect before = rig.view();
    rig.press(2, 5000.0, 2000.0);
    rig.move(2, 6000.0, 2000.0);
    EXPECT_LT(rig.view().x_low, before.x_low - 10.0);
    rig.release(2, 6000.0, 2000.0);
    rig.chart.ZoomLock(0, false);
    rig.chart.ZoomLock(1, true);
    rig.chart.clear_zoom_values();
    rig.chart.HandleWheel(0, 120, 5000.0F, 2500.0F);
    EXPECT_GT(rig.chart.CurrentZoom().zoom_x, 1.0);
    EXPECT_EQ(rig.chart.CurrentZoom().zoom_y, 1.0);
}

TEST(Gestures, a_chart_that_may_not_zoom_still_selects) {
    Mouse rig;
    rig.chart.ZoomEnabled(false);
    rig.chart.DisplayChart();
    rig.press(1, 5000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    rig.release(1, 5000.0, 2000.0);
    rig.press(1, 0.0, 4455.0);
    EXPECT_TRUE(rig.log.has("PointSelected(1, 1, 1, 1)"));
    rig.chart.HandleWheel(0, 120, 5000.0F, 2500.0F);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

TEST(Gestures, a_hit_begins_no_gesture_and_an_old_one_is_not_told_again) {
    Mouse rig;
    rig.press(1, 10.0, 4455.0);
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"PointSelected(1, 1, 1, 1)", "MouseDown(1, 0)"}));
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    rig.release(1, 10.0, 4455.0);
    rig.log.forget();
    rig.press(1, 5000.0, 2000.0);
    EXPECT_EQ(rig.log.names, (std::vector<std::string>{"MouseDown(1, 0)"}));
    EXPECT_EQ(rig.chart.MouseMode(), 4);
    EXPECT_TRUE(rig.chart.SelectPoint().has_value());
}

TEST(Gestures, a_hosts_redisplay_inside_a_selection_works) {
    Mouse rig;
    const double xs[] = {3000.0, 4000.0, 4000.0, 3000.0};
    const double ys[] = {0.0, 0.0, 300.0, 300.0};
    rig.chart.DrawPolygon(4, xs, ys, 0, 5, 1);
    rig.chart.DisplayChart();
    int status = 1;
    rig.log.on_selection = [&] {
        rig.chart.ClearSavedGraphics();
        rig.register_series({0.0, 3700.0, 7400.0}, {0.0, 1.0, 2.0});
        status = rig.chart.DisplayChart();
        // Input that arrives meanwhile is dropped.
        rig.press(1, 5000.0, 2000.0);
    };
    rig.press(1, 3500.0 * 1.8243243243, 450.0 * 4.5);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(rig.log.count("GraphicSelected"), 1);
    EXPECT_EQ(rig.log.count("MouseDown"), 1);
    EXPECT_EQ(rig.chart.MouseMode(), 0);
    rig.chart.SelectPoint(1, 1, 3, true);
    EXPECT_TRUE(rig.chart.SelectPoint().has_value());
}

TEST(Gestures, linked_charts_follow_the_view) {
    Mouse first;
    Mouse second;
    first.log.on_view = [&] {
        const ZoomValues x = first.chart.CurrentZoom();
        const ZoomValues y = second.chart.CurrentZoom();
        second.chart.SetZoomValues(x.zoom_x, x.centre_x, y.zoom_y, y.centre_y);
    };
    first.press(1, 5000.0, 4000.0);
    first.move(1, 5000.0, 3000.0);
    EXPECT_NEAR(second.view().x_low, first.view().x_low, 1e-6);
    EXPECT_NEAR(second.view().x_high, first.view().x_high, 1e-6);
    EXPECT_EQ(second.view().y_low, -300.0);
    EXPECT_EQ(second.log.count("ViewChanged"), 0);
}

TEST(Gestures, a_redraw_a_move_at_most) {
    Mouse rig;
    rig.zoom();
    rig.press(2, 5000.0, 2000.0);
    rig.device.forget();
    rig.move(2, 5300.0, 2100.0);
    EXPECT_EQ(rig.device.of_kind(Kind::clear).size(), 1U);
    rig.device.forget();
    rig.release(2, 5300.0, 2100.0);
    rig.press(1, 5000.0, 4000.0);
    rig.device.forget();
    rig.move(1, 5000.0, 2000.0);
    EXPECT_EQ(rig.device.of_kind(Kind::clear).size(), 1U);
}

}  // namespace
}  // namespace anomalis::chart
