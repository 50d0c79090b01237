#include <gtest/gtest.h>

#include "output/dxf.h"
#include "output/dxf_samples.h"

namespace anomalis::output {
namespace {

class PlanDxf : public ::testing::Test {
  protected:
    DxfPairs drawing() {
        EXPECT_EQ(write_plan_dxf(folder.path("plan.dxf"), workspace, prompts), 0);
        return DxfPairs(folder.read("plan.dxf"));
    }
    /// The corners of the only polyline, "east north" each.
    std::vector<std::string> corners() {
        const DxfPairs pairs = drawing();
        EXPECT_TRUE(pairs.whole);
        EXPECT_EQ(pairs.places("POLYLINE").size(), 1U);
        std::vector<std::string> found;
        for (const std::size_t at : pairs.places("VERTEX"))
            found.push_back(number_to_text(pairs.number(at + 1)) + number_to_text(pairs.number(at + 2)));
        return found;
    }
    using Corners = std::vector<std::string>;

    TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = dxf_workspace();
};

TEST_F(PlanDxf, without_stations_and_bodies_it_is_head_and_tail) {
    const DxfPairs pairs = drawing();
    EXPECT_TRUE(pairs.whole);
    EXPECT_EQ(pairs.values.size(), 13U);
}

TEST_F(PlanDxf, the_line_is_a_polyline_of_all_stations) {
    workspace = three_stations();
    drawing();
    EXPECT_NE(folder.read("plan.dxf")
                  .find("ENTITIES\r\n  0\r\nPOLYLINE\r\n"
                        "  0\r\nVERTEX\r\n 10\r\n 412345.6785 \r\n 20\r\n 7123456.25 \r\n"
                        "  0\r\nVERTEX\r\n 10\r\n 412445.6785 \r\n 20\r\n 7123456.25 \r\n"
                        "  0\r\nVERTEX\r\n 10\r\n 412545.6785 \r\n 20\r\n 7123456.25 \r\n"
                        "  0\r\nSEQEND\r\n  0\r\nENDSEC\r\n  0\r\nEOF\r\n"),
              std::string::npos)
        << folder.read("plan.dxf");
}

TEST_F(PlanDxf, a_thick_sheet_has_its_length_about_its_offset) {
    add_dxf_body(workspace, thick_sheet, "a").offset.value = 10;
    EXPECT_EQ(corners(), (Corners{" 1000 1960", " 1000 2060", " 1020 2060", " 1020 1960", " 1000 1960"}));
}

TEST_F(PlanDxf, with_the_exact_formulas_a_pipe_is_as_wide_as_they_calculate_it) {
    workspace.formulas = Formulas::exact;
    ModelBody& body = add_dxf_body(workspace, pipe, "a");
    body.dip.value = 60;
    body.offset.value = 20;
    body.num_sectors = 2'000'000;  // too fine for a solid, but an outline needs none
    EXPECT_EQ(corners(), (Corners{" 990 1985", " 990 2035", " 1010 2035", " 1010 1985", " 990 1985"}));
}

TEST_F(PlanDxf, other_sheets_and_bodies_without_a_length_have_the_usual_one) {
    for (const std::int32_t type : {-1, 0, 1, 3, 4}) {
        workspace.body_count = 0;
        add_dxf_body(workspace, type, "a").offset.value = 10;
        EXPECT_EQ(corners(), (Corners{" 1000 1875", " 1000 2125", " 1020 2125", " 1020 1875", " 1000 1875"}));
    }
    workspace.body_count = 0;
    add_dxf_body(workspace, thick_sheet, "a").length.value = 0;
    EXPECT_EQ(corners().front(), " 1000 1875");
}

TEST_F(PlanDxf, a_pipe_reaches_its_width_to_both_sides) {
    add_dxf_body(workspace, pipe, "a").offset.value = 10;
    EXPECT_EQ(corners(), (Corners{" 980 1960", " 980 2060", " 1020 2060", " 1020 1960", " 980 1960"}));
}

TEST_F(PlanDxf, the_first_side_is_cut_to_the_square_extents) {
    add_dxf_body(workspace, thick_sheet, "a").length.value = 3000;
    EXPECT_EQ(corners(), (Corners{" 1000 1800", " 1000 2200", " 1020 2200", " 1020 1800", " 1000 1800"}));
}

TEST_F(PlanDxf, a_body_outside_and_other_types_are_left_out) {
    add_dxf_body(workspace, thick_sheet, "outside").east = 5000;
    for (const std::int32_t type : {5, 6, 7, 15, 17, 18}) add_dxf_body(workspace, type, "a");
    EXPECT_TRUE(drawing().places("POLYLINE").empty());
    add_dxf_body(workspace, pipe, "inside");
    EXPECT_EQ(drawing().places("POLYLINE").size(), 1U);
}

TEST_F(PlanDxf, extents_that_no_single_holds_are_told) {
    workspace.x_max = 1e300;
    EXPECT_EQ(write_plan_dxf(folder.path("plan.dxf"), workspace, prompts), -1);
    EXPECT_EQ(prompts.messages,
              std::vector<std::string>{"An error occurred while exporting the plan to dxf: Overflow"});
}

}  // namespace
}  // namespace anomalis::output
