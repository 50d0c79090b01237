#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "forward/polyhedron/polyhedron_asking.h"
#include "forward/polyhedron/polyhedron_reference.h"
#include "forward/polyhedron/polyhedron_shapes.h"
#include "forward/polyhedron/vector3.h"
#include "quad_polyhedron.h"

// The numbers themselves, against closed forms and point sums in long double: near, far, and where formulae
// fail.

namespace anomalis::forward {
namespace {

using namespace shapes;

const Point3 low{-300, -200, -500};
const Point3 high{400, 500, -100};

double relative(double got, long double want) {
    return static_cast<double>(std::fabs((got - want) / want));
}

/// Largest difference of two tensors as a part of the size of the second.
double tensor_error(const Tensor3& got, const reference::Field& want) {
    const long double part[6] = {got.xx - want.xx, got.xy - want.xy, got.xz - want.xz,
                                 got.yy - want.yy, got.yz - want.yz, got.zz - want.zz};
    const long double size = std::sqrt(want.xx * want.xx + want.yy * want.yy + want.zz * want.zz +
                                       2 * (want.xy * want.xy + want.xz * want.xz + want.yz * want.yz));
    long double most = 0;
    for (long double p : part) most = std::max(most, std::fabs(p));
    return static_cast<double>(most / size);
}

double difference(const Tensor3& a, const Tensor3& b) {
    double most = 0;
    for (double part : {a.xx - b.xx, a.xy - b.xy, a.xz - b.xz, a.yy - b.yy, a.yz - b.yz, a.zz - b.zz})
        most = std::max(most, std::fabs(part));
    return most;
}

bool finite(const Tensor3& t) {
    return std::isfinite(t.xx + t.xy + t.xz + t.yy + t.yz + t.zz);
}

TEST(PolyhedronExactness, a_box_agrees_with_its_closed_form) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> at(-1500, 1500);
    for (int i = 0; i < 500; ++i) {
        const Point3 place{at(random), at(random), at(random)};
        const auto want = reference::box_field(low, high, place);
        EXPECT_NEAR(gravity_at(body, place), static_cast<double>(gravity_constant * want.down), 1e-11);
        EXPECT_LT(tensor_error(tensor_at(body, place), want), 2e-12);
    }
}

/// Largest errors of a tensor and of gravity against quadruple precision, each by the size of what is right.
struct QuadError {
    double tensor = 0, gravity = 0;
};
QuadError quad_error(const Solid& solid, Polyhedron& body, const Point3& place) {
    const reference::QuadField want = reference::quad_field(solid.points, solid.facets, place);
    const Tensor3 n = tensor_at(body, place);
    QuadError error;
    double size = 0;
    std::size_t k = 0;
    for (const double part : {n.xx, n.xy, n.xz, n.yy, n.yz, n.zz}) {
        size = std::max(size, std::fabs(static_cast<double>(want.tensor[k])));
        error.tensor = std::max(error.tensor, std::fabs(static_cast<double>(part - want.tensor[k++])));
    }
    error.tensor /= size;
    error.gravity = std::fabs(static_cast<double>(gravity_at(body, place) / gravity_constant - want.down)) /
                    std::fabs(static_cast<double>(want.down));
    return error;
}

/// Parallelepipeds whose corners are exact, with places about them.
class SlantedBodies {
  public:
    SlantedBodies(double width, int seed) : random_(static_cast<unsigned>(seed)) {
        const auto exact = [](double value) {
            return std::ldexp(std::nearbyint(std::ldexp(value, 24)), -24);
        };
        const double length = between(100, 800), depth = between(50, 600);
        const bool level = random_() % 2 == 0;
        corner_ = {exact(between(-50, 50)), exact(between(-50, 50)), exact(between(-300, 0))};
        side_ = {Point3{exact(width), 0, level ? 0 : exact(between(-0.2, 0.2) * width)},
                 Point3{0, exact(length), level ? 0 : exact(between(-0.2, 0.2) * length)},
                 Point3{exact(between(-1.5, 1.5) * depth), 0, exact(depth)}};
        solid = slanted_solid(corner_, side_);
    }
    Point3 at(double a, double b, double c) const {
        return corner_ + side_[0] * a + side_[1] * b + side_[2] * c;
    }
    Point3 beside(const Point3& place, double off) const {
        return place + Point3{between(-off, off), between(-off, off), between(-off, off)};
    }
    double part() const { return between(0.05, 0.95); }
    double between(double least, double most) const {
        return std::uniform_real_distribution<double>(least, most)(random_);
    }
    Solid solid;

