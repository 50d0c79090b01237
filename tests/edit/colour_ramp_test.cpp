#include "edit/colour_ramp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace anomalis::edit {

namespace {

using Vector = std::array<double, 3>;

/// Linear red, green and blue of sRGB (IEC 61966-2-1).
Vector linear(std::int32_t colour) {
    Vector result{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double part = (colour >> (8 * i) & 0xFF) / 255.0;
        result[i] = part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    }
    return result;
}

Vector times(const std::array<Vector, 3>& matrix, const Vector& v) {
    Vector result{};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2];
    return result;
}

/// CIE L*a*b* under D65.
Vector lab(const Vector& rgb) {
    static const std::array<Vector, 3> to_xyz{
        {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};
    Vector xyz = times(to_xyz, rgb);
    const Vector white{0.9505, 1, 1.089};
    for (std::size_t i = 0; i < 3; ++i) {
        const double t = std::max(0.0, xyz[i] / white[i]);
        xyz[i] = t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116;
    }
    return {116 * xyz[1] - 16, 500 * (xyz[0] - xyz[1]), 200 * (xyz[1] - xyz[2])};
}

double difference(const Vector& a, const Vector& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// What people without one of the cones see (Machado, Oliveira and Fernandes 2009, severity 1).
const std::array<std::array<Vector, 3>, 4> sights{
    {{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
     {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
     {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}},
     {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}}}};

constexpr int steps = 20;

}  // namespace

TEST(ColourRamp, runs_from_violet_to_yellow_with_blue_in_the_high_byte) {
    EXPECT_EQ(ramp_colour(0), 84 << 16 | 1 << 8 | 68);
    EXPECT_EQ(ramp_colour(1), 37 << 16 | 231 << 8 | 253);
    EXPECT_EQ(ramp_colour(0.5), 140 << 16 | 145 << 8 | 33);
    EXPECT_EQ(ramp_colour(-3), ramp_colour(0));
    EXPECT_EQ(ramp_colour(7), ramp_colour(1));
}

TEST(ColourRamp, grows_lighter_all_the_way_for_every_kind_of_eye) {
    for (std::size_t sight = 0; sight < sights.size(); ++sight) {
        double before = -1;
        for (int i = 0; i <= steps; ++i) {
            const double lightness = lab(times(sights[sight], linear(ramp_colour(1.0 * i / steps))))[0];
            EXPECT_GT(lightness, before) << "sight " << sight << " step " << i;
            before = lightness;
        }
    }
}

TEST(ColourRamp, even_steps_look_even) {
    double least = 1e9, most = 0;
    for (int i = 0; i < steps; ++i) {
        const double step = difference(lab(linear(ramp_colour(1.0 * i / steps))),
                                       lab(linear(ramp_colour(1.0 * (i + 1) / steps))));
        least = std::min(least, step);
        most = std::max(most, step);
    }
    EXPECT_LT(most / least, 2.5);
}

}  // namespace anomalis::edit
