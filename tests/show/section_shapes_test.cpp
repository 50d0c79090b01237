#include "show/section_shapes.h"

#include <cmath>
#include <gtest/gtest.h>

#include "edit/line_sample.h"

namespace anomalis::show {

namespace {

constexpr SectionWindow window{-500, edit::LineSample::length};

/// On a line due east a strike of 0 lies square across it.
struct Shaped : edit::LineSample {
    Shaped() { load(); }
    SectionShape shape(const ModelBody& body) { return section_shape(workspace(), body, window); }
};

double area(const SectionShape& shape) {
    double sum = 0;
    for (std::size_t i = 1; i < shape.xs.size(); ++i)
        sum += shape.xs[i - 1] * shape.ys[i] - shape.xs[i] * shape.ys[i - 1];
    return std::abs(sum) / 2;
}

}  // namespace

TEST(SectionShapes, an_upright_sheet_is_a_rectangle) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.depth_extent.value = 300;
    const SectionShape shape = sample.shape(body);
    ASSERT_EQ(shape.xs.size(), 5U);
    EXPECT_EQ(shape.xs.front(), shape.xs.back());
    EXPECT_NEAR(shape.right() - shape.left(), 100, 1e-4);
    EXPECT_NEAR(shape.lowest(), -250, 1e-9);
    EXPECT_NEAR(area(shape), 100 * 300, 0.1);
}

TEST(SectionShapes, a_sheet_without_depth_runs_to_the_bottom_of_the_window) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.depth_extent.value = 0;
    EXPECT_NEAR(sample.shape(body).lowest(), window.bottom, 1e-9);
    EXPECT_NEAR(section_shape(sample.workspace(), body, {-900, 2500}).lowest(), -900, 1e-9);
}

TEST(SectionShapes, a_dipping_sheet_keeps_its_width_and_runs_along_its_dip) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.depth_extent.value = 300;
    body.dip.value = 45;
    const SectionShape shape = sample.shape(body);
    EXPECT_NEAR(std::abs(shape.xs[3] - shape.xs[0]), 300, 0.01);
    EXPECT_NEAR(area(shape), 100 * 300, 1);
}

TEST(SectionShapes, an_oblique_strike_widens_what_the_section_cuts) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.strike.value = 30;
    const SectionShape shape = sample.shape(body);
    EXPECT_NEAR(shape.right() - shape.left(), 100 / std::cos(30 * M_PI / 180), 0.01);
}

TEST(SectionShapes, opposite_strikes_are_mirrored_about_the_reference_point) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.dip.value = 60;
    const SectionShape one = sample.shape(body);
    body.strike.value = 180;
    const SectionShape other = sample.shape(body);
    for (std::size_t i = 0; i < one.xs.size(); ++i) {
        EXPECT_NEAR(one.xs[i] - 1000, 1000 - other.xs[i], 0.01);
        EXPECT_NEAR(one.ys[i], other.ys[i], 1e-9);
    }
}

TEST(SectionShapes, a_strike_along_the_line_shows_nothing_but_a_sphere) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.strike.value = 90.5F;
    EXPECT_FALSE(sample.shape(body).visible);
    body.strike.value = 92;
    EXPECT_TRUE(sample.shape(body).visible) << "drawn, though it is too oblique to have a response";
    body.strike.value = 90;
    body.type = sphere;
    EXPECT_TRUE(sample.shape(body).visible);
    EXPECT_TRUE(sample.shape(body).xs.empty());
}

TEST(SectionShapes, edges_and_steps_run_to_the_end_of_the_line) {
    Shaped sample;
    for (const auto type : {edge, sloping_step}) {
        ModelBody& body = sample.add_body(1000, 50, type);
        const SectionShape forward = sample.shape(body);
        body.strike.value = 180;
        const SectionShape backward = sample.shape(body);
        EXPECT_TRUE((forward.right() == edit::LineSample::length && backward.left() == 0) ||
                    (backward.right() == edit::LineSample::length && forward.left() == 0));
    }
}

TEST(SectionShapes, a_sloping_top_is_raised_on_its_far_side) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.slope.value = 45;
    SectionShape shape = sample.shape(body);
    EXPECT_NEAR(std::abs(shape.ys[1] - shape.ys[0]), 100, 0.01);
    EXPECT_NEAR(shape.ys[2] - shape.ys[3], shape.ys[1] - shape.ys[0], 1e-9);
    body.dip.value = 0;
    shape = sample.shape(body);
    for (std::size_t i = 0; i < shape.xs.size(); ++i) {
        EXPECT_TRUE(std::isfinite(shape.xs[i]));
        EXPECT_TRUE(std::isfinite(shape.ys[i]));
    }
}

TEST(SectionShapes, a_body_beside_the_line_is_drawn_where_its_end_lies) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.length.value = 200;
    body.strike.value = 30;
    const SectionShape across = sample.shape(body);
    EXPECT_EQ(across.width, 1);
    EXPECT_EQ(across.outline, chart::black);
    body.offset.value = 150;  // its near end 50 m along the strike, to the north-east
    const SectionShape beyond = sample.shape(body);
    EXPECT_EQ(beyond.width, 4);
    EXPECT_EQ(beyond.outline, 0xFF0000);
    EXPECT_NEAR(beyond.xs[1] - across.xs[1], 50 * std::sin(30 * M_PI / 180), 0.01);
    EXPECT_NEAR(beyond.xs[0] - across.xs[0], 50 * std::sin(30 * M_PI / 180) - 2, 0.01);
    body.offset.value = -150;
    EXPECT_EQ(sample.shape(body).outline, 0x00FF00);
    body.plunge.value = 30;
    EXPECT_NEAR(sample.shape(body).ys[0] - across.ys[0], 50 * 0.5, 0.01);
}

