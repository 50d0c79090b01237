#include "flow/import_survey.h"

#include <gtest/gtest.h>

#include "core/gaps.h"
#include "core/settings.h"
#include "flow/importing.h"
#include "intake/survey/survey_corrections.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {
namespace {

using intake::Role;

TEST(ImportSurvey, leaves_a_table_that_tells_what_it_is) {
    Importing survey(survey_table(), "EPSG:32754");
    survey.choices.date = "1990-07-01";
    const ImportedLine line = survey.line(1);
    EXPECT_EQ(line.title, "line 110 of survey.csv");
    EXPECT_EQ(line.table_path, survey.folder.path("survey_110.csv"));
    EXPECT_EQ(line.workspace_path, survey.folder.path("survey_110.axm"));
    const std::string head =
        "east_m,north_m,sensor_m,ground_m,mag_nT,grav_mGal,longitude_deg,latitude_deg\n"
        "! Source file: survey.csv\n! Line: 110\n! Coordinate system: EPSG:32754 (WGS 84 / UTM zone 54S)\n"
        "! Date: 1990-07-01\n! No reading: -1e32\n482390,7553200,301,240,1,0,140.8";
    EXPECT_EQ(line.table.substr(0, head.size()), head);
}

TEST(ImportSurvey, the_first_tab_reads_what_is_left_behind) {
    Importing survey(survey_table(), "EPSG:32754");
    survey.choices.date = "1990-07-01";
    const ImportedLine line = survey.line(0);
    ASSERT_TRUE(survey.write(line)) << survey.prompts.messages.front();
    Workspace read;
    initialise_workspace(read, survey.prompts);
    ASSERT_EQ(workspace_file::read_model_parameters(0, read, line.workspace_path, Settings{}, survey.prompts),
              0);
    EXPECT_EQ(read.source, line.workspace.source);
    EXPECT_NEAR(read.field.intensity, line.workspace.field.intensity, 0.01);
    EXPECT_NEAR(read.field.inclination, line.workspace.field.inclination, 1e-5);
    EXPECT_EQ(read.gap_distance, 30);
    EXPECT_EQ(read.display.show_axes, 1);
    ASSERT_EQ(intake::load_locations(read, survey.prompts), 0);
    EXPECT_TRUE(survey.prompts.messages.empty());
    ASSERT_EQ(read.station_count, 40);
    EXPECT_EQ(read.stations(1, column_east), 482000);
    EXPECT_EQ(read.stations(1, column_sensor), 300);
    EXPECT_EQ(read.stations(1, column_ground), 240);
    EXPECT_EQ(read.mag.data(21, row_raw, stage_observed), 100);
    EXPECT_EQ(read.grav.data(21, row_raw, stage_observed), 1);
}

TEST(ImportSurvey, the_table_is_a_survey_file_itself) {
    Importing survey(survey_in_degrees(140.8, -22.1), "EPSG:32754");
    survey.choices.date = "1990-07-01";
    const ImportedLine line = survey.line(0);
    const Importing again(line.table, "", "again.csv");
    const intake::SurveyLayout& layout = again.index.layout;
    EXPECT_EQ(layout.names_row, 1);
    EXPECT_EQ(layout.columns[2].name, "mag_nT");
    EXPECT_EQ(layout.columns[2].role, Role::mag);
    EXPECT_EQ(again.index.coordinate_system, "EPSG:32754");
    EXPECT_FALSE(again.index.in_degrees);
    EXPECT_EQ(again.index.rows, 30);
}

TEST(ImportSurvey, sets_the_field_of_place_and_date) {
    Importing survey(survey_in_degrees(140.6, -22.1));
    survey.choices.date = "1990-07-01";
    const ImportedLine line = survey.line(0);
    const Workspace& workspace = line.workspace;
    EXPECT_NEAR(workspace.field.intensity, 52090, 60);
    EXPECT_NEAR(workspace.field.inclination, -53.4, 0.1);
    EXPECT_NEAR(workspace.field.declination, 6.67, 0.1);
    EXPECT_EQ(workspace.source.field_origin, "IGRF-14 at the middle of the line, 1990-07-01");
    EXPECT_EQ(workspace.source.coordinate_system, "EPSG:32754");
    EXPECT_FALSE(workspace.source.field_missing);
}

TEST(ImportSurvey, leaves_the_field_open_where_date_or_place_are_not_known) {
    Importing survey(survey_table());
    const ImportedLine without_date = survey.line(0);
    EXPECT_TRUE(without_date.workspace.source.field_missing);
    EXPECT_EQ(without_date.workspace.field.intensity, 0);
    EXPECT_TRUE(has_note(without_date, "the date of the survey is not known"));
    survey.choices.date = "1990";
    EXPECT_TRUE(has_note(survey.line(0), "the coordinate system of the survey is not known"));
    survey.choices.field_choice = FieldChoice::keyed;
    survey.choices.field = {52000, -53, 6};
    const ImportedLine keyed = survey.line(0);
    EXPECT_EQ(keyed.workspace.field, survey.choices.field);
    EXPECT_FALSE(keyed.workspace.source.field_missing);
}

TEST(ImportSurvey, refuses_a_date_that_is_none_or_outside_of_the_model) {
    Importing survey(survey_table(), "EPSG:32754");
    survey.choices.date = "1890-07-01";
    EXPECT_NE(survey.fault(0).find("1900"), std::string::npos);
    survey.choices.date = "yesterday";
    EXPECT_NE(survey.fault(0).find("yesterday"), std::string::npos);
    EXPECT_EQ(survey.files(), 1);
}

TEST(ImportSurvey, has_the_workspace_remove_the_main_field_at_each_load) {
    Importing survey(survey_table(), "EPSG:32754");
    survey.choices.date = "1990-07-01";
    survey.choices.main_field = MainFieldChange::removed;
    const ImportedLine line = survey.line(0);
    EXPECT_EQ(line.workspace.source.igrf_change, igrf_removed);
    EXPECT_NE(line.table.find("the workspace has IGRF-14 removed from it"), std::string::npos);
    survey.choices.date = "";
    EXPECT_NE(survey.fault(0).find("the date of the survey is not known"), std::string::npos);
}

TEST(ImportSurvey, a_null_of_one_channel_is_a_gap_of_that_channel_alone) {
    std::string text = survey_table({.lines = 1});
    text += "100,482400,7553000,300,240,-99999,0.5\n100,482410,7553000,300,240,5,0.5\n";
    Importing survey(text);
    const ImportedLine line = survey.line(0);
    EXPECT_NE(line.table.find("482400,7553000,300,240,-1e32,0.5"), std::string::npos);
    ASSERT_TRUE(survey.write(line));
    const Workspace workspace = loaded(line, survey.prompts);
    ASSERT_EQ(workspace.station_count, 42);
    EXPECT_FALSE(is_reading(static_cast<double>(workspace.mag.data(41, row_raw, stage_observed))));
    EXPECT_EQ(workspace.grav.data(41, row_raw, stage_observed), 0.5F);
    EXPECT_EQ(count_missing(workspace, channel_mag), 1);
}

TEST(ImportSurvey, a_missing_height_is_interpolated_and_said) {
    std::string text = survey_table({.lines = 1, .stations = 20});
    text += "100,482200,7553000,,240,5,0\n100,482210,7553000,310,240,5,0\n";
    const Importing survey(text);
    const ImportedLine line = survey.line(0);
    EXPECT_NE(line.table.find("482200,7553000,305.5,240"), std::string::npos) << line.table;
    EXPECT_TRUE(has_note(line, "sensor height is missing at 1 stations"));
}

TEST(ImportSurvey, keeps_the_digits_of_the_source) {
    std::string text = "line,east,north,tmi,bouguer\n";
    for (int i = 0; i < 10; ++i)
        text += "1,482000.1234,7553000,5212" + std::to_string(i) + ".12345,-12.3456789\n";
    text += "1,482100,7553000,52120,-12\n";
    const Importing survey(text);
    const std::string table = survey.line(0).table;
    EXPECT_NE(table.find("482000.123,7553000,52120.12345,-12.3456789\n"), std::string::npos) << table;
}

/// A line of ten stations with further columns of the same value at each.
std::string with_columns(const std::string& names, const std::string& values, const std::string& reading) {
    std::string text = "line,east,north," + reading + "," + names + "\n";
    for (int i = 0; i < 10; ++i)
        text += "1," + std::to_string(482000 + 10 * i) + ",7553000,5" + std::to_string(i % 4) + "," + values +
                "\n";
    return text;
}

TEST(ImportSurvey, a_clearance_alone_stands_over_flat_ground) {
    Importing survey(with_columns("radalt", "62", "tmi"));
    const ImportedLine line = survey.line(0);
    EXPECT_EQ(line.table.substr(0, line.table.find('\n')), "east_m,north_m,clearance_m,mag_nT");
    EXPECT_EQ(line.workspace.definition.z_column, 3);
    EXPECT_EQ(line.workspace.definition.dtm_column, 0);
    EXPECT_EQ(line.workspace.surface_elevation, 0);
    EXPECT_EQ(line.workspace.sensor_offset, 62);
    EXPECT_TRUE(has_note(line, "flat"));
    ASSERT_TRUE(survey.write(line));
    const Workspace workspace = loaded(line, survey.prompts);
    EXPECT_EQ(workspace.stations(1, column_sensor), 62);
    EXPECT_EQ(workspace.stations(1, column_ground), 0);
}

TEST(ImportSurvey, gravity_with_one_elevation_is_read_on_the_ground) {
    const Importing survey(with_columns("elevation", "911", "bouguer"));
    const ImportedLine line = survey.line(0);
    EXPECT_EQ(line.table.substr(0, line.table.find('\n')), "east_m,north_m,ground_m,grav_mGal");
    EXPECT_EQ(line.workspace.sensor_offset, 0);
    EXPECT_EQ(line.workspace.definition.dtm_column, 3);
}

TEST(ImportSurvey, a_sensor_height_alone_has_the_ground_below_it) {
    Importing survey(with_columns("gps_height", "311", "tmi"));
    survey.choices.sensor_offset = 80.0F;
    const ImportedLine line = survey.line(0);
    EXPECT_EQ(line.workspace.definition.z_column, 3);
    EXPECT_EQ(line.workspace.sensor_offset, 80);
    EXPECT_TRUE(has_note(line, "80 m below the sensor"));
}

TEST(ImportSurvey, refuses_what_is_no_line) {
    Importing survey(survey_table() +
                     "9,482000,7553000,300,240,7,0\n8,482000,7553000,300,240,7,0\n"
                     "8,482000,7553000,300,240,7,0\n");
    EXPECT_EQ(survey.fault(3), "Line 9 of survey.csv has one station: nothing can be modelled along it");
    EXPECT_EQ(survey.fault(4), "Line 8 of survey.csv has all its stations at one place");
    intake::SurveyLayout layout = intake::recognise_survey(survey.path);
    for (const char* name : {"tmi", "bouguer"})
        intake::give_role(layout, intake::find_column(layout, name), Role::none);
    survey.index = intake::index_survey(layout, {});
    EXPECT_NE(survey.fault(0).find("no column that is magnetics or gravity"), std::string::npos);
}

TEST(ImportSurvey, takes_a_piece_of_a_folded_line_and_says_when_it_takes_all) {
    std::string text = "line,east,north,tmi\n";
    for (int i = 0; i < 50; ++i) text += "1," + std::to_string(482000 + 10 * i) + ",7553000,5\n";
    for (int i = 50; i-- > 0;)
        text += "1," + std::to_string(482000 + 10 * i) + ",7553050," + std::to_string(i) + "\n";
    Importing survey(text);
    const ImportedLine piece = survey.line(0, 1);
    EXPECT_EQ(piece.table_path, survey.folder.path("survey_1_part2.csv"));
    EXPECT_EQ(piece.workspace.source.line, "1 part 2");
    EXPECT_EQ(piece.report.stations, 50);
    EXPECT_TRUE(has_note(survey.line(0), "2 straight parts"));
    EXPECT_FALSE(has_note(piece, "straight parts"));
}

}  // namespace
}  // namespace anomalis::flow
