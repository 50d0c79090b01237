#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

struct Zoomed : Rig {
    Zoomed() {
        make_plain();
        register_series({0.0, 7400.0}, {0.0, 500.0});
        chart.DisplayChart();
        log.forget();
    }
    Rect view() const { return chart.ViewLimits(); }
};

TEST(ChartZoom, a_factor_and_a_centre_give_a_window) {
    Zoomed rig;
    EXPECT_EQ(rig.chart.SetZoomValues(4.0, 0.5, 2.0, 0.25), 0);
    EXPECT_DOUBLE_EQ(rig.view().x_low, 2775.0);
    EXPECT_DOUBLE_EQ(rig.view().x_high, 4625.0);
    EXPECT_DOUBLE_EQ(rig.view().y_low, -300.0);
    EXPECT_DOUBLE_EQ(rig.view().y_high, 200.0);
    EXPECT_EQ(rig.log.count("ViewChanged"), 0);
}

TEST(ChartZoom, a_window_past_the_edge_moves_inside) {
    Zoomed rig;
    rig.chart.SetZoomValues(4.0, 0.0, 4.0, 1.0);
    EXPECT_DOUBLE_EQ(rig.view().x_low, 0.0);
    EXPECT_DOUBLE_EQ(rig.view().x_high, 1850.0);
    EXPECT_DOUBLE_EQ(rig.view().y_high, 700.0);
    EXPECT_DOUBLE_EQ(rig.chart.CurrentZoom().centre_x, 0.125);
}

TEST(ChartZoom, factors_under_1_count_as_1_and_deep_ones_stop) {
    Zoomed rig;
    rig.chart.SetZoomValues(0.2, 0.9, -3.0, 0.5);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    rig.chart.SetZoomValues(1e9, 0.5, 1.0, 0.5);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1e4, 1e-6);
}

TEST(ChartZoom, what_is_no_number_is_refused) {
    Zoomed rig;
    rig.chart.SetZoomValues(4.0, 0.5, 2.0, 0.5);
    const ZoomValues before = rig.chart.CurrentZoom();
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_EQ(rig.chart.SetZoomValues(std::nan(""), 0.5, 1.0, 0.5), -1);
    EXPECT_EQ(rig.chart.SetZoomValues(2.0, endless, 1.0, 0.5), -1);
    EXPECT_EQ(rig.chart.CurrentZoom(), before);
}

TEST(ChartZoom, nothing_happens_before_the_first_display) {
    Rig rig;
    rig.make_plain();
    EXPECT_EQ(rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5), 0);
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

TEST(ChartZoom, saved_values_come_back) {
    Zoomed rig;
    rig.chart.restore_zoom_values();
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    rig.chart.SetZoomValues(4.0, 0.5, 2.0, 0.25);
    const ZoomValues saved = rig.chart.CurrentZoom();
    rig.chart.save_zoom_values();
    rig.chart.clear_zoom_values();
    EXPECT_EQ(rig.chart.ViewLimits(), (Rect{0.0, 7400.0, -300.0, 700.0}));
    rig.chart.restore_zoom_values();
    EXPECT_EQ(rig.chart.CurrentZoom(), saved);
}

TEST(ChartZoom, a_magnifier_shows_what_lies_about_the_place_of_its_release) {
    Rig rig;
    rig.make_plain();
    rig.register_series({0.0, 7400.0}, {0.0, 500.0});
    rig.chart.DisplayChart();
    rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
    rig.press(4, 5000.0, 2000.0);
    rig.move(4, 6000.0, 2000.0);
    // Whole: 7400 over 13500 and 1000 over 4500; the last move is not where the button goes up.
    rig.release(4, 8000.0, 2500.0);
    const Rect view = rig.chart.ViewLimits();
    EXPECT_NEAR((view.x_low + view.x_high) / 2.0, 8000.0 * 7400.0 / 13500.0, 1e-6);
    EXPECT_NEAR((view.y_low + view.y_high) / 2.0, -300.0 + 2500.0 / 4.5, 1e-6);
    const Point under = rig.chart.SurfaceToUser({8000.0, 2500.0});
    EXPECT_NEAR(rig.log.last_move.x, under.x, 1e-6) << "the read-out is that of the pointer";
    EXPECT_NEAR(rig.log.last_move.y, under.y, 1e-6);
}

