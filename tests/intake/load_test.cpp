#include "intake/load.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "intake/line_columns.h"
#include "intake/row_notes.h"
#include "support/survey.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

int load(Survey& survey) {
    return load_locations(survey.workspace, survey.prompts);
}

/// Loads a file that must be refused with this message alone, or with none for "".
void expect_refused(Survey& survey, const std::string& message) {
    EXPECT_EQ(load(survey), -1);
    EXPECT_EQ(survey.workspace.station_count, 0);
    if (message.empty()) {
        EXPECT_THAT(survey.prompts.messages, IsEmpty());
    } else {
        EXPECT_THAT(survey.prompts.messages, ElementsAre(message));
    }
}

TEST(Load, leads_from_the_file_to_the_profile) {
    Survey survey("20 0 300\n10 0 200\n0 0 100\n");
    Workspace& w = survey.workspace;
    w.body_count = 1;
    w.body(1).type = thin_sheet;
    EXPECT_EQ(load(survey), 0);
    EXPECT_THAT(survey.prompts.messages, IsEmpty());
    EXPECT_EQ(w.station_count, 3);
    EXPECT_THAT(w.distances.span(), ElementsAre(0, 10, 20));
    EXPECT_THAT(w.mag.data.row(row_raw, stage_observed), ElementsAre(100, 200, 300));
    EXPECT_EQ(w.mag.base, 200);
    EXPECT_EQ(w.first_station, 1);
    EXPECT_EQ(w.last_station, 3);
    EXPECT_EQ(w.last_distance, 20);
    EXPECT_TRUE(w.elevations_ready);
    EXPECT_EQ(w.stations(1, column_sensor), 10);
    EXPECT_EQ(w.body(1).response.rows(), 3);
    EXPECT_GT(w.definition.data_file_date, 40000);
}

TEST(Load, a_second_load_replaces_the_first) {
    Survey survey("0 0 1\n10 0 2\n20 0 3\n");
    EXPECT_EQ(load(survey), 0);
    survey.set_file("0 0 5\n10 0 6\n");
    EXPECT_EQ(load(survey), 0);
    EXPECT_EQ(survey.workspace.station_count, 2);
    EXPECT_EQ(survey.workspace.last_station, 2);
    EXPECT_EQ(survey.workspace.last_distance, 10);
    EXPECT_EQ(survey.workspace.mag.max, 6);
}

TEST(Load, calculated_responses_are_out_of_date_even_when_the_definition_is_refused) {
    Survey survey("0 0 1\n10 0 2\n");
    survey.workspace.definition.mag_column = 0;
    survey.workspace.body(5).mag_response_valid = true;
    expect_refused(survey, "You must specify either a mag column or gravity column");
    EXPECT_FALSE(survey.workspace.body(5).mag_response_valid);
}

TEST(Load, only_blanks_behind_the_header_load_nothing_without_a_message) {
    for (const char* contents : {"", "header\n", "header\n   \n\n   \n", "h", "\n\n\n"}) {
        Survey survey(contents);
        survey.workspace.definition.first_data_line = 2;
        expect_refused(survey, "");
    }
}

TEST(Load, every_record_dropped_loads_nothing_without_a_message) {
    Survey survey("* * *\n* * *\n0 0 *\n");
    expect_refused(survey, "");
}

TEST(Load, a_first_record_that_lacks_a_value_stops_the_load) {
    Survey survey("0 0\n10 0 5\n20 0 6\n");
    expect_refused(survey, "No valid mag values were read");
}

TEST(Load, a_column_beyond_every_row_has_its_message) {
    const auto refused = [](std::int32_t DataDefinition::*column, const std::string& message) {
        Survey survey("0 0 1\n10 0 2\n");
        survey.workspace.definition.*column = 9;
        expect_refused(survey, message);
    };
    refused(&DataDefinition::x_column, "No valid x coordinate values were read");
    refused(&DataDefinition::y_column, "No valid x coordinate values were read");
    refused(&DataDefinition::z_column, "No valid z coordinate values were read");
    refused(&DataDefinition::dtm_column, "No valid DTM values were read");
    refused(&DataDefinition::mag_column, "No valid mag values were read");
    refused(&DataDefinition::grav_column, "No valid gravity values were read");
}

TEST(Load, a_z_column_that_is_the_x_column_gets_nothing) {
    Survey survey("0 0 1\n10 0 2\n");
    survey.workspace.definition.z_column = 1;
    expect_refused(survey, "No valid z coordinate values were read");
}

TEST(Load, a_line_without_length_is_told_once_and_keeps_its_stations) {
    Survey survey("0 0 1\n10 0 2\n0 0 3\n");
    EXPECT_EQ(load(survey), 1);
    EXPECT_THAT(survey.prompts.messages, ElementsAre("The data profile is not long enough to model"));
    EXPECT_EQ(survey.workspace.station_count, 3);
    EXPECT_EQ(survey.workspace.distances.count(), 3);
    EXPECT_EQ(survey.workspace.first_station, 1);
    EXPECT_EQ(survey.workspace.last_station, 3);
}

