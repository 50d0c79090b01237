#include "forward/classic/edge_step.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/line.h"

namespace anomalis::forward {

namespace {

double across(const Line& line, int i) {
    const ModelBody& body = line.workspace.body(1);
    return body.cos_strike * (line.workspace.stations(i, column_east) - body.east) -
           body.sin_strike * (line.workspace.stations(i, column_north) - body.north);
}

ShapeTerms terms_of(const Line& line) {
    const ModelBody& body = line.workspace.body(1);
    return shape_terms(body, strike_against_profile(body, line.workspace.azimuth));
}

}  // namespace

TEST(Edge, is_a_logarithm_and_an_angle) {
    for (const double strike : {90.0, -70.0}) {
        Line line(61);
        ModelBody& body = line.add(edge, 255, strike);
        body.dip.value = 50;
        const std::vector<double> curve = line.response();
        const ShapeTerms terms = terms_of(line);
        for (int i = 1; i <= 61; ++i) {
            const double x = across(line, i);
            const double expected = body.sin_dip * terms.p / 2 * std::log(x * x + 1e4) +
                                    body.sin_dip * terms.q * std::atan(x / 100);
            EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)], expected, 1e-6 * peak_of(curve));
        }
    }
}

TEST(Edge, does_not_read_width_and_depth_extent) {
    Line line(61);
    ModelBody& body = line.add(edge, 255);
    const std::vector<double> curve = line.response();
    body.width.value = 7;
    body.depth_extent.value = 0;
    EXPECT_EQ(curve, line.response());
}

TEST(SlopingStep, is_the_difference_of_two_edges) {
    for (const double strike : {90.0, -70.0}) {
        Line line(61);
        ModelBody& body = line.add(sloping_step, 255, strike);
        body.dip.value = 50;
        body.width.value = 60;
        body.depth_extent.value = 40;
        const std::vector<double> curve = line.response();
        const ShapeTerms terms = terms_of(line);
        for (int i = 1; i <= 61; ++i) {
            const double x = across(line, i);
            const double expected =
                body.sin_dip * terms.p / 2 * std::log((x * x + 1e4) / ((x - 60) * (x - 60) + 140.0 * 140.0)) +
                body.sin_dip * terms.q * (std::atan(x / 100) - std::atan((x - 60) / 140));
            EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)], expected, 1e-6 * peak_of(curve));
        }
    }
}

TEST(SlopingStep, of_great_throw_is_an_edge_up_to_its_level) {
    Line line(61);
    ModelBody& body = line.add(sloping_step, 300);
    body.depth_extent.value = 1e8F;
    body.width.value = 0;
    const std::vector<double> step = line.response();
    body.type = edge;
    const std::vector<double> single = line.response();
    const double level = step[30] - single[30];
    for (std::size_t i = 0; i < step.size(); ++i)
        EXPECT_NEAR(step[i] - single[i], level, 2e-3 * peak_of(step));
}

TEST(SlopingStep, a_station_level_with_its_lower_corner_is_a_fault) {
    Line line(5);
    ModelBody& body = line.add(sloping_step, 20);
    body.depth_extent.value = -100;
    line.calculate();
    EXPECT_TRUE(told(line.faults, "An error occured while calculating the response: Division by zero"));
    EXPECT_TRUE(body.mag_response_valid);
}

}  // namespace anomalis::forward