  private:
    mutable std::mt19937_64 random_;
    Point3 corner_;
    std::array<Point3, 3> side_;
};
TEST(PolyhedronExactness, a_prism_keeps_fourteen_digits_inside_outside_and_on_the_lines_of_its_edges) {
    for (int i = 0; i < 60; ++i) {
        const SlantedBodies some(i % 2 == 0 ? 30 : 400, i);
        Polyhedron body = polyhedron_of(some.solid);
        const Point3 middle = some.at(0.5, 0.5, 0.5), on_line = some.at(some.between(1.1, 2), 1, 0);
        const double face_off = std::pow(10, some.between(-4, 1));
        for (const Point3& place : {some.beside(middle, 1500), some.at(some.part(), some.part(), some.part()),
                                    some.beside(some.at(some.part(), some.part(), 0), face_off),
                                    some.beside(on_line, 1e-6), on_line}) {
            const QuadError error = quad_error(some.solid, body, place);
            EXPECT_LT(error.tensor, 5e-13) << i;
            EXPECT_LT(error.gravity, 2e-11) << i;
        }
    }
}

TEST(PolyhedronExactness, a_prism_keeps_the_digits_that_coordinates_have_beside_its_edges_and_corners) {
    for (int i = 0; i < 60; ++i) {
        const SlantedBodies some(i % 2 == 0 ? 30 : 400, i);
        Polyhedron body = polyhedron_of(some.solid);
        const double off = std::pow(10, some.between(-4, 0));
        for (const Point3& on : {some.at(some.part(), 1, 0), some.at(0, some.part(), 1), some.at(1, 0, 1)}) {
            const Point3 place = on + Point3{off, -off / 2, off / 3};
            const QuadError error = quad_error(some.solid, body, place);
            EXPECT_LT(error.tensor, 1e-12 / off) << i << ' ' << off;
            EXPECT_LT(error.gravity, 1e-12) << i << ' ' << off;
        }
    }
}

TEST(PolyhedronExactness, a_thin_sheet_keeps_its_digits_near_and_far) {
    for (int i = 0; i < 60; ++i) {
        const SlantedBodies some(std::pow(10, -3 + i % 4), i);
        Polyhedron body = polyhedron_of(some.solid);
        for (const double off : {10.0, 500.0, 4000.0}) {
            const Point3 place =
                some.beside(some.at(some.part(), some.part(), some.part()), off) + Point3{off, 0, off};
            const QuadError error = quad_error(some.solid, body, place);
            EXPECT_LT(error.tensor, 2e-9) << i << ' ' << off;
            EXPECT_LT(error.gravity, 1e-7) << i << ' ' << off;
        }
    }
}

TEST(PolyhedronExactness, bodies_that_are_nearly_prisms_are_taken_as_they_are) {
    for (const double moved : {1e-7, 1e-3, 40.0})
        for (std::size_t corner = 0; corner < 8; ++corner) {
            Solid solid = box_solid(low, high);
            solid.points[corner].x += moved;
            Polyhedron body = polyhedron_of(solid);
            const QuadError error = quad_error(solid, body, {120, -700, 90});
            EXPECT_LT(error.tensor, 1e-12) << moved << ' ' << corner;
            EXPECT_LT(error.gravity, 1e-12) << moved << ' ' << corner;
        }
}

TEST(PolyhedronExactness, a_tetrahedron_agrees_with_the_sum_of_its_points) {
    const std::array<Point3, 4> corner{Point3{0, 0, -300}, Point3{500, 40, -250}, Point3{100, 450, -350},
                                       Point3{150, 200, -700}};
    const Solid solid{{corner.begin(), corner.end()}, {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}}};
    Polyhedron body = polyhedron_of(solid);
    ASSERT_TRUE(body.closed());
    for (const Point3& place : {Point3{200, 100, 600}, Point3{-900, 300, 0}, Point3{100, 1500, -400}}) {
        const auto want = reference::tetrahedron_by_points(corner, place, 24);
        EXPECT_LT(relative(gravity_at(body, place), gravity_constant * want.down), 1e-10);
        EXPECT_LT(tensor_error(tensor_at(body, place), want), 1e-10);
    }
}

TEST(PolyhedronExactness, straight_above_a_vertical_edge_nothing_special_happens) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    for (double height : {0.1, 1.0, 50.0, 1000.0}) {
        const Point3 above{high.x, high.y, high.z + height};
        const Point3 beside{high.x + 1e-7, high.y + 1e-7, high.z + height};
        const auto want = reference::box_field(low, high, beside);
        EXPECT_LT(tensor_error(tensor_at(body, above), want), 1e-5);
        EXPECT_LT(tensor_error(tensor_at(body, beside), want), 1e-9);
        EXPECT_LT(relative(gravity_at(body, above), gravity_constant * want.down), 1e-8);
    }
}

