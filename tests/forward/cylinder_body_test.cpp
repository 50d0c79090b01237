#include <gtest/gtest.h>
#include <vector>

#include "forward/point_lists.h"
#include "forward/shape/body_solid.h"
#include "support/told.h"

namespace anomalis::forward {
namespace {

ModelBody pipe_body() {
    ModelBody body;
    body.type = pipe;
    body.width.value = 60;
    body.length.value = 200;
    body.east = 1000;
    body.north = 2000;
    body.top.value = -30;
    return body;
}

TEST(CylinderBody, has_half_its_width_and_lies_at_the_top_with_its_offset_against_the_strike) {
    ModelBody body = pipe_body();
    body.offset.value = 50;
    Faults faults;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    const Point3 centre = middle(body.solid.transformed_points);
    EXPECT_NEAR(centre.x, 1000, 1e-6);
    EXPECT_NEAR(centre.y, 2000 - 50, 1e-6);
    EXPECT_NEAR(centre.z, -30, 1e-6);
    EXPECT_NEAR(span_of(body.solid.transformed_points, &Point3::x), 30, 1e-9);
    EXPECT_NEAR(span_of(body.solid.transformed_points, &Point3::y), 200, 1e-6);
}

TEST(CylinderBody, a_triangle_size_below_the_length_cuts_finer) {
    ModelBody body = pipe_body();
    Faults faults;
    body.max_triangle_size = 20;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    // 200 / 20 segments, 2 pi 60 / 20 = 18.8 sectors, made even.
    EXPECT_EQ(body.solid.facets.size(), 2U * 10 * 20 + 2 * 20);
    body.max_triangle_size = 200;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    EXPECT_EQ(body.solid.facets.size(), 48U) << "a size of the length or more has no effect";
    body.max_triangle_size = 199;
    body.num_segments = 7;
    body.num_sectors = 30;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    EXPECT_EQ(body.solid.facets.size(), 2U * 7 * 30 + 2 * 30) << "never coarser than asked for";
}

TEST(CylinderBody, a_triangle_size_for_a_milliard_facets_is_refused_before_memory_is_taken) {
    ModelBody body = pipe_body();
    body.length.value = 60000;
    body.width.value = 10000;
    body.max_triangle_size = 2.75F;
    Faults faults;
    EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), -1);
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_EQ(texts_of(faults)[0].rfind(
                  "An error occurred while setting up the cylinder body: the solid would have 99", 0),
              0U)
        << texts_of(faults)[0];
    EXPECT_TRUE(told(faults, "facets, the limit is 2000000"));
    EXPECT_TRUE(body.solid.points.empty());
    body.max_triangle_size = 1e-38F;
    EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), -1);
    body.max_triangle_size = 0;
    body.num_segments = 100000;
    EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), -1);
}

TEST(CylinderBody, a_shell_of_half_the_width_or_more_leaves_no_solid) {
    ModelBody body = pipe_body();
    Faults faults;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    body.shell_thickness = 30;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    EXPECT_TRUE(body.solid.facets.empty() && body.solid.transformed_points.empty());
    EXPECT_TRUE(faults.empty());
    body.shell_thickness = 29;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    EXPECT_EQ(body.solid.facets.size(), 96U);
}

TEST(CylinderBody, end_caps_of_half_the_length_leave_no_solid) {
    ModelBody body = pipe_body();
    Faults faults;
    body.shell_thickness = 5;
    body.end_thickness = 100;
    ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    EXPECT_TRUE(body.solid.facets.empty());
}

/// What a call keeps shows by a mark in the lists that no calculation sets.
struct Kept {
    bool shape, place;
};

template <class Change>
Kept kept_after(Change change) {
    ModelBody body = pipe_body();
    Faults faults;
    setup_cylinder_body(body, body.solid, faults);
    body.solid.points[0].x = 12345;
    body.solid.transformed_points[0].x = 54321;
    change(body);
    EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    return {body.solid.points[0].x == 12345, body.solid.transformed_points[0].x == 54321};
}

TEST(CylinderBody, a_changed_property_reuses_shape_and_place) {
    const Kept kept = kept_after([](ModelBody& body) {
        body.susc.value = 1;
        body.density.value = 9;
    });
    EXPECT_TRUE(kept.shape && kept.place);
}

TEST(CylinderBody, a_moved_body_reuses_its_shape) {
    using Change = void (*)(ModelBody&);
    for (const Change change :
         {Change{[](ModelBody& b) { b.east += 1; }}, Change{[](ModelBody& b) { b.top.value = 4; }},
          Change{[](ModelBody& b) { b.dip.value = 4; }}, Change{[](ModelBody& b) { b.strike.value = 4; }},
          Change{[](ModelBody& b) { b.plunge.value = 4; }},
          Change{[](ModelBody& b) { b.offset.value = 4; }}}) {
        const Kept kept = kept_after(change);
        EXPECT_TRUE(kept.shape);
        EXPECT_FALSE(kept.place);
    }
}

TEST(CylinderBody, a_changed_shape_is_built_and_placed_anew) {
    using Change = void (*)(ModelBody&);
    for (const Change change :
         {Change{[](ModelBody& b) { b.length.value = 4; }}, Change{[](ModelBody& b) { b.width.value = 4; }},
          Change{[](ModelBody& b) { b.shell_thickness = 4; }},
          Change{[](ModelBody& b) { b.end_thickness = 4; }}, Change{[](ModelBody& b) { b.num_sectors = 4; }},
          Change{[](ModelBody& b) { b.num_segments = 4; }},
          Change{[](ModelBody& b) { b.max_triangle_size = 4; }}}) {
        const Kept kept = kept_after(change);
        EXPECT_FALSE(kept.shape);
        EXPECT_FALSE(kept.place);
    }
}

TEST(CylinderBody, without_length_keeps_its_points_in_one_place) {
    ModelBody body = pipe_body();
    body.length.value = 0;
    Faults faults;
    EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_EQ(faults.entries()[0].count, 1) << "the shape has not changed, so it is not tried again";
    EXPECT_EQ(body.solid.transformed_points[7], (Point3{1000, 2000, -30}));
}

}  // namespace
}  // namespace anomalis::forward
