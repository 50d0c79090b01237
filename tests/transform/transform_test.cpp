#include "transform/transform.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>

#include "support/scripted_prompts.h"

namespace anomalis::transform {
namespace {

using Point = std::array<double, 3>;

Point apply(const PointTransform& transform, int direction, Point p) {
    apply_transform(transform, direction, p[0], p[1], p[2]);
    return p;
}

void expect_near(const Point& got, const Point& want, double tolerance = 1e-9) {
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(got[i], want[i], tolerance) << i;
}

PointTransform rotated(double degrees) {
    PointTransform transform;
    transform.rotation = degrees;
    update_transform(transform);
    return transform;
}

PointTransform full_transform() {
    PointTransform t;
    t.rotation = 33;
    t.x_scale = 2;
    t.y_scale = 0.5;
    t.x_origin = 10;
    t.y_origin = -20;
    t.x_offset = 5000;
    t.y_offset = 7000;
    t.elevation_shift = 3;
    t.elevation_scale = 2;
    update_transform(t);
    return t;
}

TEST(UpdateTransform, the_reset_record_is_inactive) {
    PointTransform transform = full_transform();
    reset_transform(transform);
    update_transform(transform);
    EXPECT_FALSE(transform.active);
    EXPECT_EQ(transform, PointTransform{});
}

TEST(UpdateTransform, a_rotation_under_half_a_degree_counts_as_none) {
    EXPECT_FALSE(rotated(0.4).active);
    EXPECT_FALSE(rotated(0.5).active);  // the tie goes to the even 0
    EXPECT_TRUE(rotated(0.6).active);
    EXPECT_TRUE(rotated(-1).active);
    EXPECT_FALSE(rotated(360).active);
    EXPECT_FALSE(rotated(-720.3).active);
    EXPECT_NE(rotated(0.4).sin_rotation, 0);
}

TEST(UpdateTransform, a_small_rotation_applies_once_anything_else_does) {
    PointTransform t;
    t.rotation = 0.4;
    t.x_offset = t.x_origin = 0;
    t.y_offset = 100;
    update_transform(t);
    EXPECT_TRUE(t.active);
    EXPECT_NEAR(apply(t, 1, {0, 1000, 0})[0], 1000 * std::sin(0.4 * 0.017453292), 1e-9);
}

TEST(UpdateTransform, a_scale_of_0_becomes_1) {
    PointTransform t;
    t.x_scale = t.y_scale = t.elevation_scale = 0;
    update_transform(t);
    EXPECT_EQ(t.x_scale, 1);
    EXPECT_EQ(t.y_scale, 1);
    EXPECT_EQ(t.elevation_scale, 1);
    EXPECT_FALSE(t.active);
}

TEST(UpdateTransform, each_field_alone_makes_it_active) {
    const auto active_with = [](double PointTransform::*field, double value) {
        PointTransform t;
        t.*field = value;
        update_transform(t);
        return t.active;
    };
    for (double PointTransform::*field :
         {&PointTransform::x_origin, &PointTransform::y_origin, &PointTransform::x_offset,
          &PointTransform::y_offset, &PointTransform::elevation_shift})
        EXPECT_TRUE(active_with(field, 1e-9));
    for (double PointTransform::*field : {&PointTransform::x_scale, &PointTransform::y_scale}) {
        EXPECT_FALSE(active_with(field, 1.0000009));
        EXPECT_TRUE(active_with(field, 1.000002));
        EXPECT_TRUE(active_with(field, -1));
    }
    EXPECT_FALSE(active_with(&PointTransform::elevation_scale, 1.00009));
    EXPECT_TRUE(active_with(&PointTransform::elevation_scale, 1.0002));
    EXPECT_FALSE(active_with(&PointTransform::original_x2, 500));
}

TEST(ApplyTransform, turns_clockwise) {
    expect_near(apply(rotated(90), 1, {0, 1, 5}), {1, 0, 5}, 1e-7);
    expect_near(apply(rotated(90), 1, {1, 0, 5}), {0, -1, 5}, 1e-7);
}

TEST(ApplyTransform, new_to_old_takes_the_plane_back) {
    const PointTransform t = full_transform();
    const Point there = apply(t, 1, {123, 456, -1e32});
    expect_near(apply(t, -1, there), {123, 456, -1e32}, 1e-7);
}

TEST(ApplyTransform, origin_goes_to_offset) {
    const PointTransform t = full_transform();
    expect_near(apply(t, 1, {t.x_origin, t.y_origin, 0}), {t.x_offset, t.y_offset, 6});
}

TEST(ApplyTransform, the_elevation_step_is_the_same_in_both_directions) {
    const PointTransform t = full_transform();
    EXPECT_EQ(apply(t, 1, {0, 0, 10})[2], 26);
    EXPECT_EQ(apply(t, -1, {0, 0, 10})[2], 26);
    EXPECT_EQ(apply(t, 1, {0, 0, -1e32})[2], -1e32);
}

TEST(ApplyTransform, a_scale_not_above_0_leaves_the_point) {
    PointTransform t = full_transform();
    t.y_scale = -1;
    expect_near(apply(t, 1, {1, 2, 3}), {1, 2, 3}, 0);
    t.y_scale = 1;
    t.x_scale = 0;
    expect_near(apply(t, -1, {1, 2, 3}), {1, 2, 3}, 0);
}

TEST(DefineTransform, both_points_arrive) {
    for (int degrees = -180; degrees <= 180; degrees += 15) {
        const double a = degrees * 0.017453292519943295;
        const TransformPoints p{100,  200,  5000, 6000, 100 + 30 * std::cos(a), 200 + 30 * std::sin(a),
                                5060, 6080, 1,    2};
        ScriptedPrompts prompts;
        PointTransform t;
        ASSERT_EQ(define_transform_from_points(p, t, prompts), 0);
        update_transform(t);
        expect_near(apply(t, 1, {p.original_x1, p.original_y1, 3}), {p.new_x1, p.new_y1, 8}, 1e-5);
        expect_near(apply(t, 1, {p.original_x2, p.original_y2, 3}), {p.new_x2, p.new_y2, 8}, 1e-5);
        EXPECT_TRUE(t.active && t.two_point_defined);
        EXPECT_NEAR(t.x_scale, 100.0 / 30, 1e-12);
        EXPECT_EQ(t.x_scale, t.y_scale);
        EXPECT_EQ(t.original_x2, p.original_x2);
        EXPECT_EQ(t.new_y2, p.new_y2);
        EXPECT_TRUE(prompts.messages.empty());
    }
}

TEST(DefineTransform, axes_have_their_angles) {
    const auto rotation = [](double x, double y) {
        ScriptedPrompts prompts;
        PointTransform t;
        EXPECT_EQ(define_transform_from_points({0, 0, 0, 0, 1, 0, x, y, 0, 1}, t, prompts), 0);
        return t.rotation;
    };
    EXPECT_EQ(rotation(1, 0), 0);
    EXPECT_EQ(rotation(0, 1), -90);
    EXPECT_EQ(rotation(0, -1), 90);
    EXPECT_EQ(rotation(-1, 0), 180);
    EXPECT_NEAR(rotation(1, 1), -45, 1e-7);
    EXPECT_NEAR(rotation(-1, 1), -135, 1e-7);
    EXPECT_NEAR(rotation(-1, -1), 135, 1e-7);
}

TEST(DefineTransform, points_closer_than_a_tenth_of_a_millimetre_fail_and_change_nothing) {
    ScriptedPrompts prompts;
    const PointTransform before = full_transform();
    PointTransform t = before;
    EXPECT_EQ(define_transform_from_points({0, 0, 0, 0, 0.00009, 0, 10, 0, 0, 1}, t, prompts), -1);
    EXPECT_EQ(define_transform_from_points({0, 0, 0, 0, 10, 0, 0, 0.00009, 0, 1}, t, prompts), -1);
    EXPECT_EQ(t, before);
    EXPECT_TRUE(prompts.messages.empty());
    EXPECT_EQ(define_transform_from_points({0, 0, 0, 0, 0.0001, 0, 10, 0, 0, 1}, t, prompts), 0);
}

TEST(DefineTransform, an_overflow_is_told) {
    ScriptedPrompts prompts;
    PointTransform t;
    EXPECT_EQ(define_transform_from_points({-1e308, 0, 0, 0, 1e308, 0, 10, 0, 0, 1}, t, prompts), -1);
    EXPECT_EQ(
        prompts.messages,
        std::vector<std::string>{"An error occurred while calculating the transform parameters: Overflow"});
    EXPECT_EQ(t, PointTransform{});
}

TEST(InvertTransform, leads_back_when_defined_by_points) {
    ScriptedPrompts prompts;
    PointTransform t;
    const TransformPoints p{1, 2, 300, 400, 11, 7, 250, 444, 5, 4};
    ASSERT_EQ(define_transform_from_points(p, t, prompts), 0);
    update_transform(t);
    PointTransform back = t;
    invert_transform(0, back);
    update_transform(back);
    expect_near(apply(back, 1, apply(t, 1, {12, 34, 56})), {12, 34, 56}, 1e-6);
}

TEST(InvertTransform, twice_in_the_origin_form_gives_the_same_record) {
    PointTransform t = full_transform();
    const PointTransform before = t;
    invert_transform(0, t);
    EXPECT_EQ(t.rotation, -33);
    EXPECT_EQ(t.x_scale, 0.5);
    EXPECT_EQ(t.elevation_shift, -6);
    EXPECT_EQ(t.elevation_scale, 0.5);
    invert_transform(0, t);
    EXPECT_EQ(t, before);
}

TEST(InvertTransform, scales_of_0_become_1) {
    PointTransform t;
    t.x_scale = t.y_scale = t.elevation_scale = 0;
    t.elevation_shift = 7;
    invert_transform(0, t);
    EXPECT_EQ(t.x_scale, 1);
    EXPECT_EQ(t.y_scale, 1);
    EXPECT_EQ(t.elevation_scale, 1);
    EXPECT_EQ(t.elevation_shift, -7);
}

TEST(InvertTransform, the_point_form_leaves_rotation_and_scales) {
    PointTransform t = full_transform();
    t.original_x2 = 12;
    t.new_x2 = 34;
    invert_transform(1, t);
    EXPECT_EQ(t.rotation, 33);
    EXPECT_EQ(t.x_scale, 2);
    EXPECT_EQ(t.y_scale, 0.5);
    EXPECT_EQ(t.x_origin, 5000);
    EXPECT_EQ(t.y_offset, -20);
    EXPECT_EQ(t.original_x2, 34);
    EXPECT_EQ(t.new_x2, 12);
}

}  // namespace
}  // namespace anomalis::transform
