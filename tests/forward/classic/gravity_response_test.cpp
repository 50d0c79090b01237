#include "forward/classic/gravity_response.h"

#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {

namespace {

constexpr int gravity_column = 2;

}  // namespace

TEST(GravityResponse, a_wide_slab_is_half_of_bouguer_as_a_polygon_and_the_whole_as_a_prism) {
    Line line(3);
    ModelBody& body = line.add(thick_sheet, 0, 90);
    body.width.value = 1e6F;
    body.distance.value = 5e5F;
    body.depth_extent.value = 100;
    body.density.value = 1;
    body.top.value = 0;
    body.length.value = 0;
    EXPECT_NEAR(line.response(gravity_column)[1], 2.095, 0.001);
    body.length.value = 1e6F;
    EXPECT_NEAR(line.response(gravity_column)[1], 4.19, 0.002);
}

TEST(GravityResponse, a_very_long_prism_gives_twice_the_polygon) {
    for (const double strike : {90.0, -70.0, 60.0}) {
        Line line(101);
        ModelBody& body = line.add(thick_sheet, 503.7, strike);
        body.dip.value = 60;
        body.length.value = 0;
        const std::vector<double> polygon = line.response(gravity_column);
        body.length.value = 1e6F;
        EXPECT_LT(largest_difference(times(polygon, 2), line.response(gravity_column)),
                  1e-3 * peak_of(polygon));
    }
}

TEST(GravityResponse, a_thin_sheet_has_the_gravity_of_a_thick_one) {
    for (const float length : {0.0F, 300.0F}) {
        Line line(51);
        ModelBody& body = line.add(thick_sheet, 203.7, 80);
        body.length.value = length;
        const std::vector<double> thick = line.response(gravity_column);
        body.type = thin_sheet;
        EXPECT_EQ(thick, line.response(gravity_column));
    }
}

TEST(GravityResponse, edges_steps_spheres_polygons_wires_and_unnamed_types_have_none) {
    for (const int type : {3, 4, 5, 6, 17, 9, 0}) {
        Line line(11);
        line.add(thick_sheet, 50).type = type;
        EXPECT_EQ(peak_of(line.response(gravity_column)), 0) << type;
        EXPECT_TRUE(line.body().grav_response_valid);
    }
}

TEST(GravityResponse, follows_the_density_with_its_sign_and_not_below_a_ten_thousandth) {
    Line line(51);
    ModelBody& body = line.add(thick_sheet, 203.7, 80);
    body.density.value = 1;
    const std::vector<double> unit = line.response(gravity_column);
    EXPECT_GT(unit[20], 0);
    body.density.value = -0.3F;
    EXPECT_LT(largest_difference(times(unit, -0.3), line.response(gravity_column)), 1e-6);
    for (const float little : {0.0F, 0.00009F, -0.00009F}) {
        body.density.value = little;
        EXPECT_EQ(peak_of(line.response(gravity_column)), 0);
    }
}

TEST(GravityResponse, a_strike_near_the_profile_gives_none) {
    for (const BodyType type : {thin_sheet, thick_sheet, pipe}) {
        Line line(11, 10, 30);
        line.add(type, 50, 30 + 5.7);
        EXPECT_EQ(peak_of(line.response(gravity_column)), 0);
    }
    Line line(11, 10, 30);
    line.add(thick_sheet, 50, 30 + 5.8);
    EXPECT_GT(peak_of(line.response(gravity_column)), 0.1);
}

TEST(GravityResponse, without_a_depth_extent_a_polygon_is_a_thousand_widths_deep) {
    for (const float length : {0.0F, 300.0F}) {
        Line line(51);
        ModelBody& body = line.add(thick_sheet, 203.7, 80);
        body.length.value = length;
        body.depth_extent.value = 0;
        const std::vector<double> unlimited = line.response(gravity_column);
        body.depth_extent.value = 100000;
        EXPECT_EQ(unlimited, line.response(gravity_column));
    }
}

TEST(GravityResponse, plunge_and_slope_play_no_part_for_a_polygon) {
    Line line(51);
    ModelBody& body = line.add(thick_sheet, 203.7, 80);
    body.length.value = 0;
    const std::vector<double> plain = line.response(gravity_column);
    body.plunge.value = 30;
    body.slope.value = 20;
    body.offset.value = 70;
    EXPECT_EQ(plain, line.response(gravity_column));
    body.length.value = 300;
    EXPECT_GT(largest_difference(plain, line.response(gravity_column)), 0.1);
}

TEST(GravityResponse, a_station_under_the_top_is_not_lifted) {
    Line line(21);
    ModelBody& body = line.add(thick_sheet, 103.7, 90);
    body.length.value = 0;
    body.top.value = 100;
    const std::vector<double> level = line.response(gravity_column);
    body.top.value = 160;
    EXPECT_GT(largest_difference(level, line.response(gravity_column)), 0.1);
}

TEST(GravityResponse, a_station_over_a_corner_tells_it_and_goes_on) {
    Line line(21);
    ModelBody& body = line.add(thick_sheet, 100, 90);
    body.length.value = 0;
    body.dip.value = 60;
    const std::vector<double> curve = line.response(gravity_column);
    ASSERT_EQ(line.faults.entries().size(), 1U);
    EXPECT_EQ(texts_of(line.faults)[0],
              "An error occurred calculating the Talwani gravity response: Division by zero (4 times)");
    EXPECT_GT(curve[15], 0);
}

TEST(GravityResponse, moves_with_its_body) {
    for (const BodyType type : {thick_sheet, thin_sheet}) {
        Line line(101);
        ModelBody& body = line.add(type, 403.7, 75);
        body.dip.value = 50;
        std::vector<double> curve = line.response(gravity_column);
        body.distance.value = 433.7F;
        std::vector<double> moved = line.response(gravity_column);
        curve.resize(98);
        moved.erase(moved.begin(), moved.begin() + 3);
        EXPECT_LT(largest_difference(curve, moved), 1e-5 * peak_of(curve));
    }
}

TEST(GravityResponse, a_sphere_takes_its_strike_here_too) {
    Line line(11);
    line.workspace.definition.mag_column = 0;
    line.add(sphere, 50, 33);
    line.calculate();
    EXPECT_NEAR(line.body().strike.value, 90 + 3.14159, 1e-3);
}

}  // namespace anomalis::forward
