#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "core/numbers.h"
#include "core/threads.h"
#include "output/table_samples.h"
#include "output/tables.h"

namespace anomalis::output {
namespace {

TEST(ProfileTable, magnetic_stations_have_their_eight_columns) {
    const std::vector<std::string> lines = lines_of(profile_table_text(three_stations()));
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], "#Profile model data for line 7.dat");
    EXPECT_EQ(
        lines[1],
        "East, North, Sensor, Dist, TMI_Obs, TMI_Obs_Smth, TMI_Obs_Res, TMI_Obs_VG, TMI_Mod, TMI_Mod_Smth, "
        "TMI_Mod_Res, TMI_Mod_VG");
    EXPECT_EQ(lines[2],
              "412345.679, 7123456.250, 81.13, 0.000, 111.00, 121.00, 131.00, 141.00, 112.00, 122.00, "
              "132.00, 142.00");
    EXPECT_EQ(
        lines[4],
        "412545.679, 7123456.250, 83.13, 200.000, 311.00, 321.00, 331.00, 341.00, 312.00, 322.00, 332.00, "
        "342.00");
}

TEST(ProfileTable, the_total_gradient_takes_the_place_of_the_vertical_one_when_it_is_chosen) {
    Workspace workspace = three_stations();
    workspace.processing.display_total_gradient = 1;
    workspace.definition.grav_column = 4;
    const std::vector<std::string> lines = lines_of(profile_table_text(workspace));
    EXPECT_EQ(
        lines[1],
        "East, North, Sensor, Dist, TMI_Obs, TMI_Obs_Smth, TMI_Obs_Res, TMI_Obs_TG, TMI_Mod, TMI_Mod_Smth, "
        "TMI_Mod_Res, TMI_Mod_TG, Grav_Obs, Grav_Obs_Smth, Grav_Obs_Res, Grav_Obs_TG, Grav_Mod, "
        "Grav_Mod_SMth, "
        "Grav_Mod_Res, Grav_Mod_TG");
    EXPECT_EQ(lines[2],
              "412345.679, 7123456.250, 81.13, 0.000, 111.00, 121.00, 131.00, 161.00, 112.00, 122.00, "
              "132.00, 162.00, "
              "-1.13, -2.13, -3.13, -6.13, -1.25, -2.25, -3.25, -6.25");
}

TEST(ProfileTable, gravity_alone_with_a_terrain_column) {
    Workspace workspace = three_stations();
    workspace.definition.mag_column = 0;
    workspace.definition.grav_column = 4;
    workspace.definition.dtm_column = 5;
    const std::vector<std::string> lines = lines_of(profile_table_text(workspace));
    EXPECT_EQ(lines[1],
              "East, North, Sensor, Dist, DTM, Grav_Obs, Grav_Obs_Smth, Grav_Obs_Res, Grav_Obs_VG, Grav_Mod, "
              "Grav_Mod_Smth, Grav_Mod_Res, Grav_Mod_VG");
    EXPECT_EQ(lines[2],
              "412345.679, 7123456.250, 81.13, 0.000, 0.063, -1.13, -2.13, -3.13, -4.13, -1.25, -2.25, "
              "-3.25, -4.25");
}

TEST(ProfileTable, a_missing_value_is_the_usual_mark_of_one) {
    Workspace workspace = three_stations();
    for (const int row : {row_smoothed, row_residual, row_gradient})
        for (const Stage stage : {stage_observed, stage_calculated})
            workspace.mag.data(2, row, stage) = -1e32F;
    workspace.mag.data(2, row_raw, stage_observed) = -1e32F;
    EXPECT_EQ(
        lines_of(profile_table_text(workspace))[3],
        "412445.679, 7123456.250, 82.13, 100.000, -1e32, -1e32, -1e32, -1e32, 212.00, -1e32, -1e32, -1e32");
}

TEST(ProfileTable, every_line_ends_with_cr_lf) {
    const std::string text = profile_table_text(three_stations());
    EXPECT_TRUE(text.ends_with("\r\n"));
    const auto ends = std::count(text.begin(), text.end(), '\n');
    EXPECT_EQ(ends, 5);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), ends);
}

TEST(ProfileTable, a_failed_write_is_told_and_keeps_the_old_file) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    folder.write("kept/table.csv", "old");
    EXPECT_EQ(write_profile_table(folder.path("kept"), three_stations(), prompts), -1);
    EXPECT_TRUE(prompts.told("An error occurred while writing the file: "));
    EXPECT_EQ(folder.read("kept/table.csv"), "old");
    EXPECT_EQ(write_profile_table(folder.path("kept/table.csv"), three_stations(), prompts), 0);
    EXPECT_EQ(folder.read("kept/table.csv"), profile_table_text(three_stations()));
}

TEST(ProfileTable, failures_stand_at_the_end_of_the_first_line) {
    const Workspace workspace = three_stations();
    std::vector<std::string> plain = lines_of(profile_table_text(workspace));
    std::vector<std::string> marked =
        lines_of(profile_table_text(workspace, {"a.axm, line 3", "two\nlines", "3", "4", "5", "6", "7"}));
    EXPECT_EQ(
        marked[0],
        "#Profile model data for line 7.dat [WITH FAILURES: a.axm; line 3; two lines; 3; 4; 5; and 2 more]");
    marked[0] = plain[0];
    EXPECT_EQ(marked, plain);
}

/// A line whose table goes out in several pieces.
Workspace long_line() {
    constexpr int stations = 6000;
    Workspace workspace = three_stations();
    workspace.station_count = stations;
    workspace.stations.assign(stations);
    workspace.distances.assign(stations);
    workspace.mag.data.assign(stations);
    for (int i = 1; i <= stations; ++i) {
        workspace.stations(i, column_east) = 412345.6785 + 0.5 * i;
        workspace.stations(i, column_north) = 7123456.25 - 0.0625 * i;
        workspace.distances[i] = i / 3.0;
        for (int row = 1; row <= 4; ++row)
            for (const int stage : {stage_observed, stage_calculated})
                workspace.mag.data(i, row, stage) = static_cast<float>(std::sin(i * row) * 1000.0 / stage);
    }
    return workspace;
}

TEST(ProfileTable, a_long_line_has_the_numbers_of_the_patterns_whatever_the_count_of_threads) {
    const Workspace workspace = long_line();
    std::string rows;
    for (int i = 1; i <= workspace.station_count; ++i) {
        rows += format_number(workspace.stations(i, column_east), "0.000") + ", " +
                format_number(workspace.stations(i, column_north), "0.000") + ", " +
                format_number(workspace.stations(i, column_sensor), "0.00") + ", " +
                format_number(workspace.distances[i], "0.000");
        for (const int stage : {stage_observed, stage_calculated})
            for (int row = 1; row <= 4; ++row)
                rows += ", " + format_number(workspace.mag.data(i, row, stage), "0.00");
        rows += "\r\n";
    }
    for (const int threads : {1, 2}) {
        limit_threads(threads);
        const std::string text = profile_table_text(workspace);
        EXPECT_TRUE(text.ends_with("\r\n" + rows)) << threads;
    }
    limit_threads(0);
}

TEST(ProfileTable, a_value_that_is_no_number_is_a_star) {
    Workspace workspace = three_stations();
    workspace.mag.data(1, row_raw, stage_calculated) = std::nanf("");
    workspace.mag.data(1, row_residual, stage_calculated) = HUGE_VALF;
    EXPECT_TRUE(lines_of(profile_table_text(workspace))[2].ends_with(", *, 122.00, *, 142.00"));
}

}  // namespace
}  // namespace anomalis::output
