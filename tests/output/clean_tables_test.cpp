#include "output/clean_tables.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "output/dxf_samples.h"

namespace anomalis::output {
namespace {

std::vector<std::string> split_lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

TEST(CleanProfileTable, has_the_columns_of_the_channels_that_are_there) {
    Workspace workspace = three_stations();
    const std::string mag = clean_profile_table_text(workspace);
    EXPECT_TRUE(mag.starts_with(
        "east_m,north_m,sensor_elevation_m,distance_m,mag_observed_nT,mag_observed_smoothed_nT,"
        "mag_observed_residual_nT,mag_observed_vertical_gradient_nT_per_station,mag_model_nT,"
        "mag_model_smoothed_nT,mag_model_residual_nT,mag_model_vertical_gradient_nT_per_station\n"
        "412345.6785,7123456.25,81.125,0.0,111.0,121.0,131.0,141.0,112.0,122.0,132.0,142.0\n"))
        << mag;
    workspace.definition.mag_column = 0;
    workspace.definition.grav_column = 3;
    workspace.definition.dtm_column = 2;
    workspace.processing.display_total_gradient = 1;
    const std::string grav = clean_profile_table_text(workspace);
    EXPECT_EQ(grav.find("mag"), std::string::npos);
    EXPECT_NE(grav.find(",ground_elevation_m,grav_observed_mGal,"), std::string::npos);
    EXPECT_NE(grav.find(",grav_observed_total_gradient_mGal_per_station,"), std::string::npos);
}

TEST(CleanProfileTable, a_missing_value_leaves_its_field_empty) {
    Workspace workspace = three_stations();
    workspace.mag.data(2, row_raw, stage_observed) = workspace.mag.data(2, row_residual, stage_calculated) =
        -1e32F;
    const std::string text = clean_profile_table_text(workspace, {});
    EXPECT_NE(text.find(",100.0,,221.0,231.0,241.0,212.0,222.0,,242.0\n"), std::string::npos) << text;
}

TEST(CleanProfileTable, without_stations_it_is_its_header) {
    Workspace workspace = three_stations();
    workspace.station_count = 0;
    const std::string text = clean_profile_table_text(workspace);
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(CleanTables, are_written_whole_or_not_at_all) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const Workspace workspace = three_stations();
    EXPECT_EQ(write_clean_profile_table(folder.path("p.csv"), workspace, prompts), 0);
    EXPECT_EQ(folder.read("p.csv"), clean_profile_table_text(workspace));
    EXPECT_EQ(write_clean_model_table(folder.path("m.csv"), workspace, prompts), 0);
    EXPECT_EQ(folder.read("m.csv"), clean_model_table_text(workspace));
    EXPECT_EQ(write_clean_profile_table(folder.path("no/p.csv"), workspace, prompts), -1);
    EXPECT_EQ(write_clean_model_table(folder.folder(), workspace, prompts), -1);
    EXPECT_EQ(prompts.messages.size(), 2U);
    EXPECT_TRUE(prompts.told("An error occurred while writing the file: Is a directory"));
    EXPECT_EQ(folder.entries(), 2);
}

TEST(CleanModelTable, every_type_has_the_depths_of_its_top_below_the_ground_while_a_line_is_loaded) {
    Workspace workspace = dxf_workspace();
    workspace.surface_elevation = 21.5;
    for (const std::int32_t type : {thin_sheet, thick_sheet, pipe, wire, sphere})
        add_dxf_body(workspace, type, "body").width.value = 7;
    workspace.station_count = 3;
    const std::vector<std::string> lines = split_lines(clean_model_table_text(workspace));
    ASSERT_EQ(lines.size(), 6U);
    for (const std::size_t row : {1U, 2U, 4U})
        EXPECT_NE(lines[row].find(",-10.0,31.5,31.5,"), std::string::npos) << lines[row];
    EXPECT_NE(lines[3].find(",-10.0,28.0,28.0,"), std::string::npos) << "a pipe lies below its axis less "
                                                                        "its radius: "
                                                                     << lines[3];
    EXPECT_NE(lines[5].find(",-10.0,28.0,31.5,"), std::string::npos) << "a sphere is buried at its centre";
    workspace.station_count = 0;
    EXPECT_NE(clean_model_table_text(workspace).find(",-10.0,,,"), std::string::npos);
}

TEST(CleanModelTable, names_the_point_that_the_grid_shows_and_the_middle_of_the_top_edge) {
    Workspace workspace = dxf_workspace();
    ModelBody& body = add_dxf_body(workspace, thick_sheet, "dyke");
    const std::string text = clean_model_table_text(workspace);
    EXPECT_NE(text.find(",east_m,north_m,reference_east_m,reference_north_m,"), std::string::npos);
    EXPECT_NE(text.find(",1010.0,2000.0,1000.0,2000.0,"), std::string::npos) << text;
    EXPECT_EQ(body.east, 1000);
}

TEST(CleanModelTable, every_row_has_every_column) {
    Workspace workspace = dxf_workspace();
    for (const std::int32_t type : {1, 2, 3, 4, 5, 6, 16, 17}) add_dxf_body(workspace, type, "body");
    for (const int mag : {0, 3}) {
        workspace.definition.mag_column = mag;
        workspace.definition.grav_column = 3 - mag;
        const std::string text = clean_model_table_text(workspace);
        std::size_t rows = 0;
        for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1, ++rows) {
            const std::string row = text.substr(at, text.find('\n', at) - at);
            EXPECT_EQ(std::count(row.begin(), row.end(), ','), 22) << row;
        }
        EXPECT_EQ(rows, 9U);
    }
}

TEST(CleanProfileTable, a_channel_with_a_regional_has_a_column_of_it) {
    Workspace workspace = three_stations();
    const std::string plain = clean_profile_table_text(workspace);
    workspace.mag.regional_degree = 1;  // chosen, not in force
    EXPECT_EQ(clean_profile_table_text(workspace), plain);
    workspace.mag.regional = {1, 100, 100, {2, 0.5, 0, 0}};
    const std::string text = clean_profile_table_text(workspace);
    EXPECT_NE(text.find(",mag_model_vertical_gradient_nT_per_station,mag_regional_nT\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find(",142.0,1.5\n"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with(",2.5\n")) << text;
    workspace.definition.grav_column = 4;
    workspace.grav.regional = {0, 100, 100, {0.25, 0, 0, 0}};
    EXPECT_TRUE(clean_profile_table_text(workspace).ends_with(",0.25\n"));
}

TEST(CleanModelTable, has_the_intervals_of_a_fit_as_long_as_the_model_is_as_fitted) {
    constexpr double open = FittedParameter::open;
    Workspace workspace = dxf_workspace();
    for (const std::int32_t type : {thick_sheet, pipe, wire}) add_dxf_body(workspace, type, "body");
    const std::string plain = clean_model_table_text(workspace);
    FitRecord& fit = workspace.fit.emplace();
    fit.parameters = {{2, param_width, 8, open, open, 140.25, true, false},
                      {1, param_top, 144.3F, 3, 139, 150.125, false, false},
                      {1, param_rem_q, 1, 0.1, 0.9, 1.1, false, false},
                      {3, param_susc, 5, 0.1, 4.5, 5.5, false, false}};
    fit.model_mark = model_mark(workspace);
    const std::vector<std::string> lines = split_lines(clean_model_table_text(workspace));
    const std::vector<std::string> before = split_lines(plain);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0], before[0] +
                            ",top_elevation_m_lower_90,top_elevation_m_upper_90,width_m_lower_90,"
                            "width_m_upper_90,current_mA_lower_90,current_mA_upper_90");
    EXPECT_EQ(lines[1], before[1] + ",139.0,150.125,,,,");
    EXPECT_EQ(lines[2], before[2] + ",,,,140.25,,");
    EXPECT_EQ(lines[3], before[3] + ",,,,,4.5,5.5");
    workspace.body(1).top.value += 1;
    EXPECT_EQ(clean_model_table_text(workspace).find("_90"), std::string::npos);
}

TEST(CleanProfileTable, failures_have_a_column_of_their_own_at_the_end) {
    const Workspace workspace = three_stations();
    const std::string plain = clean_profile_table_text(workspace);
    std::string marked = clean_profile_table_text(workspace, {"one", "another"});
    EXPECT_EQ(std::count(plain.begin(), plain.end(), '\n'), std::count(marked.begin(), marked.end(), '\n'));
    const auto drop = [&](const std::string& text) {
        for (auto at = marked.find(text); at != std::string::npos; at = marked.find(text))
            marked.replace(at, text.size(), "\n");
    };
    drop(",failures\n");
    drop(",2\n");
    EXPECT_EQ(marked, plain);
}

TEST(CleanModelTable, failures_have_a_column_of_their_own_at_the_end) {
    Workspace workspace = dxf_workspace();
    add_dxf_body(workspace, thick_sheet, "sheet");
    const std::string text = clean_model_table_text(workspace, {"one"});
    EXPECT_NE(text.find(",failures\n1,sheet,"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with(",1\n")) << text;
}

}  // namespace
}  // namespace anomalis::output
