#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "core/failure.h"
#include "forward/polyhedron/polyhedron_asking.h"
#include "forward/polyhedron/polyhedron_shapes.h"
#include "forward/polyhedron/vector3.h"

// Bodies and stations that no survey should have.

namespace anomalis::forward {
namespace {

using namespace shapes;

const Point3 magnetisation{120, -340, 250};
const Point3 direction{-0.03, 0.42, -0.907};
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(PolyhedronRobustness, an_empty_body_has_no_field) {
    Polyhedron nothing;
    EXPECT_EQ(nothing.volume(), 0);
    EXPECT_EQ(nothing.facet_count(), 0U);
    EXPECT_FALSE(nothing.closed());
    EXPECT_EQ(gravity_at(nothing, {1, 2, 3}), 0);
    EXPECT_EQ(nothing.demagnetising_tensor({0, 0, 0}).trace(), 0);
    Polyhedron points_only(box_solid({0, 0, 0}, {1, 1, 1}).points, {});
    EXPECT_EQ(gravity_at(points_only, {1, 2, 3}), 0);
}

TEST(PolyhedronRobustness, no_stations_is_no_work) {
    Polyhedron body = polyhedron_of(box_solid({0, 0, 0}, {1, 1, 1}));
    EXPECT_TRUE(gravities(body, {}).empty());
}

TEST(PolyhedronRobustness, an_index_without_a_point_is_refused) {
    const Solid solid = box_solid({0, 0, 0}, {1, 1, 1});
    for (std::int32_t index : {8, -1}) {
        Solid wrong = solid;
        wrong.facets[5][1] = index;
        EXPECT_THROW(polyhedron_of(wrong), Fault);
    }
}

TEST(PolyhedronRobustness, spans_of_different_lengths_are_refused) {
    Polyhedron body = polyhedron_of(box_solid({0, 0, 0}, {1, 1, 1}));
    std::vector<double> two(2), three(3);
    EXPECT_THROW(body.gravity({two, two, three}, 1, two), Fault);
    EXPECT_THROW(body.gravity({two, two, two}, 1, three), Fault);
    EXPECT_THROW(body.magnetic_components({two, two, two}, magnetisation, two, three, two), Fault);
}

TEST(PolyhedronRobustness, facets_without_area_add_nothing) {
    Solid solid = box_solid({-100, -100, -300}, {100, 100, -50});
    Polyhedron plain = polyhedron_of(solid);
    solid.points.push_back({0, 0, -50});
    solid.facets.push_back({0, 0, 0});
    solid.facets.push_back({1, 2, 2});
    solid.facets.push_back({0, 7, 0});
    Polyhedron extra = polyhedron_of(solid);
    EXPECT_EQ(extra.facet_count(), 12U);
    EXPECT_TRUE(extra.closed());
    EXPECT_EQ(gravity_at(extra, {30, 20, 10}), gravity_at(plain, {30, 20, 10}));
}

TEST(PolyhedronRobustness, a_body_squeezed_flat_has_no_field) {
    for (const Point3& high : {Point3{100, 80, 0}, Point3{0, 80, 60}, Point3{100, 0, 0}, Point3{0, 0, 0}}) {
        Polyhedron body = polyhedron_of(box_solid({0, 0, 0}, high));
        EXPECT_NEAR(body.volume(), 0, 1e-9);
        for (const Point3& place :
             {Point3{10, 20, 30}, Point3{-5, -9, 1}, Point3{1e5, 1e5, 1e5}, Point3{50, 40, 0}})
            EXPECT_NEAR(gravity_at(body, place), 0, 1e-12);
    }
}

TEST(PolyhedronRobustness, repeated_points_make_the_same_edges) {
    const Solid solid = pipe_solid({0, 0, -20}, 50, 200, 12, 1);
    Polyhedron shared = polyhedron_of(solid);
    Solid apart;  // every facet with corners of its own
    for (const Facet& facet : solid.facets) {
        const auto n = static_cast<std::int32_t>(apart.points.size());
        for (std::int32_t corner : facet)
            apart.points.push_back(solid.points[static_cast<std::size_t>(corner)]);
        apart.facets.push_back({n, n + 1, n + 2});
    }
    apart.points.push_back({1e12, nan, -infinity});  // used by no facet
    Polyhedron repeated = polyhedron_of(apart);
    EXPECT_TRUE(repeated.closed());
    EXPECT_EQ(repeated.edge_count(), shared.edge_count());
    EXPECT_EQ(shared.edge_count(), 36U);  // two rings and twelve verticals: the other 36 lie in flat faces
    EXPECT_NEAR(gravity_at(repeated, {30, 20, 10}), gravity_at(shared, {30, 20, 10}), 1e-13);
}

TEST(PolyhedronRobustness, a_long_edge_against_two_short_ones_is_closed) {
    Solid solid = box_solid({-100, -100, -300}, {100, 100, -50});
    Polyhedron plain = polyhedron_of(solid);
    const auto middle = static_cast<std::int32_t>(solid.points.size());
    const Point3 a = solid.points[static_cast<std::size_t>(solid.facets[0][0])];
    const Point3 b = solid.points[static_cast<std::size_t>(solid.facets[0][1])];
    solid.points.push_back((a + b) * 0.5);
    const Facet whole = solid.facets[0];
    solid.facets[0] = {whole[0], middle, whole[2]};
    solid.facets.push_back({middle, whole[1], whole[2]});
    Polyhedron split = polyhedron_of(solid);
    EXPECT_TRUE(split.closed());
    for (const Point3& place : {Point3{30, 20, 10}, Point3{0, 0, -100}, Point3{1e6, 3e5, 100}})
        EXPECT_NEAR(gravity_at(split, place) / gravity_at(plain, place), 1, 1e-11);
}

TEST(PolyhedronRobustness, an_open_surface_is_known_as_one) {
    Solid solid = box_solid({-100, -100, -300}, {100, 100, -50});
    solid.facets.pop_back();
    EXPECT_FALSE(polyhedron_of(solid).closed());
    Solid tube = pipe_solid({0, 0, 0}, 50, 200, 12, 1);  // without caps the areas still cancel
    std::erase_if(tube.facets, [](const Facet& f) { return f[0] >= 24; });
    Polyhedron open = polyhedron_of(tube);
    EXPECT_EQ(open.facet_count(), 24U);
    EXPECT_FALSE(open.closed());
    EXPECT_TRUE(std::isfinite(gravity_at(open, {1e6, 0, 0})));
    EXPECT_TRUE(std::isfinite(gravity_at(open, {10, 0, 5})));
    Solid twisted = box_solid({-100, -100, -300}, {100, 100, -50});
    std::swap(twisted.facets[3][0], twisted.facets[3][1]);
    EXPECT_FALSE(polyhedron_of(twisted).closed());
}

TEST(PolyhedronRobustness, an_open_surface_is_the_sum_of_its_parts) {
    const Solid solid = box_solid({-100, -100, -300}, {100, 100, -50});
    Polyhedron whole = polyhedron_of(solid);
    const std::span<const Facet> all = solid.facets;
    Polyhedron one(solid.points, all.first(5)), two(solid.points, all.subspan(5));
    for (const Point3& place : {Point3{30, 20, 10}, Point3{-400, 100, -100}})
        EXPECT_NEAR(gravity_at(one, place) + gravity_at(two, place), gravity_at(whole, place), 1e-11);
}

TEST(PolyhedronRobustness, a_corner_that_is_no_number_gives_no_numbers) {
    for (double bad : {nan, infinity, -infinity}) {
        Solid solid = box_solid({-100, -100, -300}, {100, 100, -50});
        solid.points[3].y = bad;
        Polyhedron body = polyhedron_of(solid);
        EXPECT_TRUE(std::isnan(gravity_at(body, {1, 2, 3})));
        EXPECT_TRUE(std::isnan(tensor_at(body, {1, 2, 3}).zz));
    }
}

TEST(PolyhedronRobustness, a_station_that_is_no_number_spoils_only_itself) {
    Polyhedron body = polyhedron_of(pipe_solid({0, 0, -20}, 50, 200, 12, 1));
    Stations good, mixed;
    for (int i = 0; i < 100; ++i) good.add({10.0 * i, 3, 5});
    mixed = good;
    for (std::size_t i = 0; i < 100; i += 7)
        (i % 2 == 0 ? mixed.north : mixed.up)[i] = i % 3 == 0 ? nan : infinity;
    const auto want = total_fields(body, good, magnetisation, direction);
    const auto got = total_fields(body, mixed, magnetisation, direction);
    for (std::size_t i = 0; i < 100; ++i) {
        if (i % 7 == 0)
            EXPECT_FALSE(std::isfinite(got[i])) << i;
        else
            EXPECT_EQ(got[i], want[i]) << i;
    }
}

TEST(PolyhedronRobustness, magnetisation_and_density_that_are_no_numbers_come_through) {
    Polyhedron body = polyhedron_of(box_solid({-100, -100, -300}, {100, 100, -50}));
    EXPECT_TRUE(std::isnan(gravity_at(body, {0, 0, 10}, nan)));
    EXPECT_TRUE(std::isnan(total_fields(body, stations_at({{0, 0, 10}}), {nan, 0, 0}, direction)[0]));
}

TEST(PolyhedronRobustness, size_does_not_matter) {
    Polyhedron metre = polyhedron_of(box_solid({-1, -1, -3}, {1, 1, -0.5}));
    const double want = gravity_at(metre, {0.3, 0.2, 0.1});
    const Tensor3 tensor = tensor_at(metre, {0.3, 0.2, 0.1});
    for (double size : {1e30, 1e-30, 1e100, 1e-100}) {
        Polyhedron body = polyhedron_of(box_solid({-size, -size, -3 * size}, {size, size, -0.5 * size}));
        const Point3 place{0.3 * size, 0.2 * size, 0.1 * size};
        EXPECT_NEAR(gravity_at(body, place) / (want * size), 1, 1e-12);
        EXPECT_NEAR(tensor_at(body, place).zz, tensor.zz, 1e-12);
    }
}

TEST(PolyhedronRobustness, a_survey_a_body_and_a_place_of_very_different_size_stay_finite) {
    Polyhedron body = polyhedron_of(box_solid({-1e30, -100, -300}, {1e30, 100, -50}));
    EXPECT_TRUE(std::isfinite(gravity_at(body, {0, 0, 10})));
    Polyhedron small = polyhedron_of(box_solid({-1, -1, -3}, {1, 1, -2}));
    EXPECT_EQ(gravity_at(small, {1e200, -1e200, 1e200}), 0);
    EXPECT_GE(gravity_at(small, {1e30, 0, 1e30}), 0);
    EXPECT_TRUE(std::isfinite(tensor_at(small, {1e160, 0, 0}).zz));
}

TEST(PolyhedronRobustness, all_stations_at_one_place_agree) {
    Polyhedron body = polyhedron_of(pipe_solid({0, 0, -20}, 50, 200, 12, 1));
    for (const Point3& place :
         {Point3{10, 20, 30}, Point3{0, 0, -20}, Point3{50, 0, -20}, Point3{1e5, 0, 0}}) {
        Stations many;
        for (int i = 0; i < 131; ++i) many.add(place);
        const auto field = total_fields(body, many, magnetisation, direction);
        for (double value : field) {
            EXPECT_TRUE(std::isfinite(value));
            EXPECT_EQ(value, field[0]);
        }
    }
}

TEST(PolyhedronRobustness, every_corner_and_middle_of_an_edge_of_a_jagged_body_is_finite) {
    Solid solid = sphere_solid({0, 0, -100}, 80, 2);
    for (std::size_t i = 0; i < solid.points.size(); i += 3) solid.points[i] = solid.points[i] * 0.8;
    Polyhedron body = polyhedron_of(solid);
    Stations at;
    for (const Facet& facet : solid.facets)
        for (std::size_t i = 0; i < 3; ++i) {
            const Point3& a = solid.points[static_cast<std::size_t>(facet[i])];
            const Point3& b = solid.points[static_cast<std::size_t>(facet[(i + 1) % 3])];
            at.add(a);
            at.add((a + b) * 0.5);
            at.add(a * 0.3 + b * 0.7);
        }
    const auto field = total_fields(body, at, magnetisation, direction);
    const auto tensors = gradients(body, at, 1 / gravity_constant);
    const auto gravity = gravities(body, at);
    for (std::size_t i = 0; i < at.size(); ++i) {
        EXPECT_TRUE(std::isfinite(field[i])) << i;
        EXPECT_TRUE(std::isfinite(gravity[i])) << i;
        const double trace = tensors[i].trace();  // outside, or inside where the body folds over the place
        EXPECT_LT(std::min(std::fabs(trace), std::fabs(trace + 4 * 3.14159265358979)), 1e-5) << i;
        EXPECT_LT(std::fabs(field[i]), 60 * length(magnetisation)) << i;  // log(1e8) times a few edges
    }
}

}  // namespace
}  // namespace anomalis::forward
