#include "forward/classic/field_coefficients.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {

namespace {

struct Case : Line {
    Case() : Line(3) {}

    ModelBody& with(BodyType type) { return add(type, 0, 30); }
    int run() { return calculate_field_coefficients(workspace, body(), faults); }
};

double size_of(const ModelBody& body) {
    return std::sqrt(body.moment_x * body.moment_x + body.moment_y * body.moment_y +
                     body.moment_z * body.moment_z);
}

}  // namespace

TEST(FieldCoefficients, induced_magnetisation_is_susceptibility_times_field_over_4_pi) {
    Case c;
    c.with(thick_sheet);
    EXPECT_EQ(c.run(), 0);
    const double expected = 0.05 * 56000 / (4 * pi);
    EXPECT_NEAR(c.body().last_calculated, expected, expected * 1e-7);
    EXPECT_NEAR(c.body().field_down, std::sin(-65 * radians_per_degree), 1e-7);
    EXPECT_EQ(c.body().mag_north, c.body().field_north);
    EXPECT_NEAR(c.body().moment_y / expected, c.body().field_north, 1e-7) << "the second component is north";
    EXPECT_NEAR(size_of(c.body()), expected, expected * 1e-6);
}

TEST(FieldCoefficients, a_negative_susceptibility_keeps_the_direction_and_signs_the_size) {
    Case c;
    c.with(thin_sheet).susc.value = -20000;
    EXPECT_EQ(c.run(), 0);
    EXPECT_LT(c.body().last_calculated, 0);
    EXPECT_EQ(c.body().mag_down, c.body().field_down);
}

TEST(FieldCoefficients, no_magnetic_property_gives_size_zero) {
    Case c;
    c.with(thin_sheet).susc.value = 0;
    EXPECT_EQ(c.run(), 0);
    EXPECT_EQ(c.body().last_calculated, 0);
    EXPECT_TRUE(c.faults.empty());
}

TEST(FieldCoefficients, a_remanence_without_susceptibility_is_a_fault_that_leaves_the_fields) {
    Case c;
    ModelBody& body = c.with(thin_sheet);
    body.susc.value = 0;
    body.rem_q.value = 2;
    body.coef_a = 7;
    EXPECT_EQ(c.run(), -1);
    ASSERT_EQ(c.faults.entries().size(), 1U);
    EXPECT_EQ(texts_of(c.faults)[0],
              "An error occurred while calculating the field coefficientsDivision by zero");
    EXPECT_EQ(body.coef_a, 7);
    EXPECT_EQ(body.last_calculated, -1.0F);
}

TEST(FieldCoefficients, a_remanence_along_the_field_adds_to_the_size_alone) {
    Case c;
    ModelBody& body = c.with(thin_sheet);
    body.rem_q.value = 1.5F;
    body.rem_i.value = c.workspace.field.inclination;
    body.rem_d.value = c.workspace.field.declination;
    EXPECT_EQ(c.run(), 0);
    EXPECT_NEAR(body.last_calculated, 2.5 * 0.05 * 56000 / (4 * pi), 1e-4);
    EXPECT_NEAR(body.mag_north, body.field_north, 1e-6);
    EXPECT_NEAR(body.mag_down, body.field_down, 1e-6);
}

TEST(FieldCoefficients, a_negative_ratio_turns_the_remanence_round_and_the_size_stays_positive) {
    Case c;
    ModelBody& body = c.with(thin_sheet);
    body.rem_q.value = -3;
    body.rem_i.value = c.workspace.field.inclination;
    body.rem_d.value = c.workspace.field.declination;
    EXPECT_EQ(c.run(), 0);
    EXPECT_NEAR(body.last_calculated, 2 * 0.05 * 56000 / (4 * pi), 1e-4);
    EXPECT_NEAR(body.mag_down, -body.field_down, 1e-6);
}

