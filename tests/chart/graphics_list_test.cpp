#include "chart/detail/graphics_list.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

const double square_x[] = {1000.0, 2000.0, 2000.0, 1000.0, 1000.0};
const double square_y[] = {0.0, 0.0, 100.0, 100.0, 0.0};

struct Overlay : Rig {
    Overlay() { make_plain(); }
    /// Redraws and gives what the overlay drew.
    std::vector<RecordingDevice::Entry> drawn(Kind kind) {
        device.forget();
        chart.DisplayChart();
        return device.of_kind(kind, Layer::surface);
    }
};

TEST(Retained, drawing_is_recorded_and_replayed_over_every_redraw) {
    Overlay rig;
    rig.chart.DrawLine(0.0, 0.0, 7400.0, 100.0, 9, 2);
    rig.chart.DrawRectangle(1000.0, 0.0, 2000.0, 100.0, 4, 6, 1);
    EXPECT_TRUE(rig.device.entries.empty());
    EXPECT_EQ(rig.chart.SavedCount(), 2);
    for (int redraw = 0; redraw < 2; ++redraw) {
        const auto lines = rig.drawn(Kind::polyline);
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].pen, (Pen{9, 2.0, LineStyle::solid}));
        EXPECT_NEAR(lines[0].points[1].x, 13500.0, 1e-9);
        EXPECT_NEAR(lines[0].points[1].y, 1800.0, 1e-9);
        EXPECT_EQ(rig.drawn(Kind::polygon_fill)[0].pen.colour, 6);
        EXPECT_EQ(rig.drawn(Kind::polygon_outline)[0].pen.colour, 4);
    }
}

TEST(Retained, clearing_draws_nothing_and_leaves_the_next_redraw_without_an_overlay) {
    Overlay rig;
    rig.chart.DrawLine(0.0, 0.0, 7400.0, 100.0, 9, 2);
    rig.chart.DisplayChart();
    rig.device.forget();
    rig.chart.ClearSavedGraphics();
    EXPECT_TRUE(rig.device.entries.empty());
    EXPECT_TRUE(rig.drawn(Kind::polyline).empty());
}

TEST(Retained, points_lists_of_fewer_than_two_are_ignored) {
    Overlay rig;
    EXPECT_EQ(rig.chart.DrawPolygon(1, square_x, square_y, 0, 5, 1), 0);
    EXPECT_EQ(rig.chart.DrawPolygon(0, square_x, square_y, 0, 5, 1), 0);
    EXPECT_EQ(rig.chart.DrawPolygon(-7, square_x, square_y, 0, 5, 1), 0);
    EXPECT_EQ(rig.chart.DrawPolygon(5, nullptr, square_y, 0, 5, 1), 0);
    rig.chart.DrawPolyLine(1, square_x, square_y, 0, 1);
    EXPECT_EQ(rig.chart.SavedCount(), 0);
    EXPECT_EQ(rig.chart.PolygonCount(), 0);
}

TEST(Retained, each_polygon_has_the_next_number) {
    Overlay rig;
    EXPECT_EQ(rig.chart.DrawPolygon(5, square_x, square_y, 0, 5, 1), 1);
    rig.chart.DrawMarker(0.0, 0.0, 2, 0, 1);
    EXPECT_EQ(rig.chart.DrawPolygon(5, square_x, square_y, 0, -1, 1), 2);
    EXPECT_EQ(rig.chart.PolygonCount(), 2);
    rig.chart.ClearSavedGraphics();
    EXPECT_EQ(rig.chart.DrawPolygon(5, square_x, square_y, 0, 5, 1), 1);
}

TEST(GraphicsList, polylines_are_numbered_but_not_replayed) {
    Overlay rig;
    rig.chart.DrawPolyLine(5, square_x, square_y, 7, 1);
    EXPECT_EQ(rig.chart.SavedCount(), 1);
    EXPECT_EQ(rig.chart.PolygonCount(), 1);
    EXPECT_EQ(rig.chart.DrawPolygon(5, square_x, square_y, 0, 5, 1), 2);
    EXPECT_TRUE(rig.drawn(Kind::polyline).empty());
}

