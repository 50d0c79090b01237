#include "forward/classic/sphere.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {

TEST(Sphere, under_a_vertical_field_is_a_vertical_dipole) {
    Line line(101);
    line.workspace.field.inclination = 90;
    ModelBody& body = line.add(sphere, 500);
    body.width.value = 30;
    body.strike.value = 90;
    const std::vector<double> curve = line.response();
    const double moment = 0.05 * 56000 / (4 * pi) * 4.0 / 3 * pi * 8.0 * 27000;
    // The radius is the width; the diameter enters twice as long again.
    const double volume_ratio = 1.0 / 8;
    for (int i = 1; i <= 101; ++i) {
        const double x = 10.0 * (i - 1) - 500, h = 100;
        const double expected = moment * volume_ratio * (2 * h * h - x * x) / std::pow(x * x + h * h, 2.5);
        EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)], expected, 1e-5 * peak_of(curve));
    }
}

TEST(Sphere, takes_the_azimuth_in_radians_plus_90_as_its_strike) {
    Line line(11, 10, 0);
    ModelBody& body = line.add(sphere, 50, 33);
    line.calculate();
    EXPECT_FLOAT_EQ(body.strike.value, static_cast<float>(line.workspace.azimuth + 90.0));
    EXPECT_NEAR(body.strike.value, 90 + 3.14159265, 1e-4);
}

TEST(Sphere, on_an_east_west_line_lies_along_the_profile_and_is_zero) {
    Line line(11, 10, 90);
    line.add(sphere, 50);
    EXPECT_EQ(peak_of(line.response()), 0);
    EXPECT_TRUE(line.faults.empty());
}

TEST(Sphere, has_no_gravity) {
    Line line(11);
    line.add(sphere, 50);
    EXPECT_EQ(peak_of(line.response(2)), 0);
}

}  // namespace anomalis::forward
