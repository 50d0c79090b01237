#include <gtest/gtest.h>

#include "column_line.h"
#include "plane_reference.h"

namespace anomalis::forward {
namespace {

/// All columns of both channels against the reference, as parts of the largest value of each.
void expect_those_of_the_reference(const Line& line, const std::string& what) {
    const Workspace& workspace = line.workspace;
    const QuadBody body(workspace.body(1));
    const std::vector<int> codes = all_codes();
    for (const int channel : {channel_mag, channel_grav}) {
        const Columns found(line, channel, codes);
        const auto reference = channel == channel_mag ? reference_anomaly : reference_gravity;
        for (std::size_t k = 0; k < codes.size(); ++k) {
            // 0 stands for no end, and has no neighbours.
            if (codes[k] == param_depth_extent && body[param_depth_extent] == 0) continue;
            const std::vector<double> expected = reference_slope(workspace, body, codes[k], reference);
            const std::vector<double> column(found.column(k).begin(), found.column(k).end());
            EXPECT_LE(largest_difference(column, expected), 1e-9 * peak_of(expected))
                << what << ", " << param_name(codes[k]) << ", channel " << channel;
        }
    }
}

constexpr BodyType plane_types[] = {thin_sheet, thick_sheet, edge, sloping_step};

TEST(PlaneColumns, are_those_of_a_textbook_polygon_in_quadruple_precision) {
    Dice dice(20);
    for (const BodyType type : plane_types)
        for (int turn = 0; turn < 3; ++turn) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            add_random(line, type, dice);
            expect_those_of_the_reference(line, std::string(body_type_name(type)) + std::to_string(turn));
        }
}

TEST(PlaneColumns, keep_their_digits_far_from_the_body) {
    Dice dice(21);
    for (const BodyType type : plane_types) {
        PlaceLine line({-9000, -6000, -5000, 0, 5000, 20000}, dice.between(0, 360), dice);
        // Far stations alone: the norm is theirs.
        line.workspace.stations(4, column_sensor) = 4000;
        ModelBody& body = add_random(line, type, dice);
        body.depth_extent.value = 150;
        expect_those_of_the_reference(line, std::string(body_type_name(type)));
    }
}

TEST(PlaneColumns, hold_just_over_a_corner_and_within_the_body) {
    Dice dice(22);
    for (const BodyType type : plane_types) {
        PlaceLine line({-200, 290, 300, 301, 320}, 75, dice);
        ModelBody& body = add_random(line, type, dice);
        body.distance.value = 300;
        body.strike.value = 170;
        body.top.value = 59;  // the sensors stand 1 to 6 m above
        expect_those_of_the_reference(line, "over " + std::string(body_type_name(type)));
        body.top.value = 75;
        body.width.value = 40;
        body.slope.value = 5;
        expect_those_of_the_reference(line, "within " + std::string(body_type_name(type)));
    }
}

TEST(PlaneColumns, hold_for_bodies_that_are_turned_over) {
    Dice dice(25);
    for (const BodyType type : plane_types)
        for (const auto& [width, depth] : {std::pair{-60.0F, 120.0F}, {60.0F, -40.0F}, {-60.0F, -40.0F}}) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            ModelBody& body = add_random(line, type, dice);
            body.top.value = -80;
            body.width.value = width;
            body.depth_extent.value = depth;
            expect_those_of_the_reference(line, std::string(body_type_name(type)));
        }
}

TEST(PlaneColumns, are_numbers_on_corners_and_faces) {
    for (const BodyType type : plane_types)
        for (const float depth : {0.0F, 40.0F})
            for (const float dip : {90.0F, 45.0F, 0.0F, 180.0F}) {
                ExactLine line(41, 10, 90, 60);
                ModelBody& body = line.add(type, 200, 0);
                body.top.value = 60;
                body.width.value = 40;
                body.dip.value = dip;
                body.length.value = 0;
                body.depth_extent.value = depth;
                for (const int channel : {channel_mag, channel_grav}) {
                    const Columns found(line, channel, all_codes());
                    for (const double slope : found.columns) EXPECT_TRUE(std::isfinite(slope));
                    EXPECT_TRUE(found.faults.empty());
                }
            }
}

/// With demagnetisation the textbook has no short way.
TEST(PlaneColumns, follow_the_demagnetised_magnetisation) {
    Dice dice(23);
    for (const BodyType type : plane_types)
        for (int turn = 0; turn < 3; ++turn) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            ModelBody& body = add_random(line, type, dice);
            body.include_demagnetisation = 1;
            body.susc.value = static_cast<float>(dice.between(5e5, 4e6));
            expect_slopes_of_values(line, channel_mag, 1e-8, std::string(body_type_name(type)));
        }
}

TEST(PlaneColumns, values_are_those_of_the_exact_formulas_bit_for_bit) {
    Dice dice(24);
    for (const BodyType type : plane_types)
        for (int turn = 0; turn < 8; ++turn) {
            PlaceLine line(close_stations(dice), dice.between(0, 360), dice);
            add_random(line, type, dice).include_demagnetisation = turn % 2;
            EXPECT_EQ(Columns(line, channel_mag, all_codes()).values, line.curve(Curve::magnetic));
            EXPECT_EQ(Columns(line, channel_grav, all_codes()).values, line.curve(Curve::gravity));
        }
}

}  // namespace
}  // namespace anomalis::forward
