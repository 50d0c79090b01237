#include "core/gaps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/faults.h"
#include "intake/load.h"
#include "intake/row_notes.h"
#include "support/survey.h"

// Missing readings and gaps on the way from the file to the profile.
namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::FloatEq;
using ::testing::HasSubstr;

constexpr float none = -1e32F;

/// East, north, magnetics, sensor height and gravity in columns 1 to 5.
struct Line : Survey {
    explicit Line(std::string_view contents) : Survey(contents) {
        workspace.definition.z_column = 4;
        workspace.definition.grav_column = 5;
    }
    int load() { return load_locations(workspace, prompts, &notes); }
    std::vector<float> mag() { return row(workspace.mag); }
    std::vector<float> grav() { return row(workspace.grav); }
    static std::vector<float> row(const Channel& channel) {
        const auto readings = channel.data.row(row_raw, stage_observed);
        return {readings.begin(), readings.end()};
    }
    std::vector<double> sensors() {
        const auto heights = workspace.stations.column(column_sensor);
        return {heights.begin(), heights.end()};
    }
    RowNotes notes;
};

TEST(GapsOfALoad, a_missing_reading_is_missing_in_its_channel_alone_and_in_no_mean_or_range) {
    Line line("0 0 10 50 -1e32\n10 0 -1e32 50 2\n20 0 40 50 3\n30 0 70 50 4\n");
    Workspace& w = line.workspace;
    ASSERT_EQ(line.load(), 0);
    EXPECT_THAT(line.prompts.messages, ::testing::IsEmpty());
    EXPECT_THAT(line.mag(), ElementsAre(10, none, 40, 70));
    EXPECT_THAT(line.grav(), ElementsAre(none, 2, 3, 4));
    EXPECT_EQ(w.mag.base, 40);
    EXPECT_EQ(w.mag.mean, 40);
    EXPECT_EQ(w.grav.mean, 3);
    EXPECT_EQ(w.mag.min, 10);
    EXPECT_EQ(w.mag.max, 70);
    EXPECT_EQ(w.grav.min, 2);
    EXPECT_EQ(w.grav.max, 4);
    EXPECT_EQ(count_missing(w, channel_mag), 1);
    EXPECT_EQ(count_missing(w, channel_grav), 1);
}

TEST(GapsOfALoad, whatever_stands_below_the_mark_is_missing) {
    Line line("0 0 -2e30 50 1\n10 0 20 50 2\n20 0 -3e38 50 3\n30 0 30 50 4\n");
    ASSERT_EQ(line.load(), 0);
    EXPECT_THAT(line.mag(), ElementsAre(none, 20, none, 30));
}

TEST(GapsOfALoad, a_channel_whose_readings_are_all_missing_was_not_read) {
    Line line("0 0 -1e32 50 1\n10 0 -1e32 50 2\n");
    EXPECT_EQ(line.load(), -1);
    EXPECT_THAT(line.prompts.messages, ElementsAre("No valid mag values were read"));
    Line heights("0 0 1 -1e32 1\n10 0 2 -1e32 2\n");
    EXPECT_EQ(heights.load(), -1);
    EXPECT_THAT(heights.prompts.messages, ElementsAre("No valid z coordinate values were read"));
}

TEST(GapsOfALoad, a_first_row_that_lacks_a_column_still_ends_the_load) {
    Line line("0 0\n10 0 5 50 2\n20 0 6 50 2\n");
    EXPECT_EQ(line.load(), -1);
    EXPECT_THAT(line.prompts.messages, ElementsAre("No valid z coordinate values were read"));
}

TEST(GapsOfALoad, a_missing_coordinate_is_no_place) {
    Line line("0 0 1 50 1\n-1e32 0 2 50 2\n20 0 3 50 3\n");
    EXPECT_EQ(line.load(), -1);
    EXPECT_THAT(line.prompts.messages, ElementsAre("No valid x coordinate values were read"));
}

TEST(GapsOfALoad, missing_heights_are_those_of_the_straight_line_between_their_neighbours) {
    Line line("0 0 1 -1e32 1\n10 0 2 50 1\n20 0 3 -1e32 1\n40 0 4 80 1\n50 0 5 -1e32 1\n");
    ASSERT_EQ(line.load(), 0);
    EXPECT_THAT(line.sensors(), ElementsAre(50, 50, 60, 80, 80));
    Faults faults;
    tell_rows(line.notes, "a.xyz", faults);
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_THAT(faults.entries().front().text,
                HasSubstr("the sensor height is missing in 3 rows and is interpolated "
                          "along the line there"));
}