TEST(ChartZoom, reset_zoom_repaints_and_tells_but_keeps_the_zoom) {
    Zoomed rig;
    rig.chart.SetZoomValues(4.0, 0.5, 2.0, 0.25);
    const ZoomValues before = rig.chart.CurrentZoom();
    rig.device.forget();
    rig.chart.ResetZoom();
    EXPECT_EQ(rig.chart.CurrentZoom(), before);
    EXPECT_FALSE(rig.device.of_kind(Kind::clear).empty());
    EXPECT_TRUE(rig.log.has("ChartReset"));
}

TEST(ChartZoom, select_point_takes_only_points_that_are_there_and_visible) {
    Zoomed rig;
    const std::vector<double> xs{0.0, 1000.0, 2000.0};
    const std::vector<double> ys{0.0, -999.0, 5.0};
    const std::vector<double> short_x{0.0, 1000.0};
    const std::vector<ChartRow> rows{{x_row, xs}, {-2.0, ys}, {x_row, short_x}, {-2.0, ys}};
    rig.chart.RegisterData(rows);
    rig.chart.SelectPoint(1, 1, 3, true);
    ASSERT_TRUE(rig.chart.SelectPoint().has_value());
    EXPECT_EQ(rig.chart.SelectPoint()->point, 3);
    // Wrong numbers leave the selection as it is.
    rig.chart.SelectPoint(1, 1, 4, true);
    rig.chart.SelectPoint(1, 1, 0, true);
    rig.chart.SelectPoint(2, 1, 3, true);
    EXPECT_TRUE(rig.log.failures.empty());
    rig.chart.SelectPoint(1, 2, 1, true);
    rig.chart.SelectPoint(3, 1, 1, true);
    EXPECT_EQ(rig.log.failures,
              (std::vector<std::string>{"The series index is invalid", "The group number is invalid"}));
    EXPECT_EQ(rig.chart.SelectPoint()->point, 3);
    // A null cannot be selected, and without showing nothing is.
    rig.chart.SelectPoint(1, 1, 2, true);
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());
    rig.chart.SelectPoint(1, 1, 1, true);
    rig.chart.SelectPoint(1, 1, 1, false);
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());
    rig.chart.SetSeriesOptions(1, 1, -1, "", 0, 0, 1);
    rig.chart.SelectPoint(1, 1, 1, true);
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());
}

TEST(ChartZoom, new_data_forget_the_selection) {
    Zoomed rig;
    rig.chart.SelectPoint(1, 1, 1, true);
    rig.register_series({0.0, 7400.0}, {0.0, 500.0});
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());
}

TEST(ChartZoom, the_highlight_reaches_from_56_to_57_with_a_wider_pen) {
    Zoomed rig;
    rig.register_series({3700.0}, {200.0});
    rig.chart.DisplayChart();
    rig.chart.SelectPoint(1, 1, 1, true);
    RecordingDevice top(13500.0, 4500.0);
    top.stamps = false;
    rig.chart.DrawTopLayer(top);
    const auto boxes = top.of_kind(Kind::polygon_outline);
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_EQ(boxes[0].pen, (Pen{black, 2.0, LineStyle::solid}));
    EXPECT_NEAR(boxes[0].points[0].x, 6750.0 - 56.0, 1e-6);
    EXPECT_NEAR(boxes[0].points[2].x, 6750.0 + 57.0, 1e-6);
    EXPECT_NEAR(boxes[0].points[0].y, 2250.0 - 56.0, 1e-6);
    EXPECT_NEAR(boxes[0].points[2].y, 2250.0 + 57.0, 1e-6);
    EXPECT_TRUE(top.of_kind(Kind::polygon_fill).empty());
    // Out of view it is not drawn, but stays selected.
    rig.chart.SetZoomValues(4.0, 0.0, 1.0, 0.5);
    top.forget();
    rig.chart.DrawTopLayer(top);
    EXPECT_TRUE(top.entries.empty());
    EXPECT_TRUE(rig.chart.SelectPoint().has_value());
}

TEST(ChartZoom, hosts_can_ask_for_places) {
    Zoomed rig;
    const Point at = rig.chart.UserToSurface({3700.0, 200.0});
    EXPECT_NEAR(at.x, 6750.0, 1e-6);
    EXPECT_NEAR(at.y, 2250.0, 1e-6);
    const Point back = rig.chart.SurfaceToUser(at);
    EXPECT_NEAR(back.x, 3700.0, 1e-6);
    EXPECT_NEAR(back.y, 200.0, 1e-6);
    EXPECT_EQ(rig.chart.TextWidth("12345"), 450.0);
    EXPECT_EQ(rig.chart.TextHeight(), 165.0);
    EXPECT_EQ(rig.chart.FullRange(), (Rect{0.0, 7400.0, -300.0, 700.0}));
}

}  // namespace
}  // namespace anomalis::chart
