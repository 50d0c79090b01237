#include "forward/shape/trapezoid.h"

#include <cmath>
#include <gtest/gtest.h>

#include "core/angles.h"
#include "support/told.h"

namespace anomalis::forward {

namespace {

ModelBody sheet() {
    ModelBody body;
    body.type = thick_sheet;
    body.dip.value = 90;
    body.width.value = 100;
    body.depth_extent.value = 200;
    body.length.value = 300;
    return body;
}

Trapezoid corners_of(const ModelBody& body) {
    Faults faults;
    Trapezoid corners{};
    EXPECT_EQ(convert_profile_model_to_trapezoid(body, corners, faults), 0);
    return corners;
}

void expect_at(const std::array<float, 3>& corner, double east, double north, double up) {
    EXPECT_NEAR(corner[0], east, 1e-2);
    EXPECT_NEAR(corner[1], north, 1e-2);
    EXPECT_NEAR(corner[2], up, 1e-2);
}

}  // namespace

TEST(Trapezoid, is_relative_to_the_reference_point_at_the_top) {
    ModelBody body = sheet();
    body.offset.value = 40;
    body.top.value = 77;
    body.east = 1000;
    const Trapezoid at = corners_of(body);
    expect_at(at[0][0], 0, 190, 0);
    expect_at(at[0][1], 0, -110, 0);
    expect_at(at[0][2], 100, -110, 0);
    expect_at(at[0][3], 100, 190, 0);
    expect_at(at[1][2], 100, -110, -200);
}

TEST(Trapezoid, turns_plunges_and_dips) {
    ModelBody body = sheet();
    body.strike.value = 90;
    body.plunge.value = 30;
    body.dip.value = 45;
    const Trapezoid at = corners_of(body);
    expect_at(at[0][0], 150, 0, -75);
    expect_at(at[0][3], 150, -100, -75);
    expect_at(at[1][0], 150, -200, -275);
}

TEST(Trapezoid, without_a_depth_extent_is_drawn_1000_deep) {
    ModelBody body = sheet();
    body.depth_extent.value = 0;
    body.dip.value = 45;
    expect_at(corners_of(body)[1][0], 1000, 150, -1000);
    body.dip.value = 0;
    expect_at(corners_of(body)[1][0], 0, 150, -1000);
}

TEST(Trapezoid, a_slope_raises_the_far_side_and_narrows_it) {
    ModelBody body = sheet();
    body.dip.value = 60;
    body.slope.value = 20;
    const double t = std::tan(20 * radians_per_degree);
    const double width = 100 / (1 + t / std::tan(60 * radians_per_degree));
    expect_at(corners_of(body)[0][3], width, 150, width * t);
    expect_at(corners_of(body)[1][2], 200 / std::tan(60 * radians_per_degree) + width, -150,
              -200 + width * t);
}

TEST(Trapezoid, a_dip_whose_cosine_is_below_a_tenth_keeps_the_width) {
    ModelBody body = sheet();
    body.dip.value = 85;
    body.slope.value = 20;
    expect_at(corners_of(body)[0][3], 100, 150, 100 * std::tan(20 * radians_per_degree));
}

TEST(Trapezoid, a_slope_on_a_flat_dip_is_reported) {
    ModelBody body = sheet();
    body.dip.value = 0;
    body.slope.value = 20;
    Faults faults;
    Trapezoid corners{};
    EXPECT_EQ(convert_profile_model_to_trapezoid(body, corners, faults), -1);
    EXPECT_EQ(texts_of(faults).at(0), "An error occurred while converting the body: Division by zero");
}

TEST(Trapezoid, beyond_single_precision_is_reported) {
    ModelBody body = sheet();
    body.length.value = 3e38F;
    body.offset.value = 3e38F;
    Faults faults;
    Trapezoid corners{};
    EXPECT_EQ(convert_profile_model_to_trapezoid(body, corners, faults), -1);
    EXPECT_TRUE(told(faults, "Overflow"));
}

TEST(Trapezoid, of_an_exact_thin_sheet_is_as_wide_as_its_thickness_over_the_sine_of_its_dip) {
    ModelBody body = sheet();
    body.type = thin_sheet;
    body.dip.value = 30;
    body.width.value = 10;
    body.strike.value = 90;
    Faults faults;
    Trapezoid corners{};
    ASSERT_EQ(convert_exact_sheet_to_trapezoid(body, corners, faults), 0);
    expect_at(corners[0][0], 150, 0, 0);
    expect_at(corners[0][1], -150, 0, 0);
    expect_at(corners[0][2], -150, -20, 0);
    expect_at(corners[1][3], 150, -20 - 200 * std::sqrt(3.0), -200);
}

}  // namespace anomalis::forward
