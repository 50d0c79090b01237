#include "intake/location_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "intake/read_rows.h"
#include "support/survey.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(LocationFile, reading_counts_and_finds_the_ranges) {
    Survey survey("5 50 500 1 2 3\n4 60 400 0 2 9\n6 40 600 7 1 1\n");
    Workspace& w = survey.workspace;
    w.definition.z_column = 4;
    w.definition.dtm_column = 5;
    w.definition.grav_column = 6;
    DataRows rows;
    EXPECT_EQ(read_location_file(w, rows, survey.prompts), 0);
    EXPECT_EQ(w.station_count, 3);
    EXPECT_EQ(w.x_min, 4);
    EXPECT_EQ(w.x_max, 6);
    EXPECT_EQ(w.y_min, 40);
    EXPECT_EQ(w.y_max, 60);
    EXPECT_EQ(w.z_min, 0);
    EXPECT_EQ(w.z_max, 7);
    EXPECT_EQ(w.dtm_min, 1);
    EXPECT_EQ(w.dtm_max, 2);
    EXPECT_EQ(w.mag.min, 400);
    EXPECT_EQ(w.mag.max, 600);
    EXPECT_EQ(w.grav.min, 1);
    EXPECT_EQ(w.grav.max, 9);
}

TEST(LocationFile, ranges_of_absent_columns_hold_the_mark_of_no_value) {
    Survey survey("1 2 3\n4 5 6\n");
    DataRows rows;
    EXPECT_EQ(read_location_file(survey.workspace, rows, survey.prompts), 0);
    EXPECT_EQ(survey.workspace.z_min, -1e32F);
    EXPECT_EQ(survey.workspace.z_max, -1e32F);
    EXPECT_EQ(survey.workspace.dtm_max, -1e32F);
    EXPECT_EQ(survey.workspace.grav.min, -1e32F);
}

TEST(LocationFile, the_rows_fill_the_stations) {
    Survey survey("5 50 500 1 2 3\n4 60 400 0 2 9\n");
    Workspace& w = survey.workspace;
    w.definition.z_column = 4;
    w.definition.dtm_column = 5;
    w.definition.grav_column = 6;
    DataRows rows;
    ASSERT_EQ(read_location_file(w, rows, survey.prompts), 0);
    ASSERT_EQ(fill_stations(rows, w, survey.prompts), 0);
    EXPECT_EQ(w.stations.rows(), 2);
    EXPECT_EQ(w.mag.data.stations(), 2);
    EXPECT_EQ(w.grav.data.stations(), 2);
    const auto row = [&](int i) {
        return std::vector{w.stations(i, 0), w.stations(i, 1), w.stations(i, 2), w.stations(i, 3),
                           w.stations(i, 4)};
    };
    EXPECT_THAT(row(1), ElementsAre(0, 5, 50, 1, 2));
    EXPECT_THAT(row(2), ElementsAre(0, 4, 60, 0, 2));
    EXPECT_EQ(w.mag.data(2, row_raw, stage_observed), 400);
    EXPECT_EQ(w.grav.data(2, row_raw, stage_observed), 9);
    EXPECT_EQ(w.mag.data(2, row_raw, stage_calculated), 0);
}

TEST(LocationFile, without_a_record_nothing_changes) {
    Survey survey("");
    survey.workspace.station_count = 7;
    DataRows rows;
    EXPECT_EQ(read_location_file(survey.workspace, rows, survey.prompts), 0);
    EXPECT_EQ(survey.workspace.station_count, 7);
    EXPECT_THAT(survey.prompts.messages, IsEmpty());
}

TEST(LocationFile, a_value_too_large_for_a_single_is_told_with_its_line) {
    Survey survey("1 2 3\n4 5 1e39\n");
    DataRows rows;
    EXPECT_EQ(read_location_file(survey.workspace, rows, survey.prompts), -1);
    EXPECT_THAT(survey.prompts.messages,
                ElementsAre("An error occurred while reading the location file : Overflow (" +
                            survey.workspace.definition.data_file + ", line 2)"));
}

TEST(LocationFile, a_missing_reading_too_large_for_a_single_is_told_when_the_stations_are_filled) {
    Survey survey("1 2 3\n4 5 -1e39\n");
    DataRows rows;
    EXPECT_EQ(read_location_file(survey.workspace, rows, survey.prompts), 0);
    EXPECT_THAT(survey.prompts.messages, IsEmpty());
    EXPECT_EQ(fill_stations(rows, survey.workspace, survey.prompts), -1);
    EXPECT_THAT(survey.prompts.messages,
                ElementsAre("An error occurred while reading the location file : Overflow (" +
                            survey.workspace.definition.data_file + ", line 2)"));
}

TEST(LocationFile, a_missing_file_is_told) {
    Survey survey;
    survey.workspace.definition.data_file = survey.folder.path("none.dat");
    DataRows rows;
    EXPECT_EQ(read_location_file(survey.workspace, rows, survey.prompts), -1);
    EXPECT_THAT(
        survey.prompts.messages,
        ElementsAre("An error occurred while reading the location file : No such file or directory (" +
                    survey.folder.path("none.dat") + ")"));
}

}  // namespace
}  // namespace anomalis::intake