TEST(FieldCoefficients, demagnetisation_of_an_upright_sheet_reduces_the_component_across_strike) {
    Case c;
    ModelBody& body = c.with(thick_sheet);
    c.run();
    const double across = body.moment_x * body.cos_strike - body.moment_y * body.sin_strike;
    const double along = body.moment_y * body.cos_strike + body.moment_x * body.sin_strike;
    const double down = body.moment_z;
    body.include_demagnetisation = 1;
    c.run();
    EXPECT_NEAR(body.moment_x * body.cos_strike - body.moment_y * body.sin_strike, across / 1.05, 1e-4);
    EXPECT_NEAR(body.moment_y * body.cos_strike + body.moment_x * body.sin_strike, along, 1e-4);
    EXPECT_NEAR(body.moment_z, down, 1e-4);
    EXPECT_EQ(body.mag_down, body.field_down) << "without remanence the direction stays the field's";
}

TEST(FieldCoefficients, demagnetisation_of_a_flat_sheet_reduces_the_vertical_component) {
    Case c;
    ModelBody& body = c.with(sphere);
    body.dip.value = 0;
    c.run();
    const double east = body.moment_x, down = body.moment_z;
    body.include_demagnetisation = 1;
    c.run();
    EXPECT_NEAR(body.moment_x, east, 1e-4);
    EXPECT_NEAR(body.moment_z, down / 1.05, 1e-4);
}

TEST(FieldCoefficients, demagnetisation_turns_the_direction_where_there_is_a_remanence) {
    Case c;
    ModelBody& body = c.with(thick_sheet);
    body.susc.value = 1e6;
    body.include_demagnetisation = 1;
    body.rem_q.value = 1e-6F;
    c.run();
    EXPECT_NEAR(body.mag_down, body.moment_z / body.last_calculated, 1e-6);
    EXPECT_GT(std::abs(body.mag_down), std::abs(body.field_down) + 0.01);
}

TEST(FieldCoefficients, only_a_mark_of_exactly_1_demagnetises) {
    for (const int mark : {0, -1, 2}) {
        Case c;
        ModelBody& body = c.with(thick_sheet);
        c.run();
        const float before = body.last_calculated;
        body.include_demagnetisation = mark;
        c.run();
        EXPECT_EQ(body.last_calculated, before) << mark;
    }
}

TEST(FieldCoefficients, a_wire_gets_its_turned_field_and_stays_out_of_date) {
    Case c;
    ModelBody& body = c.with(wire);
    body.coef_a = 9;
    EXPECT_EQ(c.run(), 0);
    EXPECT_EQ(body.last_calculated, -1.0F);
    EXPECT_EQ(body.coef_a, 9);
    EXPECT_NEAR(size_of(body), 56000, 0.01);
    const double across = std::cos(-65 * radians_per_degree) * std::sin((-4 - 30) * radians_per_degree);
    EXPECT_NEAR(body.moment_x, 56000 * across, 0.01);
}

TEST(FieldCoefficients, of_a_sphere_under_a_vertical_field_are_those_of_a_vertical_dipole) {
    Case c;
    c.workspace.field.inclination = 90;
    ModelBody& body = c.with(sphere);
    c.run();
    EXPECT_NEAR(body.coef_a, -1, 1e-6);
    EXPECT_NEAR(body.coef_b, 2, 1e-6);
    EXPECT_NEAR(body.coef_c, 0, 1e-6);
}

TEST(FieldCoefficients, of_a_sheet_take_the_north_component_whatever_the_strike) {
    Case c;
    ModelBody& body = c.with(thin_sheet);
    c.run();
    const float a = body.coef_a, b = body.coef_b;
    body.strike.value = 120;
    c.run();
    EXPECT_EQ(body.coef_a, a);
    EXPECT_EQ(body.coef_b, b);
    EXPECT_NEAR(a, body.field_north * body.field_north - body.field_down * body.field_down, 1e-6);
    EXPECT_NEAR(b, -4 * body.field_north * body.field_down, 1e-6);
    EXPECT_EQ(body.coef_c, 0);
}

TEST(FieldCoefficients, a_field_beyond_single_precision_is_an_overflow) {
    Case c;
    c.workspace.field.intensity = 3e38F;
    c.with(thin_sheet).susc.value = 1e30F;
    EXPECT_EQ(c.run(), -1);
    EXPECT_TRUE(told(c.faults, "Overflow"));
}

}  // namespace anomalis::forward