TEST(PolyhedronExactness, close_to_an_edge_the_digits_stay) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    for (double off : {1.0, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5}) {
        const Point3 beside_edge{high.x + off, 33, high.z + off / 2};
        const Point3 inside_edge{high.x - off, 33, high.z - off / 2};
        const Point3 beyond_edge{high.x + off, high.y + 7, high.z + off};
        const Point3 at_corner{high.x + off, high.y + off / 3, high.z + off / 2};
        for (const Point3& place : {beside_edge, inside_edge, beyond_edge, at_corner}) {
            const auto want = reference::box_field(low, high, place);
            EXPECT_LT(relative(gravity_at(body, place), gravity_constant * want.down), 1e-11) << off;
            // Distances of 700 m are known to 1e-13 m, and angles about the edge accordingly.
            EXPECT_LT(tensor_error(tensor_at(body, place), want), 1e-12 / off) << off;
        }
    }
}

TEST(PolyhedronExactness, gravity_is_continuous_at_corners_edges_and_faces) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    const Point3 corner = high, on_edge{high.x, 10, high.z}, on_face{50, 60, high.z},
                 on_diagonal{50, 150, high.z};
    for (const Point3& place : {corner, on_edge, on_face, on_diagonal}) {
        const double there = gravity_at(body, place);
        for (const Point3& step : {Point3{1, 0, 0}, Point3{0, 1, 0}, Point3{0, 0, 1}, Point3{1, -1, 1}})
            for (double size : {1e-3, -1e-3, 1e-6, -1e-6, 1e-9, -1e-9})
                EXPECT_NEAR(gravity_at(body, place + step * size), there, 0.5 * std::fabs(size) + 1e-12);
        const auto close = reference::box_field(low, high, place + Point3{1e-11, 2e-11, 1e-11});
        EXPECT_NEAR(there, static_cast<double>(gravity_constant * close.down), 1e-11);
    }
}

TEST(PolyhedronExactness, the_tensor_is_continuous_across_the_lines_and_planes_outside_the_body) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    const Point3 on_edge_line{high.x, high.y + 80, high.z}, on_vertical_line{low.x, low.y, high.z + 60},
        on_plane{high.x + 90, 20, high.z}, on_diagonal_line{high.x + 70, high.y + 70, high.z};
    for (const Point3& place : {on_edge_line, on_vertical_line, on_plane, on_diagonal_line}) {
        const Tensor3 there = tensor_at(body, place);
        for (const Point3& step : {Point3{1, 0, 0}, Point3{0, 1, 0}, Point3{0, 0, 1}, Point3{1, -1, 1}})
            for (double size : {1e-3, -1e-3, 1e-6, -1e-6, 1e-9, -1e-9})
                EXPECT_LT(difference(tensor_at(body, place + step * size), there),
                          0.1 * std::fabs(size) + 1e-11);
    }
}

TEST(PolyhedronExactness, on_a_face_stands_the_value_just_outside) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    const Point3 on_face{50, 61, high.z}, on_diagonal{50, 150, high.z}, on_side{low.x, 77, -300};
    EXPECT_LT(difference(tensor_at(body, on_face), tensor_at(body, on_face + Point3{0, 0, 1e-6})), 1e-7);
    EXPECT_LT(difference(tensor_at(body, on_diagonal), tensor_at(body, on_diagonal + Point3{0, 0, 1e-6})),
              1e-7);
    EXPECT_LT(difference(tensor_at(body, on_side), tensor_at(body, on_side - Point3{1e-6, 0, 0})), 1e-7);
    EXPECT_NEAR(tensor_at(body, on_face).trace(), 0, 1e-10);
    EXPECT_NEAR(tensor_at(body, on_face - Point3{0, 0, 1e-6}).trace(), -4 * 3.14159265358979, 1e-10);
}

TEST(PolyhedronExactness, a_nanometre_below_a_face_the_value_just_outside_stands_too) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    const Point3 on_face{50, 61, high.z}, on_diagonal{50, 150, high.z},
        beside_diagonal{50, 150 + 1e-3, high.z}, by_an_edge{high.x - 1e-4, 10, high.z};
    for (const Point3& place : {on_face, on_diagonal, beside_diagonal, by_an_edge})
        for (const double depth : {1e-12, 5e-10, 9.9e-10}) {
            const Tensor3 below = tensor_at(body, place - Point3{0, 0, depth});
            EXPECT_LT(difference(below, tensor_at(body, place + Point3{0, 0, 1e-9})), 1e-4) << depth;
            EXPECT_NEAR(below.trace(), 0, 1e-4) << depth;
        }
    EXPECT_NEAR(tensor_at(body, on_face - Point3{0, 0, 2e-9}).trace(), -4 * 3.14159265358979, 1e-6);
    // Beside the body nothing is moved: the plane of the top goes on into the air.
    const Point3 beside{high.x + 1e-3, 10, high.z};
    EXPECT_LT(difference(tensor_at(body, beside - Point3{0, 0, 5e-10}), tensor_at(body, beside)), 1e-5);
}

