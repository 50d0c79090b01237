#include <gtest/gtest.h>

#include "core/failure.h"
#include "output/table_samples.h"
#include "output/tables.h"

namespace anomalis::output {
namespace {

TEST(MeshHeader, counts_corner_and_cell_widths) {
    Workspace workspace = three_stations();
    workspace.x_max = workspace.x_min + 1500;
    workspace.y_min = 7123000.5;
    workspace.z_max = 63.59593F;
    workspace.distances[3] = 75.0;  // 25 m a station
    EXPECT_EQ(mesh_header_text(workspace),
              " 60  18  10 \r\n 412345.5  7123000.5  63.59593 \r\n60*25.00\r\n18*25.00\r\n10*25.00\r\n");
}

TEST(MeshHeader, a_short_profile_has_ten_cells_of_ten_metres_each_way) {
    Workspace workspace = three_stations();
    workspace.distances[3] = 6;
    workspace.x_max = workspace.x_min + 6;
    EXPECT_EQ(mesh_header_text(workspace),
              " 10  10  10 \r\n 412345.5  7123456.25  0.25 \r\n10*10.00\r\n10*10.00\r\n10*10.00\r\n");
}

TEST(MeshHeader, a_cell_is_a_whole_number_a_tie_to_the_even_one) {
    Workspace workspace = three_stations();
    workspace.distances[3] = 3 * 12.5;
    EXPECT_NE(mesh_header_text(workspace).find("*12.00"), std::string::npos);
    workspace.distances[3] = 3 * 13.5;
    EXPECT_NE(mesh_header_text(workspace).find("*14.00"), std::string::npos);
}

TEST(MeshHeader, no_stations_are_a_fault) {
    Workspace workspace = three_stations();
    workspace.station_count = 0;
    EXPECT_THROW(mesh_header_text(workspace), Fault);
}

TEST(MeshHeader, extents_that_no_count_can_hold_are_told) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = three_stations();
    workspace.x_max = 1e32;
    EXPECT_EQ(write_mesh_header(folder.path("mesh.msh"), workspace, prompts), -1);
    EXPECT_EQ(prompts.messages,
              std::vector<std::string>{"An error occurred while writing the file: Overflow"});
    EXPECT_EQ(folder.entries(), 0);
    workspace.x_max = workspace.x_min;
    EXPECT_EQ(write_mesh_header(folder.path("mesh.msh"), workspace, prompts), 0);
    EXPECT_EQ(folder.read("mesh.msh"), mesh_header_text(workspace));
}

}  // namespace
}  // namespace anomalis::output