TEST(SectionShapes, pipes_and_wires_are_circles_of_their_diameter) {
    Shaped sample;
    for (const auto type : {pipe, wire}) {
        ModelBody& body = sample.add_body(1000, 50, type);
        body.width.value = 40;
        const SectionShape shape = sample.shape(body);
        EXPECT_EQ(shape.xs.size(), 33U);
        EXPECT_NEAR(shape.right() - shape.left(), 40, 0.01);
        EXPECT_NEAR(shape.highest() - shape.lowest(), 40, 1e-9);
    }
}

TEST(SectionShapes, a_hollow_pipe_is_a_ring) {
    Shaped sample;
    ModelBody& body = sample.add_body(1000, 50, pipe);
    body.width.value = 40;
    const double full = area(sample.shape(body));
    body.shell_thickness = 5;
    EXPECT_NEAR(area(sample.shape(body)) / full, 1 - 0.75 * 0.75, 0.02);
    body.shell_thickness = 20;
    EXPECT_EQ(sample.shape(body).xs.size(), 33U) << "a shell that fills it leaves no hole";
}

struct ExactShaped : Shaped {
    ExactShaped() { workspace().formulas = Formulas::exact; }
};

TEST(SectionShapes, with_the_exact_formulas_a_thin_sheet_is_as_thick_as_its_width) {
    ExactShaped sample;
    ModelBody& body = sample.add_body(1000, 50, thin_sheet);
    body.dip.value = 30;
    body.width.value = 10;
    body.depth_extent.value = 300;
    const SectionShape shape = sample.shape(body);
    EXPECT_NEAR(std::abs(shape.xs[1] - shape.xs[0]), 20, 1e-3);
    EXPECT_NEAR(area(shape), 20 * 300, 0.1);
}

TEST(SectionShapes, with_the_exact_formulas_a_slope_rises_as_steeply_on_an_oblique_line) {
    ExactShaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.slope.value = 20;
    for (const float strike : {0.0F, 40.0F, 180.0F}) {
        body.strike.value = strike;
        const SectionShape shape = sample.shape(body);
        EXPECT_NEAR(shape.ys[1] - shape.ys[0], 100 * std::tan(20 * M_PI / 180), 1e-3) << strike;
    }
}

TEST(SectionShapes, with_the_exact_formulas_flat_dips_lean_to_their_own_side) {
    ExactShaped sample;
    ModelBody& body = sample.add_body(1000, 50);
    body.depth_extent.value = 10;
    const auto run = [&](float dip) {
        body.dip.value = dip;
        const SectionShape shape = sample.shape(body);
        return shape.xs[3] - shape.xs[0];
    };
    EXPECT_NEAR(std::abs(run(0.1F)), 1000, 0.01);
    EXPECT_NEAR(run(179.9F), -run(0.1F), 0.01);
    EXPECT_NEAR(run(180), -run(0), 0.01);
}

TEST(SectionShapes, with_the_exact_formulas_a_body_along_the_line_is_drawn_and_a_sphere_is_a_circle) {
    ExactShaped sample;
    for (const std::int32_t type : {thin_sheet, thick_sheet, edge, sloping_step, pipe, wire}) {
        ModelBody& body = sample.add_body(1000, 50, type);
        body.strike.value = 90;
        const SectionShape shape = sample.shape(body);
        EXPECT_TRUE(shape.visible) << type;
        for (const double x : shape.xs) EXPECT_TRUE(std::isfinite(x)) << type;
    }
    ModelBody& ball = sample.add_body(1000, -50, sphere);
    ball.width.value = 80;
    for (const float strike : {0.0F, 60.0F, 90.0F}) {
        ball.strike.value = strike;
        const SectionShape shape = sample.shape(ball);
        EXPECT_NEAR(shape.right() - shape.left(), 80, 1e-9);
        EXPECT_NEAR(shape.highest() - shape.lowest(), 80, 1e-9);
    }
    sample.workspace().formulas = Formulas::classic;
    EXPECT_TRUE(sample.shape(ball).xs.empty());
}

TEST(SectionShapes, with_the_exact_formulas_the_face_of_a_step_is_that_of_an_edge) {
    ExactShaped sample;
    ModelBody& body = sample.add_body(1000, 50, sloping_step);
    body.dip.value = 60;
    body.depth_extent.value = 100;
    body.slope.value = 30;
    body.length.value = 100;
    body.offset.value = 400;
    const SectionShape step = sample.shape(body);
    body.type = edge;
    body.width.value = 7;
    const SectionShape other = sample.shape(body);
    EXPECT_EQ(step.xs, other.xs);
    EXPECT_EQ(step.ys, other.ys);
    EXPECT_EQ(step.width, 1);
    EXPECT_NEAR(std::abs(step.xs[3] - step.xs[0]), 100 / std::tan(M_PI / 3), 1e-3);
}

}  // namespace anomalis::show