TEST(PolyhedronExactness, in_survey_coordinates_their_rounding_is_allowed_for_on_a_face) {
    const Point3 far{350000.1, 6500000.3, 0.7};
    Polyhedron body = polyhedron_of(box_solid(low + far, high + far));
    for (int i = 0; i < 40; ++i) {
        // A wall that is a rounding of its coordinate away from where it should stand.
        const Point3 on_wall = Point3{low.x, 77.0 + i, -300} + far;
        EXPECT_NEAR(tensor_at(body, on_wall + Point3{9e-10, 0, 0}).trace(), 0, 1e-6);
    }
}

TEST(PolyhedronExactness, a_corner_in_the_middle_of_a_flat_cap_is_a_place_like_any_other) {
    Polyhedron body = polyhedron_of(pipe_solid({10, 20, -5}, 100, 300, 12, 2));
    const Tensor3 on = tensor_at(body, {10, 20, -5});
    EXPECT_LT(difference(on, tensor_at(body, {10, 20, -5 + 1e-5})), 1e-6);
    EXPECT_LT(difference(on, tensor_at(body, {10 + 1e-5, 20, -5 + 1e-5})), 1e-6);
    EXPECT_NEAR(on.trace(), 0, 1e-9);
    EXPECT_LT(difference(tensor_at(body, {60, 20, -5}), tensor_at(body, {60, 20, -5 + 1e-5})), 1e-6);
}

TEST(PolyhedronExactness, on_edges_and_corners_the_tensor_is_finite_and_of_the_neighbourhoods_size) {
    Polyhedron body = polyhedron_of(box_solid(low, high));
    const Point3 corner = high, on_edge{high.x, 10, high.z};
    for (const Point3& place : {corner, on_edge}) {
        const Tensor3 on = tensor_at(body, place);
        EXPECT_TRUE(finite(on));
        EXPECT_NEAR(on.trace(), 0, 1e-5);
        EXPECT_GT(std::fabs(on.xz), std::fabs(tensor_at(body, place + Point3{1e-3, 0, 1e-3}).xz));
        EXPECT_LT(std::fabs(on.xz), 60);
    }
}

TEST(PolyhedronExactness, far_away_no_digit_is_lost) {
    const Solid solid = box_solid(low, high);
    Polyhedron body = polyhedron_of(solid);
    for (double distance : {6e3, 7e3, 8e3, 9e3, 1e4, 1e5, 1e6, 1e7, 1e9}) {
        for (const Point3& way : {Point3{0.6, 0, 0.8}, Point3{-0.5, 0.7, 0.5}, Point3{0.1, -0.2, -0.97}}) {
            const Point3 place = way * distance;
            const auto want = reference::box_by_points(low, high, place);
            EXPECT_LT(relative(gravity_at(body, place), gravity_constant * want.down), 1e-11) << distance;
            EXPECT_LT(tensor_error(tensor_at(body, place), want), 1e-10) << distance;
        }
    }
}

TEST(PolyhedronExactness, thin_and_long_bodies_keep_their_digits_far_away) {
    const Point3 plate_high{1000, 1000, 1}, rod_high{1, 2, 3000}, origin{0, 0, 0};
    for (const Point3& end : {plate_high, rod_high}) {
        Polyhedron body = polyhedron_of(box_solid(origin, end));
        for (double distance : {2e4, 2.4e4, 3e4, 1e5, 1e7}) {
            const Point3 place{0.3 * distance, 0.5 * distance, 0.8 * distance};
            const auto want = reference::box_by_points(origin, end, place, 10);
            EXPECT_LT(relative(gravity_at(body, place), gravity_constant * want.down), 1e-8) << distance;
            EXPECT_LT(tensor_error(tensor_at(body, place), want), 1e-6) << distance;
        }
    }
}

TEST(PolyhedronExactness, the_expansion_takes_over_without_a_step) {
    Polyhedron body = polyhedron_of(pipe_solid({0, 0, 0}, 100, 200, 12, 1));
    // Radius about the middle: sqrt(100^2 + 100^2); the expansion begins at 16 of them.
    const double limit = 16 * std::sqrt(2.0) * 100;
    const auto at = [&](double r) { return Point3{0.6 * r, 0, 0.8 * r - 100}; };
    const double before = gravity_at(body, at(limit * (1 - 1e-9))),
                 after = gravity_at(body, at(limit * (1 + 1e-9)));
    EXPECT_NEAR(after / before, 1 - 4e-9, 2e-11);
    const Tensor3 inner = tensor_at(body, at(limit * (1 - 1e-9))),
                  outer = tensor_at(body, at(limit * (1 + 1e-9)));
    EXPECT_NEAR(outer.zz / inner.zz, 1 - 6e-9, 1e-10);
}

}  // namespace
}  // namespace anomalis::forward
