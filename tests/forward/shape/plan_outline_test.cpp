#include "forward/shape/plan_outline.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {

namespace {

const ClipBox wide{-1e6, 1e6, -1e6, 1e6};

struct Plan {
    Plan() {
        ScriptedPrompts prompts;
        initialise_workspace(workspace, prompts);
    }

    ModelBody sheet(BodyType type = thick_sheet) const {
        ModelBody body;
        body.type = type;
        body.east = 1000;
        body.north = 2000;
        body.width.value = 100;
        body.length.value = 300;
        return body;
    }
    int outline_of(const ModelBody& body, const ClipBox& box = wide) {
        return calculate_plan_outline(workspace, box, body, outline, faults);
    }
    void expect_corner(std::size_t i, double east, double north) const {
        EXPECT_NEAR(outline.east[i], east, 1e-3) << i;
        EXPECT_NEAR(outline.north[i], north, 1e-3) << i;
    }

    Faults faults;
    Workspace workspace;
    PlanOutline outline;
};

}  // namespace

TEST(PlanOutline, of_a_limited_thick_sheet_is_its_length_about_its_offset) {
    Plan plan;
    ModelBody body = plan.sheet();
    body.offset.value = 40;
    ASSERT_EQ(plan.outline_of(body), 5);
    plan.expect_corner(0, 1000, 1890);
    plan.expect_corner(1, 1000, 2190);
    plan.expect_corner(2, 1100, 2190);
    plan.expect_corner(3, 1100, 1890);
    plan.expect_corner(4, 1000, 1890);
}

TEST(PlanOutline, turns_with_the_strike) {
    Plan plan;
    ModelBody body = plan.sheet();
    body.strike.value = 90;
    ASSERT_EQ(plan.outline_of(body), 5);
    plan.expect_corner(1, 1150, 2000);
    plan.expect_corner(2, 1150, 1900);
}

TEST(PlanOutline, clips_shorten_a_limited_sheet_on_their_side) {
    Plan plan;
    plan.workspace.drawing.finite_body_left_clip = 60;
    plan.workspace.drawing.finite_body_right_clip = 90;
    ASSERT_EQ(plan.outline_of(plan.sheet()), 5);
    plan.expect_corner(0, 1000, 1940);
    plan.expect_corner(1, 1000, 2090);
    plan.workspace.drawing.finite_body_left_clip = 500;
    ASSERT_EQ(plan.outline_of(plan.sheet()), 5);
    plan.expect_corner(0, 1000, 1850);
}

TEST(PlanOutline, an_unlimited_body_has_the_length_of_the_setting) {
    Plan plan;
    plan.workspace.drawing.infinite_body_length = 500;
    for (const BodyType type : {thin_sheet, edge, sloping_step}) {
        ASSERT_EQ(plan.outline_of(plan.sheet(type)), 5);
        plan.expect_corner(0, 1000, 1750);
        plan.expect_corner(1, 1000, 2250);
    }
    ModelBody unlimited = plan.sheet();
    unlimited.length.value = 0;
    ASSERT_EQ(plan.outline_of(unlimited), 5);
    plan.expect_corner(1, 1000, 2250);
}

TEST(PlanOutline, without_the_setting_it_runs_across_the_whole_plan) {
    Plan plan;
    plan.workspace.drawing.infinite_body_length = 0;
    ASSERT_EQ(plan.outline_of(plan.sheet(thin_sheet)), 5);
    plan.expect_corner(0, 1000, 2000 - 100000);
    ASSERT_EQ(plan.outline_of(plan.sheet(thin_sheet), {0, 5000, 500, 4000}), 5);
    plan.expect_corner(0, 1000, 500);
    plan.expect_corner(1, 1000, 4000);
}

TEST(PlanOutline, a_pipe_and_a_wire_are_a_strip_of_twice_the_width) {
    for (const BodyType type : {pipe, wire}) {
        Plan plan;
        ASSERT_EQ(plan.outline_of(plan.sheet(type)), 5);
        plan.expect_corner(0, 900, 1850);
        plan.expect_corner(1, 900, 2150);
        plan.expect_corner(2, 1100, 2150);
    }
}

