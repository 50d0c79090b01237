#include "chart/detail/hit_test.h"

#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// A surface unit is a user unit, so that places can be read off.
struct Unit : Rig {
    Unit() {
        make_plain();
        set_limits(0.0, 13500.0, 0.0, 4500.0);
    }
    void show(const std::vector<ChartRow>& rows) {
        chart.RegisterData(rows);
        chart.DisplayChart();
        log.forget();
    }
    std::string click(double x, double y) {
        log.forget();
        press(1, x, y);
        release(1, x, y);
        return log.names.empty() ? "" : log.names.front();
    }
    int polygon(const std::vector<double>& xs, const std::vector<double>& ys, Colour fill = 5) {
        return chart.DrawPolygon(static_cast<int>(xs.size()), xs.data(), ys.data(), 0, fill, 1);
    }
};

using Values = std::vector<double>;

TEST(HitTest, a_press_must_be_nearer_than_50_on_both_axes) {
    Unit rig;
    const Values xs{5000.0};
    const Values ys{2000.0};
    rig.show({{x_row, xs}, {line_series, ys}});
    EXPECT_EQ(rig.click(5049.0, 2049.0), "PointSelected(1, 1, 1, 1)");
    EXPECT_EQ(rig.click(5050.0, 2000.0), "MouseDown(1, 0)");
    EXPECT_EQ(rig.click(5000.0, 1950.0), "MouseDown(1, 0)");
    EXPECT_EQ(rig.click(4951.0, 2000.0), "PointSelected(1, 1, 1, 1)");
}

TEST(HitTest, the_nearest_point_decides_and_a_farther_one_in_the_square_does_not_rescue) {
    Unit rig;
    // The nearest by distance lies 51 to the left; one 45 away on both axes is 64 away.
    const Values xs{4949.0, 5045.0};
    const Values ys{2000.0, 2045.0};
    rig.show({{x_row, xs}, {line_series, ys}});
    EXPECT_EQ(rig.click(5000.0, 2000.0), "MouseDown(1, 0)");
}

TEST(HitTest, ties_go_to_the_last_series_of_the_first_group) {
    Unit rig;
    const Values xs{5000.0};
    const Values ys{2000.0};
    rig.show({{x_row, xs}, {-2.0, ys}, {-2.0, ys}, {x_row, xs}, {-2.0, ys}, {-2.0, ys}});
    EXPECT_EQ(rig.click(5000.0, 2000.0), "PointSelected(1, 1, 2, 1)");
}

TEST(HitTest, hidden_series_nulls_and_points_out_of_view_cannot_be_hit) {
    Unit rig;
    const Values xs{5000.0, 6000.0, 13520.0};
    const Values ys{2000.0, -999.0, 2000.0};
    rig.show({{x_row, xs}, {-2.0, ys}});
    rig.chart.SetSeriesOptions(1, 1, -1, "", 0, 0, 1);
    EXPECT_EQ(rig.click(5000.0, 2000.0), "MouseDown(1, 0)");
    rig.chart.SetSeriesOptions(1, 1, -1, "", 0, 1, 1);
    EXPECT_EQ(rig.click(5000.0, 2000.0), "PointSelected(1, 1, 1, 1)");
    EXPECT_EQ(rig.click(13490.0, 2000.0), "MouseDown(1, 0)");
}

TEST(HitTest, a_point_in_reach_beats_a_polygon) {
    Unit rig;
    const Values xs{5000.0};
    const Values ys{2000.0};
    rig.polygon({4000.0, 6000.0, 6000.0, 4000.0}, {1000.0, 1000.0, 3000.0, 3000.0});
    rig.show({{x_row, xs}, {-2.0, ys}});
    EXPECT_EQ(rig.click(5010.0, 2000.0), "PointSelected(1, 1, 1, 1)");
    EXPECT_EQ(rig.click(5200.0, 2000.0), "GraphicSelected(1, 1)");
    EXPECT_NEAR(rig.log.last_world.x, 5200.0, 1e-6);
    EXPECT_NEAR(rig.log.last_world.y, 2000.0, 1e-6);
}

