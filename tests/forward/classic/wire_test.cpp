#include "forward/classic/wire.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {

namespace {

/// Strength of field and current together, for a line to the north and a wire across it.
double strength(const Line& line, double x, const std::vector<std::array<double, 3>>& wires) {
    const ModelBody& body = line.workspace.body(1);
    double across = body.moment_x, down = body.moment_z;
    for (const auto& [dx, dh, milliamperes] : wires) {
        const double h = 100 + dh, xk = x + dx;
        const double b = milliamperes * 0.2 / (xk * xk + h * h);
        across += b * h;
        down -= b * xk;
    }
    return std::sqrt(across * across + body.moment_y * body.moment_y + down * down) -
           line.workspace.field.intensity;
}

void expect_curve(Line& line, const std::vector<std::array<double, 3>>& wires) {
    const std::vector<double> curve = line.response();
    for (int i = 1; i <= 41; ++i) {
        const double x = -(10.0 * (i - 1) - 200);  // across a strike of 90 is to the south
        EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)], strength(line, x, wires), 1e-4) << i;
    }
    EXPECT_GT(peak_of(curve), 1);
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
    EXPECT_NEAR(curve[21], strength(line, -3, {{0, 0.1 - 100, 1000}, {0, 80.0 - 100, -1000}}), 1e-3);
    EXPECT_GT(std::abs(curve[21]), 1);
    EXPECT_TRUE(line.faults.empty());
}

TEST(Wire, along_the_profile_is_zero) {
    Line line(41);
    line.add(wire, 200, 3);
    EXPECT_EQ(peak_of(line.response()), 0);
}

TEST(Wire, without_current_is_zero_but_for_rounding) {
    Line line(41);
    line.add(wire, 200).susc.value = 0;
    EXPECT_LT(peak_of(line.response()), 0.01);
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
