#include "forward/shape/body_solid.h"

#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <utility>

#include "core/angles.h"
#include "forward/point_lists.h"
#include "support/told.h"

namespace anomalis::forward {

namespace {

struct Solid {
    std::vector<Point3> points;
    SolidFacets facets;
    Faults faults;

    explicit Solid(const GraphicObject& object) { create_graphic_object(object, points, facets, faults); }

    const Point3& at(std::int32_t i) const { return points[static_cast<std::size_t>(i)]; }

    double volume() const {
        double sum = 0;
        for (const auto& [i, j, k] : facets) {
            const Point3 a = at(i), b = at(j), c = at(k);
            sum +=
                a.x * (b.y * c.z - b.z * c.y) + a.y * (b.z * c.x - b.x * c.z) + a.z * (b.x * c.y - b.y * c.x);
        }
        return sum / 6;
    }

    /// Every edge is run through once in each direction, by places since caps have a ring of their own.
    bool closed() const {
        using Place = std::array<long, 3>;
        const auto place = [](const Point3& p) {
            return Place{std::lround(p.x * 1e6), std::lround(p.y * 1e6), std::lround(p.z * 1e6)};
        };
        std::map<std::pair<Place, Place>, int> runs;
        for (const auto& facet : facets)
            for (std::size_t i = 0; i < 3; ++i) ++runs[{place(at(facet[i])), place(at(facet[(i + 1) % 3]))}];
        for (const auto& [edge, count] : runs) {
            const auto back = runs.find({edge.second, edge.first});
            if (count != 1 || back == runs.end() || back->second != 1) return false;
        }
        return !runs.empty();
    }
};

GraphicObject cylinder() {
    GraphicObject object;
    object.length = 200;
    object.diameter_start = object.diameter_end = 40;
    return object;
}

/// Area of the regular polygon of n corners in a circle of this diameter.
double ring_area(double n, double diameter) {
    return n / 2 * std::sin(2 * std::acos(-1.0) / n) * diameter * diameter / 4;
}

}  // namespace

TEST(GraphicObject, a_cylinder_is_closed_and_turns_outward) {
    const Solid solid(cylinder());
    EXPECT_EQ(solid.points.size(), 50U);
    EXPECT_EQ(solid.facets.size(), 48U);
    EXPECT_TRUE(solid.closed());
    EXPECT_NEAR(solid.volume(), ring_area(12, 40) * 200, 0.01);
}

TEST(GraphicObject, segments_and_sectors_cut_finer_and_keep_the_volume) {
    GraphicObject object = cylinder();
    object.segments = 5;
    object.sectors = 8;
    const Solid solid(object);
    EXPECT_EQ(solid.points.size(), 6U * 8 + 2 + 16);
    EXPECT_EQ(solid.facets.size(), 2U * 5 * 8 + 16);
    EXPECT_TRUE(solid.closed());
    EXPECT_NEAR(solid.volume(), ring_area(8, 40) * 200, 0.01);
}

TEST(GraphicObject, an_odd_sector_count_gets_one_more_and_a_small_one_is_12) {
    GraphicObject object = cylinder();
    object.sectors = 5;
    EXPECT_EQ(Solid(object).facets.size(), 4U * 6);
    for (const int few : {3, 2, 0, -7}) {
        object.sectors = few;
        EXPECT_EQ(Solid(object).facets.size(), few == 3 ? 4U * 4 : 48U) << few;
    }
}

TEST(GraphicObject, diagonals_alternate_round_the_ring_and_along_the_axis) {
    GraphicObject object = cylinder();
    object.segments = 2;
    const Solid solid(object);
    // The first facet of each quad starts at its point j or at its point j + 1 in turn.
    const auto starts_at_first = [&](std::size_t quad) {
        const auto& facet = solid.facets[2 * quad];
        return facet[1] - facet[0] == 1 || facet[0] - facet[1] == 11;
    };
    EXPECT_TRUE(starts_at_first(0));
    EXPECT_FALSE(starts_at_first(1));
    EXPECT_TRUE(starts_at_first(2));
    EXPECT_FALSE(starts_at_first(12)) << "the second section begins the other way";
    EXPECT_TRUE(starts_at_first(13));
}

TEST(GraphicObject, the_ring_is_exact_at_its_seam) {
    const Solid solid(cylinder());
    EXPECT_EQ(solid.points[1], (Point3{-20, 0, 0}));
    EXPECT_EQ(solid.points[7], (Point3{20, 0, 0}));
}

TEST(GraphicObject, an_open_shell_is_closed_through_its_wall) {
    GraphicObject object = cylinder();
    object.shell = 10;
    object.segments = 3;
    const Solid solid(object);
    EXPECT_EQ(solid.points.size(), 2U * 48 + 2 + 24 + 48);
    EXPECT_EQ(solid.facets.size(), 4U * 36 + 48);
    EXPECT_TRUE(solid.closed());
    EXPECT_NEAR(solid.volume(), (ring_area(12, 40) - ring_area(12, 30)) * 200, 0.01);
}

TEST(GraphicObject, a_capped_shell_holds_a_closed_cavity) {
    GraphicObject object = cylinder();
    object.shell = 10;
    object.end_cap = 20;
    const Solid solid(object);
    EXPECT_EQ(solid.points.size(), 100U);
    EXPECT_EQ(solid.facets.size(), 96U);
    EXPECT_TRUE(solid.closed());
    EXPECT_NEAR(solid.volume(), ring_area(12, 40) * 200 - ring_area(12, 30) * 160, 0.01);
}

TEST(GraphicObject, a_tapered_shell_keeps_its_wall) {
    GraphicObject object = cylinder();
    object.diameter_end = 80;
    object.shell = 10;
    object.segments = 4;
    EXPECT_TRUE(Solid(object).closed());
    const auto frustum = [](double a, double b) {
        return 200.0 / 3 *
               (ring_area(12, a) + ring_area(12, b) + std::sqrt(ring_area(12, a) * ring_area(12, b)));
    };
    EXPECT_NEAR(Solid(object).volume(), frustum(40, 80) - frustum(30, 70), 0.1);
    object.end_cap = 5;
    EXPECT_TRUE(Solid(object).closed());
    EXPECT_GT(Solid(object).volume(), frustum(40, 80) - frustum(30, 70));
}

TEST(GraphicObject, a_cone_has_its_tip_at_the_end_without_a_diameter) {
    for (const bool tip_at_end : {true, false}) {
        for (const int segments : {1, 4}) {
            GraphicObject object = cylinder();
            (tip_at_end ? object.diameter_end : object.diameter_start) = 0;
            object.segments = segments;
            const Solid solid(object);
            EXPECT_EQ(solid.facets.size(), 24U + 24U * static_cast<std::size_t>(segments - 1));
            EXPECT_TRUE(solid.closed());
            EXPECT_NEAR(solid.volume(), ring_area(12, 40) * 200 / 3, 0.01);
            EXPECT_NEAR(solid.points[0].y, tip_at_end ? 200 : 0, 1e-9);
        }
    }
}

TEST(GraphicObject, along_z_turns_outward_too) {
    GraphicObject object = cylinder();
    object.axis_is_y = false;
    object.shell = 10;
    const Solid solid(object);
    EXPECT_TRUE(solid.closed());
    EXPECT_NEAR(solid.volume(), (ring_area(12, 40) - ring_area(12, 30)) * 200, 0.01);
    EXPECT_NEAR(span_of(solid.points, &Point3::z), 200, 1e-9);
}

TEST(GraphicObject, z_scale_flattens_the_ring) {
    GraphicObject object = cylinder();
    object.z_scale = 0.5;
    EXPECT_NEAR(span_of(Solid(object).points, &Point3::z), 20, 1e-9);
}

TEST(GraphicObject, is_transformed_when_asked) {
    GraphicObject object = cylinder();
    object.apply_transform = true;
    object.origin = {5, 6, 7};
    EXPECT_NEAR(Solid(object).points[0].x, 5, 1e-12);
    EXPECT_NEAR(Solid(object).points[0].z, 7, 1e-12);
}

TEST(GraphicObject, a_shape_that_cannot_be_is_empty_without_a_message) {
    GraphicObject no_diameter = cylinder();
    no_diameter.diameter_start = no_diameter.diameter_end = 0;
    GraphicObject thick_wall = cylinder();
    thick_wall.shell = 40;
    GraphicObject long_caps = cylinder();
    long_caps.shell = 10;
    long_caps.end_cap = 100;
    for (const GraphicObject& object : {no_diameter, thick_wall, long_caps}) {
        const Solid solid(object);
        EXPECT_TRUE(solid.points.empty() && solid.facets.empty());
        EXPECT_TRUE(solid.faults.empty());
    }
}

TEST(GraphicObject, without_length_is_reported_and_leaves_its_points_at_the_origin) {
    GraphicObject object = cylinder();
    object.length = 0;
    const Solid solid(object);
    ASSERT_EQ(solid.faults.entries().size(), 1U);
    EXPECT_EQ(texts_of(solid.faults)[0],
              "An error occurred while creating the graphic object: Division by zero");
    EXPECT_EQ(solid.points, std::vector<Point3>(50));
    EXPECT_EQ(solid.facets.size(), 48U);
}

TEST(GraphicObject, too_many_facets_are_refused_with_their_number_and_the_limit) {
    GraphicObject object = cylinder();
    object.sectors = 2147483647;
    object.segments = 2147483647;
    const Solid solid(object);
    EXPECT_TRUE(solid.facets.empty());
    EXPECT_TRUE(told(solid.faults, " facets, the limit is 2000000"));
}

TEST(TransformSolid, scales_then_turns_about_y_x_z_then_shifts) {
    std::array<Point3, 1> p{Point3{1, 2, 3}};
    transform_solid({2, 3, 4}, {90, 0, 0}, {0, 0, 0}, p);
    EXPECT_NEAR(p[0].x, -12, 1e-6);
    EXPECT_NEAR(p[0].z, 2, 1e-6);
    std::array<Point3, 1> axis{Point3{0, 1, 0}};
    transform_solid({1, 1, 1}, {0, 90, 30}, {100, 200, 300}, axis);
    EXPECT_NEAR(axis[0].x, 100 + std::cos(30 * radians_per_degree), 1e-6) << "strike 90 leads to the east";
    EXPECT_NEAR(axis[0].y, 200, 1e-6);
    EXPECT_NEAR(axis[0].z, 300 - 0.5, 1e-6) << "a dip lowers the far end";
}

TEST(TransformSolid, angles_at_their_lower_limit_are_left_out) {
    const auto turned = [](std::array<float, 3> rotation) {
        std::array<Point3, 1> p{Point3{1, 2, 3}};
        transform_solid({1, 1, 1}, rotation, {}, p);
        return p[0];
    };
    EXPECT_EQ(turned({-180, -360, -180}), (Point3{1, 2, 3}));
    EXPECT_EQ(turned({-200, -400, -500}), (Point3{1, 2, 3}));
    EXPECT_NEAR(turned({0, -180, 0}).x, -1, 1e-6);
    EXPECT_NEAR(turned({-179.9F, 0, 0}).x, -1, 0.01);
}

}  // namespace anomalis::forward