TEST(HitTest, of_overlapping_polygons_the_first_drawn_answers) {
    Unit rig;
    rig.polygon({4000.0, 6000.0, 6000.0, 4000.0}, {1000.0, 1000.0, 3000.0, 3000.0});
    rig.polygon({4000.0, 6000.0, 6000.0, 4000.0}, {1000.0, 1000.0, 3000.0, 3000.0}, no_colour);
    rig.polygon({5000.0, 8000.0, 8000.0, 5000.0}, {1000.0, 1000.0, 3000.0, 3000.0});
    rig.show({});
    EXPECT_EQ(rig.click(5500.0, 2000.0), "GraphicSelected(1, 1)");
    EXPECT_EQ(rig.click(7000.0, 2000.0), "GraphicSelected(1, 3)");
    EXPECT_EQ(rig.click(9000.0, 2000.0), "MouseDown(1, 0)");
}

TEST(HitTest, a_sheet_thinner_than_a_pixel_is_hit_by_its_outline) {
    Unit rig;
    rig.polygon({5000.0, 5001.0, 5001.0, 5000.0}, {1000.0, 1000.0, 3000.0, 3000.0});
    rig.polygon({5080.0, 5081.0, 5081.0, 5080.0}, {1000.0, 1000.0, 3000.0, 3000.0});
    rig.show({});
    EXPECT_EQ(rig.click(5030.0, 2000.0), "GraphicSelected(1, 1)");
    EXPECT_EQ(rig.click(5055.0, 2000.0), "GraphicSelected(1, 2)");
    EXPECT_EQ(rig.click(5131.5, 2000.0), "MouseDown(1, 0)");
}

TEST(HitTest, only_what_is_in_the_frame_can_be_hit) {
    Unit rig;
    rig.chart.XAxisLeftMargin(1000.0F);
    rig.polygon({-5000.0, 5000.0, 5000.0, -5000.0}, {-9000.0, -9000.0, 9000.0, 9000.0});
    rig.show({});
    EXPECT_EQ(rig.click(500.0, 2000.0), "MouseDown(1, 0)");
    EXPECT_EQ(rig.click(1500.0, 2000.0), "GraphicSelected(1, 1)");
}

TEST(HitTest, polygons_are_hit_where_they_are_seen_on_a_logarithmic_axis) {
    Unit rig;
    rig.chart.YAxisType(1);
    rig.set_limits(0.0, 13500.0, 1.0, 10000.0);
    rig.polygon({4000.0, 6000.0, 6000.0, 4000.0}, {10.0, 10.0, 100.0, 100.0});
    rig.show({});
    EXPECT_EQ(rig.click(5000.0, 1500.0), "GraphicSelected(1, 1)");
    EXPECT_EQ(rig.click(5000.0, 3000.0), "MouseDown(1, 0)");
}

TEST(HitTest, an_annulus_is_open_in_its_middle) {
    const Values xs{0.0, 10.0, 10.0, 0.0, 0.0, 4.0, 4.0, 6.0, 6.0, 4.0, 0.0};
    const Values ys{0.0, 0.0, 10.0, 10.0, 4.0, 4.0, 6.0, 6.0, 4.0, 4.0, 4.0};
    EXPECT_TRUE(inside_polygon(xs, ys, {2.0, 2.0}, 0.001));
    EXPECT_FALSE(inside_polygon(xs, ys, {5.0, 5.0}, 0.001));
    EXPECT_FALSE(inside_polygon(xs, ys, {12.0, 5.0}, 0.001));
}

TEST(HitTest, the_tolerance_is_a_thousandth_of_a_unit) {
    const Values xs{0.0, 10.0, 10.0, 0.0};
    const Values ys{0.0, 0.0, 10.0, 10.0};
    EXPECT_TRUE(inside_polygon(xs, ys, {10.0009, 5.0}, 0.001));
    EXPECT_FALSE(inside_polygon(xs, ys, {10.0011, 5.0}, 0.001));
}

}  // namespace
}  // namespace anomalis::chart
