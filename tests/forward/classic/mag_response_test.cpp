#include "forward/classic/mag_response.h"

#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/line.h"
#include "support/stale_body.h"

namespace anomalis::forward {

namespace {

const BodyType all_types[] = {thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere, pipe, wire};

}  // namespace

TEST(MagResponse, a_strike_near_the_profile_gives_zero_for_every_type_without_a_word) {
    for (const BodyType type : all_types) {
        Line line(11, 10, 30);
        line.add(type, 50, 30 - 5.7);
        // A sphere's strike is its own affair.
        if (type == sphere) continue;
        EXPECT_EQ(peak_of(line.response()), 0) << type;
        line.body().strike.value = 30 + 180 + 5.7F;
        EXPECT_EQ(peak_of(line.response()), 0) << type;
        EXPECT_TRUE(line.faults.empty());
        EXPECT_TRUE(line.body().mag_response_valid);
    }
    Line line(11, 10, 30);
    line.add(thick_sheet, 50, 30 - 5.8);
    EXPECT_GT(peak_of(line.response()), 1);
}

TEST(MagResponse, of_a_polygon_and_of_unnamed_types_is_zero) {
    for (const int type : {5, 0, 7, 15, 18, -3}) {
        Line line(11);
        line.add(thick_sheet, 50).type = type;
        EXPECT_EQ(peak_of(line.response()), 0) << type;
        EXPECT_TRUE(line.faults.empty());
    }
}

TEST(MagResponse, without_susceptibility_is_zero) {
    for (const BodyType type : all_types) {
        if (type == wire) continue;
        Line line(11);
        line.add(type, 50).susc.value = 0;
        EXPECT_EQ(peak_of(line.response()), 0) << type;
        EXPECT_TRUE(line.faults.empty());
    }
}

TEST(MagResponse, a_remanence_without_susceptibility_is_told_once_and_zero) {
    Line line(11);
    ModelBody& body = line.add(thin_sheet, 50);
    line.calculate();
    EXPECT_GT(std::abs(body.response(6, 1)), 1) << "older coefficients must not show through";
    body.susc.value = 0;
    body.rem_q.value = 3;
    EXPECT_EQ(peak_of(line.response()), 0);
    ASSERT_EQ(line.faults.entries().size(), 1U);
    EXPECT_EQ(texts_of(line.faults)[0],
              "An error occurred while calculating the field coefficientsDivision by zero");
}

TEST(MagResponse, renews_the_coefficients) {
    Line line(11);
    ModelBody& body = line.add(thin_sheet, 50);
    line.calculate();
    const float held = body.last_calculated;
    const float before = body.response(6, 1);
    body.last_calculated = held * 2;
    invalidate_body(body);
    line.calculate();
    EXPECT_EQ(body.last_calculated, held);
    EXPECT_EQ(body.response(6, 1), before);
}

TEST(MagResponse, takes_the_reference_point_from_the_distance) {
    Line line(11, 10, 90);
    line.add(thin_sheet, 73, 0);
    line.calculate();
    EXPECT_NEAR(line.body().east, 350073, 1e-6);
    EXPECT_NEAR(line.body().north, 6500000, 1e-6);
}

TEST(MagResponse, clears_the_component_columns) {
    Line line(11);
    ModelBody& body = line.add(thin_sheet, 50);
    for (int column = 3; column <= 5; ++column) body.response(4, column) = 7;
    line.calculate();
    for (int column = 3; column <= 5; ++column) EXPECT_EQ(body.response(4, column), 0);
}

TEST(MagResponse, a_sheet_without_length_but_with_a_slope_is_a_prism_of_no_volume) {
    Line line(51);
    ModelBody& body = line.add(thick_sheet, 200, 80);
    body.dip.value = 65;
    body.slope.value = 10;
    body.length.value = 0;
    EXPECT_LT(peak_of(line.response()), 1e-3);
    EXPECT_EQ(body.moment_x, static_cast<float>(plain_magnetisation(line.workspace, body).north));
}

// A north-south line and everything in its plane, so that the field's north component is its component across
// strike.
TEST(MagResponse, a_very_long_prism_is_the_sheet_of_unlimited_strike_for_either_strike) {
    for (const double strike : {90.0, -90.0}) {
        for (const float dip : {90.0F, 50.0F, 130.0F}) {
            Line line(101);
            line.workspace.definition.grav_column = 0;
            line.workspace.field.declination = 0;
            ModelBody& body = line.add(thick_sheet, 503, strike);
            body.dip.value = dip;
            body.rem_q.value = 0.7F;
            body.rem_i.value = 20;
            body.length.value = 0;
            const std::vector<double> sheet = line.response();
            body.length.value = 1e6F;
            EXPECT_LT(largest_difference(sheet, line.response()), 1e-4 * peak_of(sheet))
                << strike << " " << dip;
            body.include_demagnetisation = -1;
            EXPECT_LT(largest_difference(sheet, line.response()), 1e-4 * peak_of(sheet)) << "by faces";
        }
    }
}

}  // namespace anomalis::forward
