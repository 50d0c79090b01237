#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

constexpr double endless = std::numeric_limits<double>::infinity();

void expect_rect(const Rect& rect, double x_low, double x_high, double y_low, double y_high) {
    EXPECT_DOUBLE_EQ(rect.x_low, x_low);
    EXPECT_DOUBLE_EQ(rect.x_high, x_high);
    EXPECT_DOUBLE_EQ(rect.y_low, y_low);
    EXPECT_DOUBLE_EQ(rect.y_high, y_high);
}

TEST(ViewState, unset_limits_are_those_of_the_data) {
    Rig rig;
    rig.register_series({10.0, 20.0, 40.0}, {5.0, 9.0, -3.0});
    ASSERT_EQ(rig.chart.DisplayChart(), 0);
    expect_rect(rig.chart.ViewLimits(), 10.0, 40.0, -3.0, 9.0);
    EXPECT_EQ(rig.chart.XAxisMin(), -99999.0);
}

TEST(ViewState, the_style_code_and_the_tails_of_short_rows_do_not_scale_the_chart) {
    Rig rig;
    const std::vector<double> xs{10.0, 20.0, 30.0, 40.0};
    const std::vector<double> ys{5.0, 9.0, 7.0};
    const std::vector<ChartRow> rows{{x_row, xs}, {line_series, ys}};
    rig.chart.RegisterData(rows);
    ASSERT_EQ(rig.chart.DisplayChart(), 0);
    expect_rect(rig.chart.ViewLimits(), 10.0, 40.0, 5.0, 9.0);
}

TEST(ViewState, one_unset_limit_unsets_both) {
    Rig rig;
    rig.register_series({0.0, 10.0}, {1.0, 2.0});
    rig.set_limits(-99999.0, 50.0, 0.0, -99999.0);
    ASSERT_EQ(rig.chart.DisplayChart(), 0);
    expect_rect(rig.chart.ViewLimits(), 0.0, 10.0, 1.0, 2.0);
}

TEST(ViewState, limits_reversed_equal_too_large_or_no_numbers_are_unset) {
    for (const auto& [low, high] : {std::pair{7.0, 3.0},
                                    {3.0, 3.0},
                                    {0.0, 2e30},
                                    {std::nan(""), 5.0},
                                    {0.0, std::nan("")},
                                    {-endless, 5.0},
                                    {0.0, endless}}) {
        Rig rig;
        rig.register_series({0.0, 10.0}, {1.0, 2.0});
        rig.set_limits(low, high, low, high);
        ASSERT_EQ(rig.chart.DisplayChart(), 0) << low << " " << high;
        expect_rect(rig.chart.ViewLimits(), 0.0, 10.0, 1.0, 2.0);
    }
}

TEST(ViewState, a_constant_series_is_opened_so_far_that_it_shows) {
    for (const double value : {0.0, 5.0, -1e17, 1e25, 1e-12}) {
        Rig rig;
        rig.register_series({0.0, 10.0}, {value, value});
        ASSERT_EQ(rig.chart.DisplayChart(), 0) << value;
        const double room = std::max(1.0, std::abs(value) * 1e-6);
        EXPECT_DOUBLE_EQ(rig.chart.ViewLimits().y_low, value - room);
        EXPECT_DOUBLE_EQ(rig.chart.ViewLimits().y_high, value + room);
    }
}

TEST(ViewState, a_table_without_a_valid_value_spans_0_to_1) {
    Rig rig;
    rig.register_series({0.0, 10.0}, {-999.0, std::nan("")});
    ASSERT_EQ(rig.chart.DisplayChart(), 0);
    expect_rect(rig.chart.ViewLimits(), 0.0, 10.0, 0.0, 1.0);
}

TEST(ViewState, automatic_limits_of_a_logarithmic_axis_are_user_units) {
    Rig rig;
    rig.chart.YAxisType(1);
    rig.register_series({0.0, 10.0}, {-100.0, 1000.0});
    ASSERT_EQ(rig.chart.DisplayChart(), 0);
    EXPECT_NEAR(rig.chart.ViewLimits().y_low, -100.0, 1e-9);
    EXPECT_NEAR(rig.chart.ViewLimits().y_high, 1000.0, 1e-9);
    EXPECT_NEAR(rig.chart.FullRange().y_high, 4.0, 1e-12);
}

TEST(ViewState, an_axis_of_an_unknown_type_neither_hangs_nor_fails) {
    Rig rig;
    rig.chart.YAxisType(7);
    rig.register_series({0.0, 10.0}, {-100.0, 1000.0});
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
}

TEST(ViewState, huge_and_tiny_values_are_drawn_inside_the_frame) {
    for (const double size : {1e-300, 1e-30, 1e29, 1e300}) {
        Rig rig;
        rig.register_series({0.0, size, 2.0 * size}, {size, -size / 2.0, size / 3.0});
        if (rig.chart.DisplayChart() != 0) continue;
        const Rect plot = rig.chart.PlotRect();
        for (const auto& line : rig.device.of_kind(Kind::polyline))
            for (const Point& p : line.points) EXPECT_TRUE(plot.contains(p, 1.0)) << size;
    }
}

TEST(ViewState, new_limits_count_from_the_next_display) {
    Rig rig;
    rig.make_plain();
    rig.register_series({0.0, 7400.0}, {0.0, 500.0});
    rig.chart.DisplayChart();
    rig.chart.XAxisMax(1000.0);
    rig.chart.RefreshGraph(0);
    EXPECT_EQ(rig.chart.ViewLimits().x_high, 7400.0);
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.chart.ViewLimits().x_high, 1000.0);
}

TEST(ViewState, an_active_zoom_keeps_its_window_as_far_as_new_limits_allow) {
    Rig rig;
    rig.make_plain();
    rig.chart.DisplayChart();
    rig.chart.SetZoomValues(4.0, 0.5, 1.0, 0.5);
    expect_rect(rig.chart.ViewLimits(), 2775.0, 4625.0, -300.0, 700.0);
    rig.chart.XAxisMax(14800.0);
    rig.chart.DisplayChart();
    expect_rect(rig.chart.ViewLimits(), 2775.0, 4625.0, -300.0, 700.0);
    EXPECT_DOUBLE_EQ(rig.chart.CurrentZoom().zoom_x, 8.0);
    rig.chart.XAxisMax(4000.0);
    rig.chart.DisplayChart();
    expect_rect(rig.chart.ViewLimits(), 2150.0, 4000.0, -300.0, 700.0);
    rig.chart.XAxisMax(1000.0);
    rig.chart.DisplayChart();
    expect_rect(rig.chart.ViewLimits(), 0.0, 1000.0, -300.0, 700.0);
    EXPECT_EQ(rig.chart.CurrentZoom().zoom_x, 1.0);
}

TEST(ViewState, a_chart_that_may_not_zoom_shows_everything) {
    Rig rig;
    rig.make_plain();
    rig.chart.DisplayChart();
    rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
    rig.chart.ZoomEnabled(false);
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    rig.chart.SetZoomValues(4.0, 0.5, 4.0, 0.5);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
}

}  // namespace
}  // namespace anomalis::chart
