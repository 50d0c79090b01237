// What other programs find in the files that this one writes.
#include <gtest/gtest.h>
#include <sstream>

#include "output/clean_tables.h"
#include "output/dxf.h"
#include "output/dxf_samples.h"
#include "output/tables.h"
#include "support/command.h"

namespace anomalis::output {
namespace {

std::string python(const std::string& script, const std::vector<std::string>& paths) {
    std::vector<std::string> command{PYTHON, std::string(SCRIPTS) + "/" + script};
    command.insert(command.end(), paths.begin(), paths.end());
    return output_of(command);
}

std::vector<std::string> split_lines(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

TEST(IndependentReader, finds_the_cells_of_the_mesh_header) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = three_stations();
    workspace.x_max = workspace.x_min + 1500;
    workspace.y_min = 7123000.5;
    workspace.z_max = 63.59593F;
    workspace.distances[3] = 75.0;
    ASSERT_EQ(write_mesh_header(folder.path("a.msh"), workspace, prompts), 0);
    EXPECT_EQ(python("read_mesh.py", {folder.path("a.msh")}),
              "60 18 10 412345.5 7123000.5 63.59593 1500.0 450.0 250.0\n");
}

#ifdef HAVE_EZDXF
TEST(IndependentReader, opens_the_bodies_without_an_objection) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = dxf_workspace();
    add_dxf_body(workspace, thick_sheet, "Dyke");
    add_dxf_body(workspace, pipe, "Pipe one");
    ASSERT_EQ(write_body_dxf(folder.path("a.dxf"), workspace, prompts), 0);
    const std::vector<std::string> lines = split_lines(python("read_drawing.py", {folder.path("a.dxf")}));
    ASSERT_EQ(lines.size(), 1U + 6 + 48);
    EXPECT_EQ(lines[0], "0 0") << "errors and repairs";
    EXPECT_EQ(lines[1],
              "3DFACE|Dyke|1|1000.000 2050.000 -60.000|1000.000 1950.000 -60.000|1020.000 1950.000 -60.000|"
              "1020.000 2050.000 -60.000");
    EXPECT_TRUE(lines[7].starts_with("3DFACE|Pipe one|1|")) << lines[7];
}

TEST(IndependentReader, opens_the_plan_without_an_objection) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = three_stations();
    workspace.body_count = 0;
    ModelBody& body = add_dxf_body(workspace, pipe, "Pipe");
    body.east = 412445.5;
    body.north = 7123456.25;
    ASSERT_EQ(write_plan_dxf(folder.path("a.dxf"), workspace, prompts), 0);
    EXPECT_EQ(split_lines(python("read_drawing.py", {folder.path("a.dxf")})),
              (std::vector<std::string>{
                  "0 0",
                  "POLYLINE|412345.678 7123456.250 0.000|412445.678 7123456.250 0.000|412545.678 7123456.250 "
                  "0.000",
                  "POLYLINE|412425.500 7123406.250 0.000|412425.500 7123506.250 0.000|412465.500 7123506.250 "
                  "0.000|412465.500 7123406.250 0.000|412425.500 7123406.250 0.000"}));
}
#endif

#ifdef HAVE_PANDAS
TEST(IndependentReader, takes_the_clean_profile_as_it_is) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = three_stations();
    workspace.definition.dtm_column = 4;
    workspace.definition.grav_column = 5;
    workspace.stations(2, column_sensor) = -1e32;
    ASSERT_EQ(write_clean_profile_table(folder.path("p.csv"), workspace, prompts), 0);
    const std::vector<std::string> lines = split_lines(python("read_table.py", {folder.path("p.csv")}));
    ASSERT_EQ(lines.size(), 1U + 5 + 16);
    EXPECT_EQ(lines[0], "3 21");
    EXPECT_EQ(lines[1], "east_m|f|412345.6785|412445.6785|412545.6785");
    EXPECT_EQ(lines[3], "sensor_elevation_m|f|81.125|nan|83.125");
    EXPECT_EQ(lines[4], "distance_m|f|0.0|100.0|200.0");
    EXPECT_EQ(lines[5], "ground_elevation_m|f|0.0625|0.125|0.1875");
    EXPECT_EQ(lines[6], "mag_observed_nT|f|111.0|211.0|311.0");
    EXPECT_EQ(lines[9], "mag_observed_vertical_gradient_nT_per_station|f|141.0|241.0|341.0");
    EXPECT_EQ(lines[12], "mag_model_residual_nT|f|132.0|232.0|332.0");
    EXPECT_EQ(lines[14], "grav_observed_mGal|f|-1.125|-1.125|-1.125");

    workspace.processing.display_total_gradient = 1;
    ASSERT_EQ(write_clean_profile_table(folder.path("p.csv"), workspace, prompts), 0);
    EXPECT_EQ(split_lines(python("read_table.py", {folder.path("p.csv")}))[9],
              "mag_observed_total_gradient_nT_per_station|f|161.0|261.0|361.0");
}

TEST(IndependentReader, takes_the_clean_model_as_it_is) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = dxf_workspace();
    workspace.definition.mag_column = 3;
    add_dxf_body(workspace, thick_sheet, "  a, \"b\"\r\nc ").susc.value = 0.1F;
    ModelBody& cylinder = add_dxf_body(workspace, pipe, "\xD6st\xC3\xB6lich \xE6\xBC\xA2 \xED\xA0\x80");
    cylinder.width.value = 20;
    workspace.station_count = 1;
    add_dxf_body(workspace, wire, "").susc.value = 700;
    add_dxf_body(workspace, 9, "nameless").turned_off = 1;
    ASSERT_EQ(write_clean_model_table(folder.path("m.csv"), workspace, prompts), 0);
    const std::vector<std::string> lines = split_lines(python("read_table.py", {folder.path("m.csv")}));
    ASSERT_EQ(lines.size(), 24U);
    EXPECT_EQ(lines[0], "4 23");
    EXPECT_EQ(lines[1], "body|i|1|2|3|4");
    // Half of a pair is no UTF-8: each of its bytes is a character of Latin-1, printed here by its code.
    EXPECT_EQ(lines[2],
              "name|O|'a, \"b\" c'|'\xC3\x96st\xC3\xB6lich \xE6\xBC\xA2 \xC3\xAD\\xa0\\x80'|nan|'nameless'");
    EXPECT_EQ(lines[3], "type|O|'Thick Sheet'|'Cylinder/pipe'|'Wire'|'Type 9'");
    EXPECT_EQ(lines[4], "in_model|i|1|1|1|0");
    EXPECT_EQ(lines[6], "east_m|f|1010.0|1010.0|1010.0|1010.0");
    EXPECT_EQ(lines[8], "reference_east_m|f|1000.0|1000.0|1000.0|1000.0");
    EXPECT_EQ(lines[10], "top_elevation_m|f|-10.0|-10.0|-10.0|-10.0");
    EXPECT_EQ(lines[11], "depth_to_top_m|f|10.0|0.0|10.0|10.0") << "of a pipe less its radius";
    EXPECT_EQ(lines[12], "burial_depth_m|f|10.0|0.0|10.0|10.0");
    EXPECT_EQ(lines[21], "susceptibility_micro_SI|f|0.1|0.0|nan|0.0");
    EXPECT_EQ(lines[22], "current_mA|f|nan|nan|700.0|nan");
    EXPECT_EQ(lines[23], "density_contrast_g_per_cc|f|nan|nan|nan|nan");
}
#endif

}  // namespace
}  // namespace anomalis::output
