#include "forward/classic/wire.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {

namespace {

using Conductors = std::vector<std::array<double, 3>>;  // beside, above, milliamperes

/// What the currents add to the strength of the field, in more digits than the response has.
double strength_gained(const Line& line, double x, const Conductors& wires, float strike_degrees = 90) {
    const auto& field = line.workspace.field;
    const long double i = field.inclination * 0.017453292L, d = field.declination * 0.017453292L;
    const long double strike = strike_degrees * 0.017453292L, f = field.intensity;
    const long double east = f * std::cos(i) * std::sin(d), north = f * std::cos(i) * std::cos(d);
    const long double along = north * std::cos(strike) + east * std::sin(strike);
    long double across = east * std::cos(strike) - north * std::sin(strike), down = f * std::sin(i);
    for (const auto& [dx, dh, milliamperes] : wires) {
        const long double h = 100 + static_cast<long double>(dh), xk = static_cast<long double>(x) + dx;
        const long double b = milliamperes * 0.2L / (xk * xk + h * h);
        across += b * h;
        down -= b * xk;
    }
    return static_cast<double>(std::sqrt(across * across + along * along + down * down) - f);
}

void expect_curve(Line& line, const Conductors& wires) {
    const std::vector<double> curve = line.response();
    const double peak = peak_of(curve);
    EXPECT_GT(peak, 1);
    for (int i = 1; i <= 41; ++i) {
        const double x = -(10.0 * (i - 1) - 200);  // across a strike of 90 is to the south
        EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)], strength_gained(line, x, wires), 1e-6 * peak)
            << i;
    }
}

}  // namespace

TEST(Wire, is_the_difference_of_the_strengths) {
    Line line(41);
    ModelBody& body = line.add(wire, 200);
    body.susc.value = 50000;
    expect_curve(line, {{0, 0, 50000}});
}

TEST(Wire, a_negative_current_runs_the_other_way) {
    Line line(41);
    ModelBody& body = line.add(wire, 200);
    body.susc.value = -50000;
    expect_curve(line, {{0, 0, -50000}});
}

TEST(Wire, a_pair_of_rotation_0_stands_upright) {
    Line line(41);
    ModelBody& body = line.add(wire, 200);
    body.susc.value = 2e5F;
    body.offset.value = 60;
    body.dip.value = 0;
    expect_curve(line, {{0, -30, 2e5}, {0, 30, -2e5}});
}

TEST(Wire, a_pair_of_rotation_90_lies_side_by_side) {
    Line line(41);
    ModelBody& body = line.add(wire, 200);
    body.susc.value = 2e5F;
    body.offset.value = 60;
    body.dip.value = 90;
    expect_curve(line, {{-30, 0, 2e5}, {30, 0, -2e5}});
}

TEST(Wire, a_station_under_a_wire_of_the_pair_is_lifted_over_that_wire_alone) {
    Line line(41);
    ModelBody& body = line.add(wire, 207);
    body.susc.value = 1000;
    body.offset.value = 100;
    body.top.value = 70;
    const std::vector<double> curve = line.response();
    // 20 m under the first wire and 80 m over the second.
    EXPECT_NEAR(curve[21], strength_gained(line, -3, {{0, 0.1 - 100, 1000}, {0, 80.0 - 100, -1000}}), 1e-3);
    EXPECT_GT(std::abs(curve[21]), 1);
    EXPECT_TRUE(line.faults.empty());
}

TEST(Wire, along_the_profile_is_zero) {
    Line line(41);
    line.add(wire, 200, 3);
    EXPECT_EQ(peak_of(line.response()), 0);
}

TEST(Wire, without_current_is_zero) {
    Line line(41);
    line.add(wire, 200).susc.value = 0;
    EXPECT_EQ(peak_of(line.response()), 0);
}

TEST(Wire, of_a_weak_current_is_right_to_the_digits_of_a_single) {
    for (const float current : {0.001F, 0.1F, 10.0F, -10.0F}) {
        Line line(41);
        ModelBody& body = line.add(wire, 200, 73);
        body.susc.value = current;
        const std::vector<double> curve = line.response();
        const double peak = peak_of(curve);
        EXPECT_GT(peak, 0);
        for (int i = 1; i <= 41; ++i) {
            const double x = -std::sin(73 * 0.017453292) * (10.0 * (i - 1) - 200);
            EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)],
                        strength_gained(line, x, {{0, 0, static_cast<double>(current)}}, 73), 1e-6 * peak)
                << i;
        }
    }
}

TEST(Wire, in_no_field_is_its_own_strength) {
    Line line(41);
    line.workspace.field.intensity = 0;
    line.add(wire, 200).susc.value = 1000;
    EXPECT_FLOAT_EQ(static_cast<float>(line.response()[20]), 1000 * 0.2F / 100);
}

TEST(Wire, does_not_know_demagnetisation) {
    Line line(41);
    ModelBody& body = line.add(wire, 200);
    const std::vector<double> curve = line.response();
    body.include_demagnetisation = 1;
    EXPECT_EQ(curve, line.response());
    EXPECT_EQ(body.last_calculated, -1.0F);
}

}  // namespace anomalis::forward
