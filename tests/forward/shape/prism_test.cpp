#include "forward/shape/prism.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/line.h"

namespace anomalis::forward {

namespace {

ModelBody sheet() {
    ModelBody body;
    body.type = thick_sheet;
    body.east = 1000;
    body.north = 2000;
    body.top.value = 50;
    body.dip.value = 90;
    body.width.value = 100;
    body.depth_extent.value = 200;
    body.length.value = 300;
    set_body_angles(body);
    return body;
}

void expect_at(const Point3& corner, double x, double y, double z) {
    EXPECT_NEAR(corner.x, x, 1e-3);
    EXPECT_NEAR(corner.y, y, 1e-3);
    EXPECT_NEAR(corner.z, z, 1e-3);
}

double volume_of(const PrismCorners& corners) {
    double volume = 0;
    const auto from_first = [&](int i) {
        const Point3& p = corners[static_cast<std::size_t>(i)];
        return Point3{p.x - corners[0].x, p.y - corners[0].y, p.z - corners[0].z};
    };
    for (const auto& face : prism_faces)
        for (const std::size_t second : {1U, 2U}) {
            const Point3 a = from_first(face[0]), b = from_first(face[second]),
                         c = from_first(face[second + 1]);
            volume += (a.x * (b.y * c.z - b.z * c.y) + a.y * (b.z * c.x - b.x * c.z) +
                       a.z * (b.x * c.y - b.y * c.x)) /
                      6;
        }
    return volume;
}

}  // namespace

TEST(Prism, stands_along_strike_about_its_offset_and_across_from_the_reference_point) {
    ModelBody body = sheet();
    body.offset.value = 40;
    const PrismCorners at = magnetic_prism(body);
    expect_at(at[0], 1000, 2190, 50);
    expect_at(at[1], 1000, 1890, 50);
    expect_at(at[2], 1100, 1890, 50);
    expect_at(at[3], 1100, 2190, 50);
    expect_at(at[4], 1000, 2190, -150);
    expect_at(at[6], 1100, 1890, -150);
}

TEST(Prism, turns_with_its_strike) {
    ModelBody body = sheet();
    body.strike.value = 90;
    set_body_angles(body);
    const PrismCorners at = magnetic_prism(body);
    expect_at(at[0], 1150, 2000, 50);
    expect_at(at[3], 1150, 1900, 50);
}

TEST(Prism, plunge_lowers_by_its_sine_and_leaves_the_length_level) {
    ModelBody body = sheet();
    body.plunge.value = 30;
    const PrismCorners at = magnetic_prism(body);
    expect_at(at[0], 1000, 2150, 50 - 75);
    expect_at(at[1], 1000, 1850, 50 + 75);
}

TEST(Prism, its_faces_turn_outward) {
    EXPECT_NEAR(volume_of(magnetic_prism(sheet())), 100.0 * 200 * 300, 1);
    ModelBody body = sheet();
    body.dip.value = 50;
    body.slope.value = 15;
    body.plunge.value = 10;
    body.strike.value = 200;
    set_body_angles(body);
    EXPECT_GT(volume_of(gravity_prism(body)), 1e6);
}

TEST(Prism, the_bottom_lies_down_dip) {
    ModelBody body = sheet();
    body.dip.value = 45;
    set_body_angles(body);
    expect_at(magnetic_prism(body)[4], 1200, 2150, -150);
    expect_at(gravity_prism(body)[4], 1200, 2150, -150);
}

TEST(Prism, without_a_depth_extent_is_5_km_deep_for_magnetics_and_1000_widths_for_gravity) {
    ModelBody body = sheet();
    body.depth_extent.value = 0;
    body.dip.value = 45;
    set_body_angles(body);
    EXPECT_NEAR(magnetic_prism(body)[4].z, 50 - 5000, 1e-6);
    EXPECT_NEAR(magnetic_prism(body)[4].x, 1000 + 5000, 0.01);
    EXPECT_NEAR(gravity_prism(body)[4].z, 50 - 100000, 1e-6);
    EXPECT_NEAR(gravity_prism(body)[4].x, 1000 + 100000, 0.1);
    EXPECT_EQ(gravity_bottom(body).depth, 100000);
}

TEST(Prism, a_flat_dip_and_a_negative_depth_extent_have_no_bottom_offset) {
    ModelBody body = sheet();
    for (const float dip : {0.0F, 180.0F}) {
        body.dip.value = dip;
        set_body_angles(body);
        EXPECT_NEAR(magnetic_prism(body)[4].x, 1000, 1e-9) << dip;
        EXPECT_NEAR(gravity_prism(body)[4].x, 1000, 1e-9) << dip;
    }
    body.dip.value = 45;
    body.depth_extent.value = -200;
    set_body_angles(body);
    expect_at(magnetic_prism(body)[4], 1000, 2150, 250);
    expect_at(gravity_prism(body)[4], 1000 - 200, 2150, 250);
}

TEST(Prism, a_slope_narrows_the_top_with_minus_for_magnetics_and_plus_for_gravity) {
    ModelBody body = sheet();
    body.dip.value = 60;
    body.slope.value = 20;
    set_body_angles(body);
    const double t = std::tan(20 * radians_per_degree);
    const double cot = 1 / std::tan(60 * radians_per_degree);
    const double magnetic = 100 / (1 + cot * t), gravity = 100 / (1 - cot * t);
    expect_at(magnetic_prism(body)[3], 1000 + magnetic, 2150, 50 + magnetic * t);
    expect_at(gravity_prism(body)[2], 1000 + gravity, 1850, 50 + gravity * t);
    expect_at(magnetic_prism(body)[7], 1000 + 200 * cot + magnetic, 2150, -150 + magnetic * t);
}

TEST(Prism, a_slope_on_an_upright_sheet_keeps_the_width) {
    ModelBody body = sheet();
    body.slope.value = 20;
    body.dip.value = 90.05F;
    set_body_angles(body);
    EXPECT_NEAR(magnetic_prism(body)[3].x, 1100, 1e-6);
}

TEST(Prism, a_slope_within_a_tenth_of_a_degree_is_level) {
    ModelBody body = sheet();
    body.slope.value = 0.1F;
    EXPECT_NEAR(magnetic_prism(body)[3].z, 50, 0.2);
    body.slope.value = 0.09F;
    EXPECT_EQ(magnetic_prism(body)[3].z, 50);
}

TEST(Prism, a_slope_on_a_flat_dip_is_a_fault) {
    ModelBody body = sheet();
    body.dip.value = 0;
    body.slope.value = 20;
    set_body_angles(body);
    EXPECT_THROW(magnetic_prism(body), Fault);
    EXPECT_THROW(gravity_prism(body), Fault);
}

TEST(Prism, of_length_zero_has_its_ends_in_one_place) {
    ModelBody body = sheet();
    body.length.value = 0;
    body.slope.value = 10;
    const PrismCorners at = magnetic_prism(body);
    EXPECT_EQ(at[0], at[1]);
    EXPECT_EQ(at[2], at[3]);
    EXPECT_EQ(at[6], at[7]);
}

TEST(Prism, corners_relative_to_the_first_station_run_north_east_down) {
    Line line(3, 10, 0, 120);
    ModelBody body = sheet();
    body.east = 350010;
    body.north = 6500020;
    const auto corners = relative_to_first_station(magnetic_prism(body), line.workspace);
    EXPECT_NEAR(corners[0].north, 170, 1e-6);
    EXPECT_NEAR(corners[0].east, 10, 1e-6);
    EXPECT_NEAR(corners[0].down, 70, 1e-6);
}

}  // namespace anomalis::forward
