#include "model/burial_depth.h"

#include <gtest/gtest.h>

#include "support/survey.h"

namespace anomalis::model {
namespace {

/// Stations at distances 0, 10, 30 with the ground at 100, 110, 90, and one body.
Workspace hill(float distance, std::int32_t type = thick_sheet) {
    ScriptedPrompts prompts;
    Workspace w;
    initialise_workspace(w, prompts);
    set_stations(w, {{0, 0, 0, 0, 100}, {10, 0, 0, 0, 110}, {30, 0, 0, 0, 90}});
    w.distances.assign(3);
    w.distances[2] = 10;
    w.distances[3] = 30;
    w.definition.dtm_column = 5;
    w.surface_elevation = 500;
    w.body_count = 1;
    w.body(1).type = type;
    w.body(1).distance.value = distance;
    w.body(1).top.value = 7;
    w.body(1).width.value = 20;
    return w;
}

/// The ground that the body stands under.
float ground_under(float distance) {
    Workspace w = hill(distance);
    set_burial_depths(w);
    return w.body(1).top_elevation + 7;
}

TEST(BurialDepth, a_sensor_column_alone_does_not_tell_the_ground) {
    Workspace w = hill(5);
    EXPECT_TRUE(ground_is_known(w));
    w.definition.dtm_column = 0;
    w.definition.z_column = 4;
    EXPECT_FALSE(ground_is_known(w));
    w.definition.z_column = 0;
    EXPECT_TRUE(ground_is_known(w)) << "the sensor is carried over the surface elevation";
}

TEST(BurialDepth, ground_is_interpolated_between_the_neighbours) {
    EXPECT_FLOAT_EQ(ground_under(0), 100);
    EXPECT_FLOAT_EQ(ground_under(5), 105);
    EXPECT_FLOAT_EQ(ground_under(10), 110);
    EXPECT_FLOAT_EQ(ground_under(20), 100);
    EXPECT_FLOAT_EQ(ground_under(30), 90);
}

TEST(BurialDepth, beyond_the_ends_the_last_interval_goes_on) {
    EXPECT_FLOAT_EQ(ground_under(50), 70);
    EXPECT_FLOAT_EQ(ground_under(-10), 90);
}

TEST(BurialDepth, without_a_ground_column_the_surface_elevation_counts) {
    Workspace w = hill(5);
    w.definition.dtm_column = 0;
    set_burial_depths(w);
    EXPECT_FLOAT_EQ(w.body(1).top_elevation, 500 - 7);
}

TEST(BurialDepth, a_pipe_lies_half_its_width_deeper) {
    Workspace w = hill(5, pipe);
    set_burial_depths(w);
    EXPECT_FLOAT_EQ(w.body(1).top_elevation, 105 - 7 - 10);
    Workspace cable = hill(5, wire);
    set_burial_depths(cable);
    EXPECT_FLOAT_EQ(cable.body(1).top_elevation, 105 - 7);
}

TEST(BurialDepth, bodies_above_the_count_stay) {
    Workspace w = hill(5);
    w.body(2).top_elevation = -1;
    set_burial_depths(w);
    EXPECT_EQ(w.body(2).top_elevation, -1);
}

TEST(BurialDepth, a_single_station_has_its_own_ground) {
    Workspace w = hill(5);
    set_stations(w, {{0, 0, 0, 0, 100}});
    w.distances.assign(1);
    set_burial_depths(w);
    EXPECT_FLOAT_EQ(w.body(1).top_elevation, 100 - 7);
}

TEST(BurialDepth, of_neighbours_at_one_distance_the_nearer_ground_counts) {
    Workspace w = hill(40);
    w.distances[3] = 10;
    set_burial_depths(w);
    EXPECT_FLOAT_EQ(w.body(1).top_elevation, 110 - 7);
}

}  // namespace
}  // namespace anomalis::model