TEST(Retained, more_items_than_the_first_room_are_kept_in_order) {
    Overlay rig;
    for (int i = 0; i < 1000; ++i) rig.chart.DrawLine(i, 0.0, i + 1.0, 1.0, i, 1);
    for (int i = 0; i < 200; ++i) rig.chart.DrawPolygon(5, square_x, square_y, 0, 5, 1);
    EXPECT_EQ(rig.chart.PolygonCount(), 200);
    const auto lines = rig.drawn(Kind::polyline);
    ASSERT_EQ(lines.size(), 1000U);
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(lines[static_cast<std::size_t>(i)].pen.colour, i);
}

TEST(Retained, items_keep_marker_size_width_and_line_style) {
    Overlay rig;
    rig.chart.MarkerSize(10);
    rig.chart.DrawMarker(100.0, 0.0, 3, 0, 4);
    rig.chart.MarkerSize(15);
    rig.chart.DrawMarker(200.0, 0.0, 3, 0, 1);
    rig.chart.DrawLine(0.0, 0.0, 100.0, 100.0, 0, 1, 3);
    rig.chart.MarkerSize(99);
    const auto marks = rig.drawn(Kind::markers);
    ASSERT_EQ(marks.size(), 2U);
    EXPECT_EQ(marks[0].radius, 10.0);
    EXPECT_EQ(marks[0].pen.width, 4.0);
    EXPECT_EQ(marks[1].radius, 15.0);
    EXPECT_EQ(rig.drawn(Kind::polyline)[0].pen.style, LineStyle::dash_dot);
}

TEST(Retained, shapes_are_cut_at_the_frame_without_a_line_along_it) {
    Overlay rig;
    const double xs[] = {6000.0, 9000.0, 9000.0, 6000.0};
    const double ys[] = {-9000.0, -9000.0, 100.0, 100.0};
    rig.chart.DrawPolygon(4, xs, ys, 3, 8, 1);
    const auto fills = rig.drawn(Kind::polygon_fill);
    ASSERT_EQ(fills.size(), 1U);
    const Rect plot = rig.chart.PlotRect();
    for (const Point& p : fills[0].points) EXPECT_TRUE(plot.contains(p, 1e-9));
    EXPECT_TRUE(rig.drawn(Kind::polygon_outline).empty());
    for (const auto& line : rig.drawn(Kind::polyline))
        for (std::size_t i = 1; i < line.points.size(); ++i) {
            EXPECT_FALSE(line.points[i - 1].x == plot.x_high && line.points[i].x == plot.x_high);
            EXPECT_FALSE(line.points[i - 1].y == plot.y_low && line.points[i].y == plot.y_low);
        }
}

TEST(Retained, a_shape_out_of_view_leaves_nothing) {
    Overlay rig;
    const double xs[] = {8000.0, 9000.0, 9000.0};
    const double ys[] = {0.0, 0.0, 100.0};
    rig.chart.DrawPolygon(3, xs, ys, 3, 8, 1);
    rig.chart.DrawMarker(8000.0, 0.0, 2, 1, 1);
    rig.chart.DrawText(0.0, 8000.0, 0.0, "far away");
    rig.chart.DrawLine(8000.0, 0.0, 9000.0, 0.0, 1, 1);
    rig.chart.DrawRectangle(8000.0, 0.0, 9000.0, 50.0, 1, 1, 1);
    rig.device.forget();
    rig.chart.DisplayChart();
    for (const Kind kind :
         {Kind::polyline, Kind::polygon_fill, Kind::polygon_outline, Kind::markers, Kind::text})
        EXPECT_TRUE(rig.device.of_kind(kind, Layer::surface).empty());
}

