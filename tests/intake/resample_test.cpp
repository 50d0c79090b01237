#include "intake/resample.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/survey.h"

namespace anomalis::intake {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

/// Stations along east at these distances, mag a cubic of the distance, elevations a line.
Workspace profile_at(std::initializer_list<double> distances, float spacing) {
    Workspace w;
    const auto count = static_cast<int>(distances.size());
    w.station_count = count;
    w.stations.assign(count);
    w.mag.data.assign(count);
    w.grav.data.assign(count);
    w.distances.assign(count);
    int i = 0;
    for (const double d : distances) {
        ++i;
        w.distances[i] = d;
        w.stations(i, column_east) = 1000 + d;
        w.stations(i, column_north) = 2000 - d / 2;
        w.stations(i, column_sensor) = 50 + d / 10;
        w.stations(i, column_ground) = 40 + d / 5;
        w.mag.data(i, row_raw, stage_observed) = static_cast<float>(d * d * d / 1000 - d);
        w.grav.data(i, row_raw, stage_observed) = static_cast<float>(2 * d);
    }
    w.station_spacing = spacing;
    return w;
}

int points(double length, float spacing) {
    Workspace w = profile_at({0, length}, spacing);
    w.definition.mag_column = 0;
    resample_profile(w);
    EXPECT_EQ(w.station_count, w.stations.rows());
    EXPECT_EQ(w.station_count, w.mag.data.stations());
    EXPECT_EQ(w.station_count, w.grav.data.stations());
    EXPECT_EQ(w.station_count, w.distances.count());
    return w.station_count;
}

TEST(Resample, the_count_is_the_nearest_and_a_tie_goes_to_the_even) {
    EXPECT_EQ(points(100, 10), 11);
    EXPECT_EQ(points(104, 10), 11);
    EXPECT_EQ(points(105, 10), 12);  // 11.5
    EXPECT_EQ(points(115, 10), 12);  // 12.5
    EXPECT_EQ(points(106, 10), 12);
}

TEST(Resample, a_fine_spacing_is_widened_to_8192_intervals) {
    Workspace w = profile_at({0, 10000}, 1);
    resample_profile(w);
    EXPECT_EQ(w.station_count, 8193);
    EXPECT_EQ(w.station_spacing, static_cast<float>(10000.0 / 8192));
    EXPECT_EQ(points(8192, 1), 8193);
    EXPECT_EQ(points(8191, 1), 8192);
    EXPECT_EQ(points(1e30, 1e-38F), 8193);
}

TEST(Resample, distances_are_multiples_of_the_spacing) {
    Workspace w = profile_at({0, 13, 31, 40}, 7.5F);
    resample_profile(w);
    EXPECT_THAT(w.distances.span(), ElementsAre(0, 7.5, 15, 22.5, 30, 37.5));
}

TEST(Resample, every_quantity_with_a_column_follows_its_spline) {
    Workspace w = profile_at({0, 13, 31, 40, 77}, 7.5F);
    w.definition.z_column = 3;
    w.definition.dtm_column = 4;
    w.definition.mag_column = 5;
    w.definition.grav_column = 6;
    resample_profile(w);
    for (int i = 1; i <= w.station_count; ++i) {
        const double d = w.distances[i];
        EXPECT_NEAR(w.stations(i, column_east), 1000 + d, 1e-9);
        EXPECT_NEAR(w.stations(i, column_north), 2000 - d / 2, 1e-9);
        EXPECT_NEAR(w.stations(i, column_sensor), 50 + d / 10, 1e-9);
        EXPECT_NEAR(w.stations(i, column_ground), 40 + d / 5, 1e-9);
        EXPECT_NEAR(w.mag.data(i, row_raw, stage_observed), d * d * d / 1000 - d, 1e-3);
        EXPECT_NEAR(w.grav.data(i, row_raw, stage_observed), 2 * d, 1e-4);
    }
}

TEST(Resample, quantities_without_a_column_are_0) {
    Workspace w = profile_at({0, 13, 31, 40, 77}, 7.5F);
    w.definition.z_column = w.definition.dtm_column = w.definition.mag_column = w.definition.grav_column = 0;
    resample_profile(w);
    EXPECT_THAT(w.stations.column(column_sensor), Each(0));
    EXPECT_THAT(w.stations.column(column_ground), Each(0));
    EXPECT_THAT(w.mag.data.span(), Each(0));
    EXPECT_THAT(w.grav.data.span(), Each(0));
    EXPECT_NE(w.stations(1, column_east), 0);
}

TEST(Resample, a_spacing_beyond_the_line_leaves_one_station) {
    EXPECT_EQ(points(10, 100), 1);
}

TEST(Resample, two_stations_at_one_distance_are_a_fault_that_leaves_the_stations) {
    Workspace w = profile_at({0, 13, 31, 31}, 5);
    const Workspace before = w;
    EXPECT_THROW(resample_profile(w), Fault);
    EXPECT_EQ(w.stations, before.stations);
    EXPECT_EQ(w.mag.data, before.mag.data);
    EXPECT_EQ(w.distances, before.distances);
    EXPECT_EQ(w.station_count, before.station_count);
}

TEST(Resample, an_overshoot_out_of_range_is_an_overflow) {
    Workspace w = profile_at({0, 1, 2, 3, 4}, 0.25F);
    w.definition.mag_column = 5;
    for (const int i : {2, 3}) w.mag.data(i, row_raw, stage_observed) = 3.4e38F;
    EXPECT_THROW(resample_profile(w), Fault);
}

}  // namespace
}  // namespace anomalis::intake
