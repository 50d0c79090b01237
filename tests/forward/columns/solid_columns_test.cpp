#include <gtest/gtest.h>

#include "column_line.h"

namespace anomalis::forward {
namespace {

/// A sheet that ends along strike, of any shape.
ModelBody& add_limited(Line& line, BodyType type, Dice& dice) {
    ModelBody& body = add_random(line, type, dice);
    body.length.value = static_cast<float>(dice.between(40, 600));
    body.offset.value = static_cast<float>(dice.between(-150, 150));
    body.plunge.value = static_cast<float>(dice.between(-30, 30));
    return body;
}

TEST(SolidColumns, are_the_slopes_of_the_exact_values) {
    Dice dice(30);
    for (const BodyType type : {thin_sheet, thick_sheet})
        for (int turn = 0; turn < 8; ++turn) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            const ModelBody& body = add_limited(line, type, dice);
            const std::string what = std::string(body_type_name(type)) + std::to_string(turn) +
                                     (body.depth_extent.value == 0 ? " without lower end" : "");
            for (const int channel : {channel_mag, channel_grav})
                expect_slopes_of_values(line, channel, 1e-8, what);
        }
}

TEST(SolidColumns, hold_over_the_body_and_within_it) {
    Dice dice(31);
    for (const BodyType type : {thin_sheet, thick_sheet})
        for (const float depth : {0.0F, 150.0F}) {
            PlaceLine line({-200, 280, 300, 312, 330, 600}, 75, dice);
            ModelBody& body = add_limited(line, type, dice);
            body.distance.value = 300;
            body.strike.value = 170;
            body.depth_extent.value = depth;
            body.plunge.value = 0;
            body.top.value = 57;  // the sensors stand 3 to 8 m above
            for (const int channel : {channel_mag, channel_grav})
                expect_slopes_of_values(line, channel, 1e-7, "over");
            body.top.value = 85;
            body.width.value = 60;
            body.slope.value = 5;
            body.offset.value = 0;
            body.length.value = 300;
            for (const int channel : {channel_mag, channel_grav})
                expect_slopes_of_values(line, channel, 1e-7, "within");
        }
}

TEST(SolidColumns, hold_for_bodies_that_are_turned_over) {
    Dice dice(35);
    for (const auto& [width, depth] :
         {std::pair{-60.0F, 120.0F}, {60.0F, -40.0F}, {-60.0F, -40.0F}, {-60.0F, 0.0F}}) {
        PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
        ModelBody& body = add_limited(line, thick_sheet, dice);
        body.top.value = -90;
        body.width.value = width;
        body.depth_extent.value = depth;
        for (const int channel : {channel_mag, channel_grav})
            expect_slopes_of_values(line, channel, 1e-8, "turned");
    }
}

TEST(SolidColumns, keep_their_digits_far_from_the_body) {
    Dice dice(32);
    for (const float depth : {0.0F, 150.0F}) {
        PlaceLine line({-4000, -3000, 0, 3000, 6000}, dice.between(0, 360), dice);
        line.workspace.stations(3, column_sensor) = 3000;
        ModelBody& body = add_limited(line, thick_sheet, dice);
        body.depth_extent.value = depth;
        for (const int channel : {channel_mag, channel_grav})
            expect_slopes_of_values(line, channel, 1e-6, "far");
    }
}

TEST(SolidColumns, follow_the_demagnetised_magnetisation) {
    Dice dice(33);
    for (const float depth : {0.0F, 120.0F}) {
        PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
        ModelBody& body = add_limited(line, thick_sheet, dice);
        body.depth_extent.value = depth;
        body.include_demagnetisation = 1;
        body.susc.value = 2e6F;
        expect_slopes_of_values(line, channel_mag, 1e-6, depth == 0 ? "column" : "prism");
    }
}

TEST(SolidColumns, are_numbers_on_corners_edges_and_faces) {
    for (const float depth : {0.0F, 40.0F})
        for (const float dip : {90.0F, 45.0F, 0.0F, 180.0F}) {
            ExactLine line(41, 10, 90, 60);
            ModelBody& body = line.add(thick_sheet, 200, 0);
            body.top.value = 60;
            body.width.value = 40;
            body.dip.value = dip;
            body.length.value = 80;
            body.offset.value = 40;
            body.depth_extent.value = depth;
            for (const int channel : {channel_mag, channel_grav}) {
                const Columns found(line, channel, all_codes());
                for (const double slope : found.columns) EXPECT_TRUE(std::isfinite(slope));
                EXPECT_TRUE(found.faults.empty());
            }
        }
}

TEST(SolidColumns, a_very_long_body_has_those_of_one_without_end) {
    Dice dice(34);
    PlaceLine line(close_stations(dice), 40, dice);
    ModelBody& body = add_random(line, thick_sheet, dice);
    body.depth_extent.value = 200;
    body.strike.value = 110;
    const int codes[] = {param_distance, param_top,          param_strike, param_dip,
                         param_width,    param_depth_extent, param_slope};
    for (const int channel : {channel_mag, channel_grav}) {
        body.length.value = 0;
        const Columns endless(line, channel, codes);
        body.length.value = 1e7F;
        const Columns limited(line, channel, codes);
        for (std::size_t k = 0; k < std::size(codes); ++k) {
            const auto a = limited.column(k), b = endless.column(k);
            const std::vector<double> expected(b.begin(), b.end());
            EXPECT_LE(largest_difference({a.begin(), a.end()}, expected), 1e-5 * peak_of(expected))
                << param_name(codes[k]);
        }
    }
}

}  // namespace
}  // namespace anomalis::forward