TEST(Load, a_failed_load_leaves_a_workspace_that_loads_again) {
    Survey survey("0 0 1\n10 0 1e39\n");
    EXPECT_EQ(load(survey), -1);
    EXPECT_EQ(survey.workspace.station_count, 0);
    survey.set_file("0 0 1\n10 0 2\n");
    EXPECT_EQ(load(survey), 0);
    EXPECT_EQ(survey.workspace.station_count, 2);
}

TEST(Load, a_window_is_kept_over_resampling) {
    Survey survey("0 0 1\n50 0 2\n100 0 3\n");
    Workspace& w = survey.workspace;
    w.station_spacing = 10;
    w.first_distance = 20;
    w.last_distance = 60;
    EXPECT_EQ(load(survey), 0);
    EXPECT_EQ(w.first_station, 3);
    EXPECT_EQ(w.last_station, 7);
    // A new spacing drops the two numbers; the distances find the same part of the line.
    w.station_spacing = 5;
    w.first_station = w.last_station = 0;
    EXPECT_EQ(load(survey), 0);
    EXPECT_EQ(w.first_station, 5);
    EXPECT_EQ(w.last_station, 13);
}

TEST(Load, a_window_of_one_station_becomes_the_whole_line) {
    Survey survey("0 0 1\n10 0 2\n");
    survey.workspace.first_station = survey.workspace.last_station = 1;
    EXPECT_EQ(load(survey), 0);
    EXPECT_EQ(survey.workspace.first_station, 1);
    EXPECT_EQ(survey.workspace.last_station, 2);
}

TEST(Load, a_window_that_lies_beyond_the_line_is_reset) {
    Survey survey("0 0 1\n10 0 2\n20 0 3\n");
    survey.workspace.first_distance = 500;
    survey.workspace.last_distance = 600;
    EXPECT_EQ(load(survey), 0);
    EXPECT_EQ(survey.workspace.first_station, 2);
    EXPECT_EQ(survey.workspace.last_station, 3);
    EXPECT_EQ(survey.workspace.last_distance, 20);
}

TEST(Load, gravity_without_a_magnetic_column) {
    Survey survey("0 0 1\n10 0 2\n");
    survey.workspace.definition.mag_column = 0;
    survey.workspace.definition.grav_column = 3;
    EXPECT_EQ(load(survey), 0);
    EXPECT_EQ(survey.workspace.grav.mean, 1.5F);
    EXPECT_EQ(survey.workspace.grav.max, 2);
}

TEST(Load, a_line_in_memory_is_what_its_table_is) {
    Survey file("20.5 1 40 30 300.25\n10 0 nan 29 200\n0 0 38 28 -1e32\n5 0.25 38 28 150\n");
    DataDefinition& columns = file.workspace.definition;
    columns.x_column = 1;
    columns.y_column = 2;
    columns.z_column = 3;
    columns.dtm_column = 4;
    columns.mag_column = 5;
    file.set_file("20.5 1 40 30 300.25\n10 0 -1e32 29 200\n0 0 38 28 -1e32\n5 0.25 38 28 150\n");
    ASSERT_EQ(load(file), 0);
    Survey memory("");
    const double nan = std::nan("");
    const std::vector<double> east{20.5, 10, 0, 5}, north{1, 0, 0, 0.25}, sensor{40, nan, 38, 38},
        ground{30, 29, 28, 28}, mag{300.25, 200, nan, 150};
    RowNotes notes;
    ASSERT_EQ(load_columns({east, north, sensor, ground, mag, {}}, memory.workspace, memory.prompts, &notes),
              0);
    EXPECT_THAT(memory.prompts.messages, IsEmpty());
    EXPECT_EQ(memory.workspace.stations, file.workspace.stations);
    EXPECT_EQ(memory.workspace.distances, file.workspace.distances);
    EXPECT_EQ(memory.workspace.mag.data, file.workspace.mag.data);
    EXPECT_EQ(memory.workspace.mag.base, file.workspace.mag.base);
    EXPECT_EQ(memory.workspace.mag.min, file.workspace.mag.min);
    EXPECT_EQ(memory.workspace.definition.mag_column, 5);
    EXPECT_EQ(notes.missing_sensor_heights, 1);
    EXPECT_EQ(notes.records, 4);
}

TEST(Load, a_line_in_memory_that_is_none_is_refused) {
    Survey survey("");
    const std::vector<double> good{0, 10, 20}, shorter{1, 2}, beyond{0, 1e300, 2};
    const auto refused = [&](const LineColumns& line) {
        survey.prompts.messages.clear();
        EXPECT_EQ(load_columns(line, survey.workspace, survey.prompts), -1);
        EXPECT_EQ(survey.workspace.station_count, 0);
        return survey.prompts.messages.empty() ? std::string() : survey.prompts.messages.front();
    };
    EXPECT_EQ(refused({good, good, {}, {}, shorter, {}}),
              "The line cannot be taken: magnetics has 2 values for 3 stations");
    EXPECT_EQ(refused({good, good, {}, {}, beyond, {}}),
              "The line cannot be taken: magnetics of station 2 does not fit single precision");
    EXPECT_EQ(refused({}), "");
}

}  // namespace
}  // namespace anomalis::intake
