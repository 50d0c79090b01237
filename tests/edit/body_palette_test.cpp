#include "edit/body_palette.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <vector>

#include "edit/body_sample.h"

namespace anomalis::edit {

namespace {

struct Linear {
    double red, green, blue;
};

double linear(std::int32_t colour, int shift) {
    const double part = (colour >> shift & 0xFF) / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

Linear linear(std::int32_t colour) {
    return {linear(colour, 0), linear(colour, 8), linear(colour, 16)};
}

/// What people see who lack the middle (deuteranopia) or the long (protanopia) cones: H. Brettel, F. Vienot
/// and J. Mollon (1997) in the one-plane form of Vienot, Brettel and Mollon (1999), linear light.
Linear without_middle(const Linear& c) {
    return {0.29275 * c.red + 0.70725 * c.green, 0.29275 * c.red + 0.70725 * c.green,
            -0.02234 * c.red + 0.02234 * c.green + c.blue};
}
Linear without_long(const Linear& c) {
    return {0.11238 * c.red + 0.88762 * c.green, 0.11238 * c.red + 0.88762 * c.green,
            0.00401 * c.red - 0.00401 * c.green + c.blue};
}

/// CIE 1976 L*a*b*, D65.
std::array<double, 3> lab(const Linear& c) {
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116; };
    const double x = f((0.4124 * c.red + 0.3576 * c.green + 0.1805 * c.blue) / 0.95047);
    const double y = f(0.2126 * c.red + 0.7152 * c.green + 0.0722 * c.blue);
    const double z = f((0.0193 * c.red + 0.1192 * c.green + 0.9505 * c.blue) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double difference(const Linear& left, const Linear& right) {
    const auto a = lab(left), b = lab(right);
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

}  // namespace

TEST(BodyPalette, its_colours_are_told_apart_by_everybody_and_from_paper_curves_and_selection) {
    constexpr std::int32_t white = 0xFFFFFF, black = 0, magenta = 0xFF00FF;
    constexpr double clearly = 15;  // CIE 1976 colour difference; 2.3 is just seen
    std::vector<std::int32_t> all(body_palette().begin(), body_palette().end());
    all.insert(all.end(), {white, black, magenta});
    for (std::size_t i = 0; i < body_palette().size(); ++i)
        for (std::size_t k = i + 1; k < all.size(); ++k) {
            const Linear left = linear(all[i]), right = linear(all[k]);
            EXPECT_GT(difference(left, right), clearly) << i << " " << k;
            EXPECT_GT(difference(without_middle(left), without_middle(right)), clearly) << i << " " << k;
            EXPECT_GT(difference(without_long(left), without_long(right)), clearly) << i << " " << k;
        }
}

TEST(BodyPalette, bodies_that_are_added_one_after_the_other_differ_as_long_as_there_are_colours) {
    std::vector<std::int32_t> used;
    for (std::size_t i = 0; i < body_palette().size(); ++i) used.push_back(next_body_colour(used));
    EXPECT_EQ(std::set(used.begin(), used.end()).size(), body_palette().size());
    EXPECT_EQ(next_body_colour(used), body_palette().front()) << "then it begins anew";
}

TEST(BodyPalette, a_colour_that_a_deleted_body_left_is_used_again) {
    const auto palette = body_palette();
    EXPECT_EQ(next_body_colour(std::vector{palette[0], palette[2], palette[3]}), palette[1]);
}

TEST(BodyPalette, a_colour_of_ones_own_keeps_its_likeness_away) {
    EXPECT_EQ(next_body_colour(std::vector<std::int32_t>{0xFF0000}), body_palette()[1])
        << "pure blue counts as the blue of the palette";
}

TEST(BodyPalette, only_bodies_that_stand_there_count) {
    BodySample sample;
    for (int i = 1; i <= 3; ++i) sample.body(i).colour = body_palette()[static_cast<std::size_t>(i - 1)];
    EXPECT_EQ(next_body_colour(sample.workspace()), body_palette()[3]);
    sample.workspace().body_count = 1;
    EXPECT_EQ(next_body_colour(sample.workspace()), body_palette()[1]);
}

}  // namespace anomalis::edit
