#include "intake/profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/survey.h"

namespace anomalis::intake {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pointwise;

const char* const too_short = "The data profile is not long enough to model";

class Profile : public ::testing::Test {
  protected:
    Profile() {
        initialise_workspace(workspace, prompts);
        workspace.definition.mag_column = 5;
    }
    int set_up(std::initializer_list<TestStation> stations) {
        set_stations(workspace, stations);
        return setup_profile_coordinates(workspace, prompts);
    }
    void expect_equal_counts(int count) const {
        EXPECT_EQ(workspace.station_count, count);
        EXPECT_EQ(workspace.stations.rows(), count);
        EXPECT_EQ(workspace.mag.data.stations(), count);
        EXPECT_EQ(workspace.grav.data.stations(), count);
        EXPECT_EQ(workspace.mag.work.stations(), count);
        EXPECT_EQ(workspace.grav.work.stations(), count);
        EXPECT_EQ(workspace.station_spare.count(), count);
        EXPECT_EQ(workspace.distances.count(), count);
    }

    ScriptedPrompts prompts;
    Workspace workspace;
};

TEST_F(Profile, distances_rise_from_0) {
    EXPECT_EQ(set_up({{100, 50}, {110, 50}, {125, 50}}), 0);
    EXPECT_THAT(workspace.distances.span(), ElementsAre(0, 10, 25));
    expect_equal_counts(3);
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST_F(Profile, a_line_to_the_south_west_is_reversed) {
    EXPECT_EQ(set_up({{100, 100, 1, 11, 21, 31}, {60, 80, 2, 12, 22, 32}, {0, 0, 3, 13, 23, 33}}), 0);
    EXPECT_EQ(workspace.stations(1, column_east), 0);
    EXPECT_EQ(workspace.stations(3, column_north), 100);
    EXPECT_EQ(workspace.stations(1, column_sensor), 13);
    EXPECT_EQ(workspace.stations(1, column_ground), 23);
    EXPECT_EQ(workspace.mag.data(1, row_raw, stage_observed), 3);
    EXPECT_EQ(workspace.grav.data(3, row_raw, stage_observed), 31);
    EXPECT_EQ(workspace.origin_east, 0);
    EXPECT_NEAR(workspace.distances.last(), std::sqrt(20000.0), 1e-10);
}

TEST_F(Profile, equal_parts_with_a_negative_north_part_reverse) {
    EXPECT_EQ(set_up({{0, 100}, {100, 0}}), 0);
    EXPECT_EQ(workspace.stations(1, column_east), 100);
    EXPECT_EQ(workspace.stations(2, column_east), 0);
}

TEST_F(Profile, is_the_same_from_either_end) {
    Workspace other = workspace;
    EXPECT_EQ(set_up({{0, 0, 1}, {30, 12, 2}, {70, 18, 5}, {110, 40, 4}}), 0);
    set_stations(other, {{110, 40, 4}, {70, 18, 5}, {30, 12, 2}, {0, 0, 1}});
    EXPECT_EQ(setup_profile_coordinates(other, prompts), 0);
    EXPECT_EQ(workspace.stations, other.stations);
    EXPECT_EQ(workspace.mag.data, other.mag.data);
    EXPECT_EQ(workspace.distances, other.distances);
    EXPECT_EQ(workspace.azimuth, other.azimuth);
}

TEST_F(Profile, a_loop_has_no_length) {
    EXPECT_EQ(set_up({{0, 0}, {100, 0}, {100, 100}, {0, 0}}), -1);
    EXPECT_THAT(prompts.messages, ElementsAre(too_short));
    expect_equal_counts(4);
    EXPECT_EQ(workspace.distances.last(), 0);
}

TEST_F(Profile, one_station_has_no_length) {
    EXPECT_EQ(set_up({{5, 5}}), -1);
    EXPECT_THAT(prompts.messages, ElementsAre(too_short));
    expect_equal_counts(1);
}

TEST_F(Profile, a_line_that_collapses_when_it_is_merged_keeps_the_status) {
    EXPECT_EQ(set_up({{5000000.01, 0}, {5000000.01, 0}, {5000000.02, 0}}), 0);
    EXPECT_THAT(prompts.messages, ElementsAre(too_short));
    expect_equal_counts(3);
    EXPECT_EQ(workspace.distances.last(), 0);
}

TEST_F(Profile, an_unset_base_level_becomes_the_mean) {
    EXPECT_EQ(workspace.grav.base, 0);
    workspace.definition.grav_column = 6;
    EXPECT_EQ(set_up({{0, 0, 10, 0, 0, 1}, {10, 0, 20, 0, 0, 2}, {20, 0, 60, 0, 0, 6}}), 0);
    EXPECT_EQ(workspace.mag.mean, 30);
    EXPECT_EQ(workspace.mag.base, 30);
    EXPECT_EQ(workspace.grav.mean, 3);
    EXPECT_EQ(workspace.grav.base, 0);
}

TEST_F(Profile, a_given_base_level_stays) {
    workspace.mag.base = 55;
    EXPECT_EQ(set_up({{0, 0, 10}, {10, 0, 20}}), 0);
    EXPECT_EQ(workspace.mag.mean, 15);
    EXPECT_EQ(workspace.mag.base, 55);
}

TEST_F(Profile, a_channel_without_a_column_keeps_its_levels) {
    workspace.grav.base = unset;
    workspace.grav.mean = 4;
    EXPECT_EQ(set_up({{0, 0, 10, 0, 0, 7}, {10, 0, 20, 0, 0, 7}}), 0);
    EXPECT_EQ(workspace.grav.base, unset);
    EXPECT_EQ(workspace.grav.mean, 4);
}

TEST_F(Profile, means_are_taken_before_the_stations_are_resampled) {
    workspace.station_spacing = 1;
    EXPECT_EQ(set_up({{0, 0, 0}, {1, 0, 10}, {100, 0, 20}}), 0);
    EXPECT_EQ(workspace.mag.mean, 10);
    expect_equal_counts(101);
}

TEST_F(Profile, merges_then_resamples) {
    workspace.min_station_spacing = 5;
    workspace.station_spacing = 10;
    EXPECT_EQ(set_up({{0, 0, 0}, {9, 0, 9}, {10, 0, 10}, {14, 0, 14}, {20, 0, 20}, {40, 0, 40}}), 0);
    EXPECT_THAT(workspace.distances.span(), Pointwise(DoubleNear(1e-9), {0.0, 10.0, 20.0, 30.0, 40.0}));
    EXPECT_EQ(workspace.allocated_stations, 5);
    EXPECT_NEAR(workspace.mag.data(4, row_raw, stage_observed), 30, 1e-4);
}

TEST_F(Profile, coordinates_out_of_range_are_told_and_the_arrays_stay_equal) {
    EXPECT_EQ(set_up({{0, 0}, {1e200, 0}}), -1);
    EXPECT_THAT(prompts.messages,
                ElementsAre("An error occurred while setting up the profile coordinates : Overflow"));
    expect_equal_counts(2);
}

TEST_F(Profile, two_stations_at_one_distance_cannot_be_resampled) {
    workspace.station_spacing = 5;
    // The last station is kept where it stands, here level with the one before it.
    EXPECT_EQ(set_up({{0, 0}, {20, 50}, {20, 0}}), -1);
    EXPECT_THAT(prompts.messages,
                ElementsAre("An error occurred while setting up the profile coordinates : Division by zero"));
    expect_equal_counts(3);
    EXPECT_EQ(workspace.distances.last(), 20);
}

}  // namespace
}  // namespace anomalis::intake