TEST(PlanOutline, spheres_polygons_and_unnamed_types_have_none) {
    Plan plan;
    for (const int type : {5, 6, 0, 9, 15, 18}) {
        ModelBody body = plan.sheet();
        body.type = type;
        EXPECT_EQ(plan.outline_of(body), -1) << type;
    }
}

TEST(PlanOutline, outside_the_box_there_is_none) {
    Plan plan;
    EXPECT_EQ(plan.outline_of(plan.sheet(), {5000, 6000, 0, 4000}), -1);
}

TEST(PlanOutline, of_a_body_without_a_place_is_none) {
    Plan plan;
    ModelBody body = plan.sheet();
    body.east = std::nan("");
    EXPECT_EQ(plan.outline_of(body), -1);
    body.east = 0;
    body.length.value = HUGE_VALF;
    EXPECT_EQ(plan.outline_of(body), -1);
}

TEST(ClipLine, cuts_at_each_side_and_keeps_what_is_inside) {
    const ClipBox box{0, 100, 0, 50};
    double e1 = -50, n1 = -25, e2 = 150, n2 = 75;
    EXPECT_EQ(clip_line(e1, n1, e2, n2, box), 0);
    EXPECT_NEAR(e1, 0, 1e-9);
    EXPECT_NEAR(n1, 0, 1e-9);
    EXPECT_NEAR(e2, 100, 1e-9);
    EXPECT_NEAR(n2, 50, 1e-9);
    e1 = 10, n1 = 20, e2 = 30, n2 = 40;
    EXPECT_EQ(clip_line(e1, n1, e2, n2, box), 0);
    EXPECT_EQ(e1, 10);
    EXPECT_EQ(n2, 40);
}

TEST(ClipLine, tells_a_segment_that_passes_by) {
    const ClipBox box{0, 100, 0, 50};
    double e1 = -10, n1 = 45, e2 = 20, n2 = 75;
    EXPECT_EQ(clip_line(e1, n1, e2, n2, box), -1) << "past a corner";
    e1 = -10, n1 = -5, e2 = 200, n2 = -5;
    EXPECT_EQ(clip_line(e1, n1, e2, n2, box), -1) << "all below";
}

TEST(ClipLine, ends_on_a_box_turned_inside_out) {
    double e1 = -10, n1 = -10, e2 = 300, n2 = 300;
    EXPECT_EQ(clip_line(e1, n1, e2, n2, {100, 0, 50, 0}), -1);
}

TEST(PlanOutline, with_the_exact_formulas_a_thin_sheet_has_its_length_and_its_horizontal_width) {
    Plan plan;
    ModelBody body = plan.sheet(thin_sheet);
    body.dip.value = 30;
    body.width.value = 10;
    ASSERT_EQ(plan.outline_of(body), 5);
    EXPECT_LT(plan.outline.north[0], 1900);
    plan.workspace.formulas = Formulas::exact;
    ASSERT_EQ(plan.outline_of(body), 5);
    plan.expect_corner(0, 1000, 1850);
    plan.expect_corner(2, 1020, 2150);
    body.length.value = 0;
    ASSERT_EQ(plan.outline_of(body), 5);
    plan.expect_corner(0, 1000, 1750);
}

TEST(PlanOutline, with_the_exact_formulas_a_pipe_is_as_wide_as_it_is_and_foreshortened) {
    Plan plan;
    plan.workspace.formulas = Formulas::exact;
    ModelBody body = plan.sheet(pipe);
    body.dip.value = 40;
    body.plunge.value = 20;
    body.offset.value = 30;
    ASSERT_EQ(plan.outline_of(body), 5);
    plan.expect_corner(0, 950, 2000 - 120 * 0.5);
    plan.expect_corner(2, 1050, 2000 + 180 * 0.5);
    body.length.value = 0;
    ASSERT_EQ(plan.outline_of(body), 5);
    plan.expect_corner(2, 1050, 2250);
}

}  // namespace anomalis::forward
