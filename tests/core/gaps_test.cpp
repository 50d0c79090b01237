#include "core/gaps.h"

#include <gtest/gtest.h>
#include <limits>

#include "core/model_mark.h"
#include "core/setting_fields.h"
#include "core/workspace.h"

namespace anomalis {

namespace {

constexpr float none = -1e32F;
using Stretches = std::vector<Stretch>;

/// Stations every 10 m with these magnetic readings.
Workspace line_of(const std::vector<float>& readings) {
    Workspace w;
    const auto count = static_cast<int>(readings.size());
    w.station_count = count;
    w.distances.assign(count);
    w.mag.data.assign(count);
    for (int i = 1; i <= count; ++i) {
        w.distances[i] = 10 * (i - 1);
        w.mag.data(i, row_raw, stage_observed) = readings[static_cast<std::size_t>(i - 1)];
    }
    return w;
}

}  // namespace

TEST(Gaps, a_reading_is_a_number_above_the_mark_of_a_missing_one) {
    EXPECT_TRUE(is_reading(0));
    EXPECT_TRUE(is_reading(-99999));
    EXPECT_FALSE(is_reading(-1e32));
    EXPECT_FALSE(is_reading(missing_limit));
    EXPECT_FALSE(is_reading(std::numeric_limits<double>::quiet_NaN()));
}

TEST(Gaps, a_line_without_any_is_one_stretch) {
    Workspace w = line_of({1, 2, 3, 4});
    EXPECT_TRUE(channel_gaps(w, channel_mag).none);
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 4}}));
    EXPECT_EQ(count_missing(w, channel_mag), 0);
    w.gap_distance = 30;
    EXPECT_TRUE(channel_gaps(w, channel_mag).none);
}

TEST(Gaps, a_channel_without_a_column_or_without_a_reading_has_no_stretch) {
    Workspace w = line_of({none, none});
    EXPECT_EQ(channel_stretches(w, channel_mag), Stretches{});
    EXPECT_EQ(count_missing(w, channel_mag), 2);
    EXPECT_EQ(channel_stretches(w, channel_grav), Stretches{});
    EXPECT_EQ(count_missing(w, channel_grav), 0);
    EXPECT_TRUE(reading_stations(w, channel_grav, 1, 2).empty());
}

TEST(Gaps, a_distance_above_the_one_that_counts_bounds_a_stretch) {
    Workspace w = line_of({1, 2, 3, 4});
    w.distances[3] = 51;
    w.distances[4] = 61;
    EXPECT_TRUE(channel_gaps(w, channel_mag).none) << "nobody said what a gap is";
    w.gap_distance = 41;
    EXPECT_TRUE(channel_gaps(w, channel_mag).none);
    w.gap_distance = 40;
    EXPECT_FALSE(channel_gaps(w, channel_mag).none);
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 2}, {3, 4}}));
    EXPECT_EQ(station_stretches(w), (Stretches{{1, 2}, {3, 4}}));
    w.min_station_spacing = 20;
    EXPECT_TRUE(channel_gaps(w, channel_mag).none) << "stations merged to 20 m stand farther apart";
}

TEST(Gaps, a_few_missing_readings_are_no_gap_but_more_than_three_spacings_are) {
    Workspace w = line_of({1, none, none, 4, 5, none, none, none, 9, 10});
    EXPECT_FALSE(channel_gaps(w, channel_mag).none);
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 5}, {9, 10}}));
    w.gap_distance = 30;
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 5}, {9, 10}}));
    w.gap_distance = 20;
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 1}, {4, 5}, {9, 10}}));
    EXPECT_EQ(station_stretches(w), (Stretches{{1, 10}}));
    EXPECT_EQ(reading_stations(w, channel_mag, 2, 9), (std::vector<int>{4, 5, 9}));
    EXPECT_EQ(count_missing(w, channel_mag), 5);
}

TEST(Gaps, missing_readings_at_the_ends_are_cut_off) {
    const Workspace w = line_of({none, 2, 3, none});
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{2, 3}}));
}

TEST(Gaps, a_channel_read_at_every_fifth_station_has_gaps_five_times_as_wide) {
    std::vector<float> readings(41, none);
    for (std::size_t i = 0; i < readings.size(); i += 5) readings[i] = 1;
    Workspace w = line_of(readings);
    w.gap_distance = 30;
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 41}}));
    for (const std::size_t i : {15U, 20U, 25U}) readings[i] = none;
    w = line_of(readings);
    w.gap_distance = 30;
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 11}, {31, 41}}));
}

TEST(Gaps, of_a_resampled_line_every_missing_reading_is_a_gap_and_no_spacing) {
    Workspace w = line_of({1, 2, none, 4, 5});
    w.gap_distance = 5;
    w.station_spacing = 10;
    EXPECT_EQ(channel_stretches(w, channel_mag), (Stretches{{1, 2}, {4, 5}}));
    EXPECT_EQ(station_stretches(w), (Stretches{{1, 5}}));
}

TEST(Gaps, the_distance_is_a_setting_that_goes_with_the_definitions) {
    Workspace from, to;
    from.gap_distance = 75;
    copy_definitions(from, to);
    EXPECT_EQ(to.gap_distance, 75);
}

TEST(Gaps, a_mark_of_a_model_changes_with_the_distance_but_not_for_a_line_that_knows_none) {
    Workspace w = line_of({1, 2, 3});
    w.last_station = 3;
    const std::string mark = model_mark(w);
    w.gap_distance = 30;
    EXPECT_FALSE(bears_mark(w, mark));
    w.gap_distance = 0;
    EXPECT_TRUE(bears_mark(w, mark));
}

TEST(Gaps, the_distance_is_part_of_how_a_line_was_read_only_where_stations_are_merged_or_resampled) {
    Workspace w, other;
    other.gap_distance = 30;
    EXPECT_EQ(line_inputs(w), line_inputs(other));
    w.station_spacing = other.station_spacing = 5;
    EXPECT_FALSE(line_inputs(w) == line_inputs(other));
}

}  // namespace anomalis
