#include "forward/classic/facet.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>

#include "forward/line.h"
#include "support/response_values.h"

namespace anomalis::forward {

namespace {

constexpr double full_circle = 6.283185307179586;

/// A level square of 100 m, 50 m under the origin, turned so that its normal points down.
const std::array<NedVector, 4> square{{{-50, -50, 50}, {50, -50, 50}, {50, 50, 50}, {-50, 50, 50}}};

/// Six faces of a box between two corners, normals outward.
std::vector<std::array<NedVector, 4>> box(NedVector a, NedVector b) {
    const auto at = [&](int n, int e, int d) {
        return NedVector{n ? b.north : a.north, e ? b.east : a.east, d ? b.down : a.down};
    };
    return {{{at(0, 0, 1), at(1, 0, 1), at(1, 1, 1), at(0, 1, 1)}},
            {{at(0, 0, 0), at(0, 1, 0), at(1, 1, 0), at(1, 0, 0)}},
            {{at(1, 0, 0), at(1, 1, 0), at(1, 1, 1), at(1, 0, 1)}},
            {{at(0, 0, 0), at(0, 0, 1), at(0, 1, 1), at(0, 1, 0)}},
            {{at(0, 1, 0), at(0, 1, 1), at(1, 1, 1), at(1, 1, 0)}},
            {{at(0, 0, 0), at(1, 0, 0), at(1, 0, 1), at(0, 0, 1)}}};
}

FacetTerms terms_at(std::span<const NedVector> corners, const NedVector& observer,
                    const NedVector& magnetisation = {}) {
    return facet_terms(make_face(corners, magnetisation), observer);
}

void expect_same(const FacetTerms& a, const FacetTerms& b, double tolerance) {
    EXPECT_NEAR(a.field.north, b.field.north, tolerance);
    EXPECT_NEAR(a.field.east, b.field.east, tolerance);
    EXPECT_NEAR(a.field.down, b.field.down, tolerance);
    EXPECT_NEAR(a.distance, b.distance, tolerance);
}

}  // namespace

TEST(SolidAngleCorner, of_an_octant_is_a_right_angle) {
    double sign = 0;
    const double third = 1 / std::sqrt(3.0);
    EXPECT_NEAR(solid_angle_corner({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {third, third, third}, sign), pi / 2,
                1e-12);
    EXPECT_EQ(sign, 1);
}

TEST(SolidAngleCorner, of_a_re_entrant_corner_is_above_a_straight_angle) {
    // The corner points into a level face that is seen from above and run through clockwise there.
    double sign = 0;
    const NedVector a{10, -10, 5}, b{0, 0, 5}, c{10, 10, 5};
    const double inner = solid_angle_corner(a, b, c, {0, 0, 1}, sign);
    EXPECT_EQ(sign, -1);
    const double outer = solid_angle_corner(c, b, a, {0, 0, 1}, sign);
    EXPECT_EQ(sign, 1);
    EXPECT_NEAR(inner + outer, full_circle, 1e-9);
    EXPECT_GT(inner, pi);
}

TEST(SolidAngleCorner, of_a_face_seen_edge_on_is_zero) {
    double sign = -5;
    EXPECT_EQ(solid_angle_corner({1, 0, 0}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, sign), 0);
    EXPECT_EQ(sign, 1);
}

TEST(SolidAngleCorner, with_a_product_without_length_is_zero) {
    double sign = -5;
    EXPECT_EQ(solid_angle_corner({0, 0, 1}, {0, 0, 2}, {1, 1, 1}, {0, 0, 1}, sign), 0);
    EXPECT_EQ(solid_angle_corner({0, 0, 1}, {0, 0, 0}, {1, 1, 1}, {0, 0, 1}, sign), 0);
}

TEST(Facet, a_station_above_a_square_sees_its_solid_angle) {
    // Square of side s at height s / 2: a sixth of the sphere, since six of them make a cube.
    const FacetTerms terms = terms_at(square, {0, 0, 0});
    EXPECT_NEAR(terms.distance, 50, 1e-12);
    EXPECT_NEAR(terms.field.down, -2 * full_circle / 6, 1e-9);
    EXPECT_NEAR(terms.field.north, 0, 1e-9);
}

TEST(Facet, closed_faces_see_the_whole_sphere_from_inside_and_nothing_from_outside) {
    const NedVector inside{3, -4, 12}, outside{3, -4, -200};
    double from_inside = 0, from_outside = 0;
    for (const auto& corners : box({-20, -20, 0}, {20, 20, 30})) {
        const PlaneFace face = make_face(corners, {});
        from_inside += dot(facet_terms(face, inside).field, face.normal);
        from_outside += dot(facet_terms(face, outside).field, face.normal);
    }
    EXPECT_NEAR(from_inside, -2 * full_circle, 1e-9);
    EXPECT_NEAR(from_outside, 0, 1e-9);
}

TEST(Facet, closed_faces_far_away_are_a_point_mass) {
    double attraction = 0;
    const NedVector observer{0, 0, -3000};
    for (const auto& corners : box({-20, -20, -20}, {20, 20, 20})) {
        const FacetTerms terms = terms_at(corners, observer);
        attraction -= terms.field.down * terms.distance;
    }
    EXPECT_NEAR(attraction, 64000.0 / (3000.0 * 3000), 1e-6);
}

TEST(Facet, the_sense_of_the_corners_gives_the_sign) {
    std::array<NedVector, 4> turned = square;
    std::reverse(turned.begin(), turned.end());
    const FacetTerms one = terms_at(square, {20, 7, 0});
    const FacetTerms other = terms_at(turned, {20, 7, 0});
    EXPECT_NEAR(one.distance, -other.distance, 1e-9);
    EXPECT_NEAR(one.field.north, other.field.north, 1e-9) << "normal and pole turn together";
    EXPECT_NEAR(one.field.down, other.field.down, 1e-9);
}

TEST(Facet, a_face_cut_in_two_adds_up) {
    const std::array<NedVector, 5> five{
        {{0, 0, 40}, {60, 10, 40}, {80, 50, 40}, {30, 90, 40}, {-20, 50, 40}}};
    const std::array<NedVector, 3> triangle{{five[0], five[1], five[2]}};
    const std::array<NedVector, 4> rest{{five[0], five[2], five[3], five[4]}};
    const NedVector observer{-35, 20, -10};
    const FacetTerms whole = terms_at(five, observer);
    const FacetTerms a = terms_at(triangle, observer), b = terms_at(rest, observer);
    EXPECT_NEAR(whole.field.north, a.field.north + b.field.north, 1e-9);
    EXPECT_NEAR(whole.field.east, a.field.east + b.field.east, 1e-9);
    EXPECT_NEAR(whole.field.down, a.field.down + b.field.down, 1e-9);
}

TEST(Facet, a_re_entrant_face_adds_up_too) {
    const std::array<NedVector, 4> dart{{{0, 0, 30}, {100, 0, 30}, {30, 30, 30}, {0, 100, 30}}};
    const std::array<NedVector, 3> one{{dart[0], dart[1], dart[2]}}, two{{dart[0], dart[2], dart[3]}};
    const NedVector observer{40, 45, 0};
    EXPECT_NEAR(terms_at(dart, observer).field.down,
                terms_at(one, observer).field.down + terms_at(two, observer).field.down, 1e-9);
}

TEST(Facet, an_observer_on_the_line_of_a_level_edge_moves_up_and_aside) {
    // North of the square, on the line of its western edge, which runs 100 m to the north.
    const NedVector on_line{250, -50, 50};
    // Moved east by a tenth of the edge's northing and north by a tenth of its easting.
    const NedVector moved{250, -50 + 10, 49};
    expect_same(terms_at(square, on_line), terms_at(square, moved), 1e-12);
}

TEST(Facet, an_observer_at_a_corner_is_moved_like_any_other) {
    const FacetTerms terms = terms_at(square, square[0]);
    EXPECT_TRUE(std::isfinite(terms.field.north + terms.field.east + terms.field.down));
    EXPECT_NE(terms.distance, 0);
}

TEST(Facet, an_observer_straight_above_an_upright_edge_moves_up_only_and_stays_finite) {
    const std::array<NedVector, 4> wall{{{0, 0, 10}, {0, 0, 60}, {0, 80, 60}, {0, 80, 10}}};
    const FacetTerms terms = terms_at(wall, {0, 0, 0});
    EXPECT_TRUE(std::isfinite(terms.field.north + terms.field.east + terms.field.down));
}

TEST(Facet, two_corners_in_one_place_are_no_edge_that_a_station_could_be_close_to) {
    const std::array<NedVector, 4> triangle{{square[0], square[1], square[1], square[2]}};
    EXPECT_EQ(terms_at(triangle, {10, 5, 0}).distance, 50) << "the observer was not moved";
}

TEST(FacetResponse, a_face_with_all_corners_on_a_line_adds_nothing) {
    Line line(5);
    ModelBody& body = line.add(thick_sheet);
    const std::array<NedVector, 4> flat{{{0, 0, 50}, {10, 0, 50}, {20, 0, 50}, {30, 0, 50}}};
    calculate_facet_response(line.workspace, body, {true, true}, {10, 10, 10}, flat, line.faults);
    for (const float value : all_values(body.response)) EXPECT_EQ(value, 0);
}

TEST(FacetResponse, a_face_without_poles_adds_nothing_even_to_gravity) {
    Line line(5);
    ModelBody& body = line.add(thick_sheet);
    calculate_facet_response(line.workspace, body, {true, true}, {10, 10, 1e-8}, square, line.faults);
    for (const float value : all_values(body.response)) EXPECT_EQ(value, 0);
    calculate_facet_response(line.workspace, body, {false, true}, {}, square, line.faults);
    EXPECT_NE(body.response(1, 2), 0);
    EXPECT_EQ(body.response(1, 5), 0) << "only gravity was wanted";
}

TEST(FacetResponse, a_station_in_the_plane_has_no_gravity_but_poles) {
    Line line(5);
    ModelBody& body = line.add(thick_sheet);
    std::array<NedVector, 4> level = square;
    for (NedVector& corner : level) corner.down = 0;
    for (NedVector& corner : level) corner.north += 200;
    calculate_facet_response(line.workspace, body, {true, true}, {0, 0, 100}, level, line.faults);
    EXPECT_EQ(body.response(1, 2), 0);
    EXPECT_NE(body.response(1, 3), 0);
}

TEST(FacetResponse, adds_poles_times_the_field_and_subtracts_gravity) {
    Line line(3);
    ModelBody& body = line.add(thick_sheet);
    for (int column = 2; column <= 5; ++column) body.response(2, column) = 1000;
    calculate_facet_response(line.workspace, body, {true, true}, {3, 5, 7}, square, line.faults);
    const FacetTerms terms = terms_at(square, {10, 0, 0});
    EXPECT_NEAR(body.response(2, 3), 1000 + 7 * terms.field.north, 1e-3);
    EXPECT_NEAR(body.response(2, 4), 1000 + 7 * terms.field.east, 1e-3);
    EXPECT_NEAR(body.response(2, 5), 1000 + 7 * terms.field.down, 1e-3);
    EXPECT_NEAR(body.response(2, 2), 1000 - terms.field.down * terms.distance, 1e-3);
}

TEST(FacetResponse, the_move_of_one_station_leaves_the_next_where_it_is) {
    Line line(3);
    ModelBody& body = line.add(thick_sheet);
    std::array<NedVector, 4> at_station = square;
    for (NedVector& corner : at_station) corner = {corner.north + 60, corner.east + 50, corner.down - 50};
    // Station 2 stands on a corner.
    calculate_facet_response(line.workspace, body, {true, false}, {0, 0, 1}, at_station, line.faults);
    const FacetTerms third = terms_at(at_station, {20, 0, 0});
    EXPECT_TRUE(std::isfinite(body.response(2, 5)));
    EXPECT_NEAR(body.response(3, 3), third.field.north, 1e-5);
}

}  // namespace anomalis::forward