TEST(Retained, values_that_are_no_numbers_draw_nothing) {
    Overlay rig;
    const double bad = std::numeric_limits<double>::quiet_NaN();
    const double xs[] = {bad, 9000.0, 9000.0};
    const double ys[] = {0.0, 0.0, 100.0};
    rig.chart.DrawPolygon(3, xs, ys, no_colour, 8, 1);
    rig.chart.DrawMarker(bad, 0.0, 2, 1, 1);
    rig.chart.DrawText(0.0, bad, 0.0, "nowhere");
    rig.chart.DrawLine(bad, 0.0, 100.0, 0.0, 1, 1);
    rig.chart.DrawLine(0.0, 0.0, std::numeric_limits<double>::infinity(), 0.0, 1, 1);
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
    for (const Kind kind : {Kind::polyline, Kind::polygon_fill, Kind::markers, Kind::text})
        EXPECT_TRUE(rig.device.of_kind(kind, Layer::surface).empty());
}

TEST(Retained, text_keeps_its_angle_and_stands_at_its_lower_left_corner) {
    Overlay rig;
    rig.chart.DrawText(30.0, 3700.0, 200.0, "dip 30");
    const auto texts = rig.drawn(Kind::text);
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_EQ(texts[0].angle, 30.0);
    EXPECT_NEAR(texts[0].points[0].x, 6750.0, 1e-6);
    EXPECT_NEAR(texts[0].points[0].y, 2250.0, 1e-9);
}

TEST(Retained, full_lines_stretch_with_the_limits) {
    Overlay rig;
    rig.chart.DrawXLine(3700.0, 9, 1);
    rig.chart.DrawYLine(200.0, 9, 1);
    auto lines = rig.drawn(Kind::polyline);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NEAR(lines[0].points[0].y, 0.0, 1e-9);
    EXPECT_NEAR(lines[0].points[1].y, 4500.0, 1e-9);
    EXPECT_NEAR(lines[1].points[1].x, 13500.0, 1e-9);
    rig.chart.YAxisMin(-1300.0);
    rig.chart.XAxisMax(14800.0);
    lines = rig.drawn(Kind::polyline);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NEAR(lines[0].points[0].y, 0.0, 1e-9);
    EXPECT_NEAR(lines[1].points[1].x, 13500.0, 1e-9);
}

TEST(Retained, full_lines_follow_automatic_limits) {
    Rig rig;
    rig.chart.DisplayAxes(false);
    rig.chart.DrawXLine(5.0, 9, 1);
    rig.register_series({0.0, 10.0}, {3.0, 4.0}, bar_series);
    rig.chart.DisplayChart();
    const auto lines = rig.device.of_kind(Kind::polyline, Layer::surface);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NEAR(lines[0].points[1].y - lines[0].points[0].y, 4500.0, 1e-6);
}

TEST(Retained, shapes_follow_a_logarithmic_axis) {
    Overlay rig;
    rig.chart.YAxisType(1);
    rig.set_limits(0.0, 10.0, 1.0, 1000.0);
    rig.chart.DrawMarker(5.0, 100.0, 2, 0, 1);
    const auto marks = rig.drawn(Kind::markers);
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_NEAR(marks[0].points[0].y, 4500.0 * 2.0 / 3.0, 1e-6);
}

TEST(Retained, draw_graphics_draws_the_overlay_alone) {
    Overlay rig;
    rig.chart.DrawGraphics();
    rig.chart.DrawLine(0.0, 0.0, 7400.0, 100.0, 9, 2);
    rig.chart.DrawGraphics();
    EXPECT_TRUE(rig.device.entries.empty());
    rig.chart.DisplayChart();
    rig.device.forget();
    rig.chart.DrawGraphics();
    EXPECT_EQ(rig.device.of_kind(Kind::polyline, Layer::surface).size(), 1U);
    EXPECT_TRUE(rig.device.of_kind(Kind::clear).empty());
}

}  // namespace
}  // namespace anomalis::chart
