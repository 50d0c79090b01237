#include <gtest/gtest.h>

#include "column_line.h"

namespace anomalis::forward {
namespace {

ModelBody& add_sphere(Line& line, Dice& dice) {
    ModelBody& body = add_random(line, sphere, dice);
    body.top.value = static_cast<float>(dice.between(-150, -60));
    body.width.value = static_cast<float>(dice.between(20, 80));
    return body;
}

TEST(PointColumns, of_a_sphere_are_the_slopes_of_its_values) {
    Dice dice(40);
    for (int turn = 0; turn < 6; ++turn) {
        PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
        ModelBody& body = add_sphere(line, dice);
        body.include_demagnetisation = turn % 2;
        if (turn % 2 == 1) body.susc.value = 3e6F;
        for (const int channel : {channel_mag, channel_grav})
            expect_slopes_of_values(line, channel, 1e-8, "sphere " + std::to_string(turn));
    }
}

TEST(PointColumns, within_a_sphere_follow_its_field) {
    Dice dice(41);
    PlaceLine line({200, 280, 300, 320, 400}, 60, dice);
    ModelBody& body = add_sphere(line, dice);
    body.distance.value = 300;
    body.top.value = 50;
    body.width.value = 90;
    for (const int channel : {channel_mag, channel_grav})
        expect_slopes_of_values(line, channel, 1e-8, "within");
}

/// The strength of the ambient field hides all but 1e-16 of itself.
TEST(PointColumns, of_wires_are_the_slopes_of_their_values) {
    Dice dice(42);
    for (int turn = 0; turn < 8; ++turn) {
        PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
        ModelBody& body = add_random(line, wire, dice);
        body.susc.value = static_cast<float>(dice.between(-5000, 90000));
        body.offset.value = turn % 3 == 0 ? 0.0F : static_cast<float>(dice.between(0.5, 4));
        const int codes[] = {param_distance, param_top, param_strike, param_dip, param_susc, param_offset};
        const Columns found(line, channel_mag, codes);
        for (std::size_t k = 0; k < std::size(codes); ++k) {
            if (codes[k] == param_offset && body.offset.value == 0) continue;
            const std::vector<double> expected = slope_of_values(line, channel_mag, codes[k]);
            const std::vector<double> column(found.column(k).begin(), found.column(k).end());
            EXPECT_LE(largest_difference(column, expected),
                      1e-8 * peak_of(expected) + 1e-12 * peak_of(found.values))
                << "wire " << turn << ", " << param_name(codes[k]);
        }
    }
}

TEST(PointColumns, are_numbers_on_the_body_and_zero_where_it_is_none) {
    ExactLine line(41, 10, 90, 60);
    ModelBody& body = line.add(wire, 200, 0);
    body.top.value = 60;
    for (const BodyType type : {wire, sphere})
        for (const float size : {0.0F, 20.0F}) {
            body.type = type;
            body.width.value = body.offset.value = size;
            for (const int channel : {channel_mag, channel_grav}) {
                const Columns found(line, channel, all_codes());
                for (const double slope : found.columns) EXPECT_TRUE(std::isfinite(slope));
            }
        }
    body.width.value = 0;
    EXPECT_EQ(peak_of(Columns(line, channel_mag, all_codes()).columns), 0);
}

}  // namespace
}  // namespace anomalis::forward
