#include <gtest/gtest.h>

#include "output/table_samples.h"
#include "output/tables.h"

namespace anomalis::output {
namespace {

Workspace with_body(std::int32_t type) {
    Workspace workspace = three_stations();
    workspace.body_count = 1;
    ModelBody& body = workspace.body(1);
    body.type = type;
    body.east = 412345.25;
    body.north = 7123456.5;
    body.name = "  Dyke, west  ";
    body.width.value = 100;
    body.dip.value = 75.5F;
    body.susc.value = 5000;
    body.density.value = 2.67F;
    body.plunge.value = -2;
    body.slope.value = 3;
    body.depth_extent.value = 250;
    body.length.value = 1e-5F;
    body.top_elevation = 32.2489F;
    return workspace;
}

std::string body_line(const Workspace& workspace) {
    return lines_of(model_table_text(workspace)).at(2);
}

TEST(ModelTable, no_bodies_still_give_two_lines) {
    EXPECT_EQ(
        model_table_text(three_stations()),
        "#Profile model for line 7.dat\r\n"
        "East, North, DepthToTop, HorizontalWidth, Strike, Dip, Susceptability, Density, PlungeAlongStrike, "
        "SlopeOfTop, VerticalDepthExtent, StrikeLength, BurialDepth, Name\r\n");
}

TEST(ModelTable, magnetic_data_alone_have_a_star_for_the_density_and_no_comma_behind_it) {
    EXPECT_EQ(body_line(with_body(thick_sheet)),
              ",,,412395.250,7123456.500,0.000,100.000,0,75.55000*,-2,3,250,1E-05, *,Dyke, west");
}

TEST(ModelTable, gravity_data_alone_have_a_star_for_the_susceptibility) {
    Workspace workspace = with_body(thick_sheet);
    workspace.definition.mag_column = 0;
    workspace.definition.grav_column = 4;
    EXPECT_EQ(body_line(workspace),
              ",,,412395.250,7123456.500,0.000,100.000,0,75.5*2.67,,-2,3,250,1E-05, *,Dyke, west");
}

TEST(ModelTable, a_pipe_has_half_the_width_that_a_save_gives_its_end_and_its_burial_depth) {
    Workspace workspace = with_body(pipe);
    workspace.definition.grav_column = 4;
    workspace.body(1).end_width_a = 60;
    EXPECT_EQ(body_line(workspace),
              ",,,412395.250,7123456.500,50.000,100.000,0,75.550002.67,,-2,3,250,1E-05,32.249,Dyke, west");
}

TEST(ModelTable, a_pipe_has_a_star_for_its_burial_depth_while_no_line_is_loaded) {
    Workspace workspace = with_body(pipe);
    workspace.station_count = 0;
    EXPECT_TRUE(body_line(workspace).ends_with(",250,1E-05, *,Dyke, west")) << body_line(workspace);
}

TEST(ModelTable, the_place_is_the_middle_of_the_top_edge_at_the_offset) {
    Workspace workspace = with_body(thick_sheet);
    workspace.body(1).strike.value = 90;
    workspace.body(1).offset.value = 40;
    // Half the width lies to the south of a body that strikes east, the offset to the east.
    EXPECT_TRUE(body_line(workspace).starts_with(",,,412385.250,7123406.500,"));
}

TEST(ModelTable, a_failed_write_is_told) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    EXPECT_EQ(write_model_table(folder.path("missing/model.csv"), three_stations(), prompts), -1);
    EXPECT_TRUE(prompts.told("An error occurred while writing the file: "));
    EXPECT_EQ(write_model_table(folder.path("model.csv"), three_stations(), prompts), 0);
    EXPECT_EQ(folder.read("model.csv"), model_table_text(three_stations()));
}

}  // namespace
}  // namespace anomalis::output
