#include "chart/detail/equal_scales.h"

#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// A map of a survey that is 2500 wide and 200 high, with axes, numbers and titles.
struct Map : Rig {
    Map() {
        make_b();
        set_limits(500000.0, 502500.0, 6999900.0, 7000100.0);
        chart.EqualScales(true);
        register_series({500000.0, 502500.0}, {7000000.0, 7000000.0});
        chart.DisplayChart();
    }
    double ratio() const { return chart.XAxisScale() / chart.YAxisScale(); }
    void resize(double width, double height) {
        device.resize(width, height);
        chart.Resize();
    }
    bool shows(double x, double y) const { return chart.ViewLimits().contains({x, y}, 1e-6); }
};

constexpr double exactly = 1e-9;

}  // namespace

TEST(EqualScales, the_axis_with_room_to_spare_is_opened_about_its_middle) {
    const Map map;
    EXPECT_NEAR(map.ratio(), 1, exactly);
    EXPECT_DOUBLE_EQ(map.chart.ViewLimits().x_low, 500000.0);
    EXPECT_DOUBLE_EQ(map.chart.ViewLimits().x_high, 502500.0);
    EXPECT_NEAR(map.chart.ViewLimits().y_low + map.chart.ViewLimits().y_high, 14000000.0, 1e-6);
    EXPECT_EQ(map.chart.YAxisMin(), 6999900.0) << "the limits stay the host's";
}

TEST(EqualScales, hold_at_every_size_and_show_all_that_the_limits_ask_for) {
    Map map;
    for (const auto& [width, height] : {std::pair{13500.0, 4500.0},
                                        {3000.0, 12000.0},
                                        {40000.0, 1500.0},
                                        {28000.0, 15000.0},
                                        {1100.0, 900.0},
                                        {1501.7, 4000.3}}) {
        map.resize(width, height);
        ASSERT_EQ(map.chart.RefreshGraph(0), 0);
        EXPECT_NEAR(map.ratio(), 1, exactly) << width << " x " << height;
        EXPECT_TRUE(map.shows(500000.0, 6999900.0) && map.shows(502500.0, 7000100.0))
            << width << " x " << height;
    }
}

TEST(EqualScales, hold_while_the_numbers_need_more_and_more_room) {
    // The Y axis is opened far beyond its limits, and its numbers become longer by it.
    Map map;
    map.set_limits(0.0, 9.0, 0.0, 1e-3);
    for (double interval : {1e-4, 1e-2, 1.0}) {
        map.chart.YTickInterval(interval);
        map.resize(3000.0, 12000.0);
        ASSERT_EQ(map.chart.DisplayChart(), 0);
        EXPECT_NEAR(map.ratio(), 1, exactly) << interval;
    }
}

TEST(EqualScales, hold_through_every_zoom_and_pan) {
    Map map;
    const double x = 9000.0, y = 2500.0;
    const auto equal = [&](const char* after) { EXPECT_NEAR(map.ratio(), 1, exactly) << after; };
    for (int i = 0; i < 30; ++i) map.chart.HandleWheel(0, 120, static_cast<float>(x), map.down(y));
    equal("wheel in");
    map.chart.PanBy(4000.0, 9000.0);
    equal("pan to the edge");
    for (int i = 0; i < 12; ++i) map.chart.HandleWheel(0, -120, static_cast<float>(x), map.down(y));
    equal("wheel out");
    map.chart.HandlePinch(1.7, static_cast<float>(x), map.down(y));
    equal("pinch");
    map.press(1, x, y);
    map.move(1, x, y + 400.0);
    map.release(1, x, y + 400.0);
    equal("drag");
    map.press(4, x, y);
    equal("the whole chart under the magnifier");
    map.move(4, x - 2000.0, y);
    map.release(4, x - 2000.0, y);
    equal("magnifier");
    map.chart.HandleKeyDown(107, 0);
    map.chart.HandleKeyDown(37, 0);
    equal("keys");
    map.chart.SetZoomValues(8.0, 0.3, 2.0, 0.6);
    equal("zooms that differ");
    EXPECT_NEAR(map.chart.CurrentZoom().zoom_x, 2.0, 1e-9) << "the smaller one shows what both ask for";
    map.chart.HandleKeyDown(36, 0);
    equal("the whole chart again");
    EXPECT_EQ(map.chart.CurrentZoom(), ZoomValues{});
}