TEST(GapsOfALoad, merged_stations_take_the_mean_of_the_readings_that_are_there) {
    Line line("0 0 10 50 1\n4 0 20 -1e32 -1e32\n8 0 -1e32 60 -1e32\n20 0 40 70 4\n");
    line.workspace.min_station_spacing = 5;
    ASSERT_EQ(line.load(), 0);
    EXPECT_THAT(line.workspace.distances.span(), ElementsAre(0, 6, 20));
    EXPECT_THAT(line.mag(), ElementsAre(10, 20, 40));
    EXPECT_THAT(line.sensors(), ElementsAre(50, 60, 70));
    EXPECT_THAT(line.grav(), ElementsAre(1, none, 4));
}

TEST(GapsOfALoad, stations_are_not_merged_over_a_gap) {
    const char* rows =
        "0 0 10 50 1\n10 0 20 50 1\n12 0 30 50 1\n110 0 40 50 1\n120 0 50 50 1\n130 0 60 50 1\n";
    Line line(rows);
    line.workspace.min_station_spacing = 5;
    ASSERT_EQ(line.load(), 0);
    EXPECT_THAT(line.workspace.distances.span(), ElementsAre(0, 10, 61, 120, 130));
    line.workspace.gap_distance = 30;
    ASSERT_EQ(line.load(), 0);
    EXPECT_THAT(line.workspace.distances.span(), ElementsAre(0, 10, 110, 120, 130));
    EXPECT_THAT(line.mag(), ElementsAre(10, 20, 40, 50, 60));
}

TEST(GapsOfALoad, a_spline_goes_over_a_missing_reading_and_not_over_a_gap) {
    // A parabola of the distance; readings from 60 to 90 m are missing.
    Line line(
        "0 0 0 50 0\n10 0 1 51 1\n20 0 -1e32 52 4\n30 0 9 53 9\n40 0 16 54 16\n50 0 25 55 25\n"
        "60 0 -1e32 56 36\n70 0 -1e32 57 49\n80 0 -1e32 58 64\n90 0 -1e32 59 81\n100 0 100 60 100\n"
        "110 0 121 61 121\n120 0 144 62 144\n");
    line.workspace.station_spacing = 5;
    ASSERT_EQ(line.load(), 0);
    const std::vector<float> mag = line.mag();
    ASSERT_EQ(mag.size(), 25U);
    for (std::size_t i = 0; i < mag.size(); ++i) {
        const double x = 5.0 * static_cast<double>(i);
        if (x > 50 && x < 100) {
            EXPECT_EQ(mag[i], none) << x;
        } else {
            EXPECT_NEAR(mag[i], x * x / 100, 1e-4) << x;
        }
        EXPECT_NEAR(line.grav()[i], x * x / 100, 1e-4) << x;
        EXPECT_NEAR(line.sensors()[i], 50 + x / 10, 1e-9) << x;
    }
    EXPECT_EQ(channel_stretches(line.workspace, channel_mag), (std::vector<Stretch>{{1, 11}, {21, 25}}));
}

TEST(GapsOfALoad, over_a_distance_that_is_a_gap_readings_are_missing_and_heights_go_straight) {
    Line line("0 0 0 50 0\n10 0 1 60 1\n20 0 4 80 4\n120 0 9 30 9\n130 0 16 40 1\n140 0 25 55 3\n");
    line.workspace.station_spacing = 10;
    line.workspace.gap_distance = 30;
    ASSERT_EQ(line.load(), 0);
    ASSERT_EQ(line.workspace.station_count, 15);
    for (std::size_t i = 3; i < 12; ++i) {
        EXPECT_EQ(line.mag()[i], none);
        EXPECT_NEAR(line.sensors()[i], 80 - 5.0 * (static_cast<double>(i) - 2), 1e-9);
        EXPECT_NEAR(line.workspace.stations(static_cast<int>(i) + 1, column_east),
                    10.0 * static_cast<double>(i), 1e-9);
    }
    EXPECT_THAT(line.mag()[12], FloatEq(9));
}

TEST(GapsOfALoad, a_reading_alone_in_a_gap_stays_at_the_nearest_station) {
    Line line(
        "0 0 1 50 1\n10 0 2 50 1\n20 0 3 50 1\n104 0 7 50 1\n200 0 4 50 1\n210 0 5 50 1\n220 0 6 50 1\n");
    line.workspace.station_spacing = 10;
    line.workspace.gap_distance = 30;
    ASSERT_EQ(line.load(), 0);
    EXPECT_EQ(line.mag()[10], 7);
    EXPECT_EQ(line.mag()[9], none);
    EXPECT_EQ(line.mag()[11], none);
}

}  // namespace
}  // namespace anomalis::intake