TEST(EqualScales, either_lock_holds_both_axes) {
    for (const int axis : {0, 1}) {
        Map map;
        map.chart.ZoomLock(axis, true);
        map.chart.HandleWheel(0, 120, 6000.0F, map.down(2500.0));
        EXPECT_EQ(map.chart.CurrentZoom(), ZoomValues{}) << axis;
        EXPECT_NEAR(map.ratio(), 1, exactly);
    }
}

TEST(EqualScales, a_zoomed_window_drawn_out_and_back_shows_what_it_showed) {
    Map map;
    map.chart.SetZoomValues(5.0, 0.4, 5.0, 0.45);
    const Rect before = map.chart.ViewLimits();
    for (const double height : {9000.0, 1500.0, 4500.0}) {
        map.resize(13500.0, height);
        EXPECT_NEAR(map.ratio(), 1, exactly) << height;
    }
    const Rect after = map.chart.ViewLimits();
    EXPECT_NEAR(after.x_low, before.x_low, 1e-3);
    EXPECT_NEAR(after.x_high, before.x_high, 1e-3);
    EXPECT_NEAR(after.y_low, before.y_low, 1e-3);
}

TEST(EqualScales, hold_in_an_output_of_another_size_and_leave_the_screen_as_it_was) {
    Map map;
    constexpr Colour red = 255;
    map.chart.SetZoomValues(3.0, 0.4, 3.0, 0.5);
    const Rect before = map.chart.ViewLimits();
    for (const auto& [width, height] : {std::pair{15000.0, 3000.0}, {4000.0, 15000.0}}) {
        RecordingDevice paper(width, height);
        const double d = 40.0;
        // A square about the middle of the view, so that it is inside on every paper.
        const Point middle{(before.x_low + before.x_high) / 2, (before.y_low + before.y_high) / 2};
        map.chart.ClearSavedGraphics();
        map.chart.DrawRectangle(middle.x - d, middle.y - d, middle.x + d, middle.y + d, red, no_colour, 1);
        ASSERT_EQ(map.chart.DrawTo(paper, OutputTarget::metafile, screen_mapping(height),
                                   SurfaceSize{width, height}),
                  0);
        Rect drawn{1e9, -1e9, 1e9, -1e9};
        for (const auto& entry : paper.entries) {
            if (entry.kind == Kind::text || entry.pen.colour != red) continue;
            for (const Point& p : entry.points)
                drawn = {std::min(drawn.x_low, p.x), std::max(drawn.x_high, p.x), std::min(drawn.y_low, p.y),
                         std::max(drawn.y_high, p.y)};
        }
        EXPECT_GT(drawn.width(), 10.0);
        EXPECT_NEAR(drawn.width() / drawn.height(), 1, 1e-6) << width << " x " << height;
    }
    EXPECT_EQ(map.chart.ViewLimits(), before);
}

TEST(EqualScales, a_line_from_edge_to_edge_reaches_the_edges_that_were_opened) {
    Map map;
    map.chart.DrawXLine(501000.0, black, 1);
    map.device.forget();
    map.chart.RefreshGraph(1);
    bool whole = false;
    const Rect plot = map.chart.PlotRect();
    for (const auto& entry : map.device.of_kind(Kind::polyline))
        for (std::size_t i = 1; i < entry.points.size(); ++i)
            whole = whole || std::abs(entry.points[i].y - entry.points[i - 1].y) >= plot.height() - 1.0;
    EXPECT_TRUE(whole);
}

TEST(EqualScales, of_a_chart_without_them_nothing_is_opened) {
    Map map;
    map.chart.EqualScales(false);
    map.chart.DisplayChart();
    EXPECT_DOUBLE_EQ(map.chart.ViewLimits().y_low, 6999900.0);
    EXPECT_GT(std::abs(map.ratio() - 1), 0.1);
}

}  // namespace anomalis::chart
