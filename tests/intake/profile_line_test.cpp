#include "intake/profile_line.h"

#include <cmath>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "support/survey.h"

namespace anomalis::intake {
namespace {

ProfileLine line_to(double east, double north) {
    Workspace workspace;
    set_stations(workspace, {{100, 200}, {999, 999}, {100 + east, 200 + north}});
    return profile_line(workspace.stations, 3);
}

Workspace workspace_along(double east, double north) {
    Workspace workspace;
    set_stations(workspace, {{100, 200}, {100 + east, 200 + north}});
    set_line_geometry(profile_line(workspace.stations, 2), workspace.stations, workspace);
    return workspace;
}

TEST(ProfileLine, leads_from_the_first_station_to_the_last) {
    const ProfileLine line = line_to(-30, 40);
    EXPECT_EQ(line.dx, -30);
    EXPECT_EQ(line.dy, 40);
    EXPECT_EQ(line.length, 50);
    EXPECT_TRUE(line.long_enough());
    EXPECT_FALSE(line_to(0, 0).long_enough());
    EXPECT_FALSE(profile_line(StationTable(), 0).long_enough());
}

TEST(ProfileLine, a_length_out_of_range_is_an_overflow) {
    EXPECT_THROW(line_to(1e200, 0), Fault);
}

TEST(ProfileLine, runs_east_when_it_is_more_east_west_and_north_otherwise) {
    EXPECT_FALSE(line_to(10, -9).runs_backwards());
    EXPECT_TRUE(line_to(-10, 9).runs_backwards());
    EXPECT_FALSE(line_to(-9, 10).runs_backwards());
    EXPECT_TRUE(line_to(9, -10).runs_backwards());
    EXPECT_FALSE(line_to(0, 1).runs_backwards());
    EXPECT_FALSE(line_to(1, 0).runs_backwards());
}

TEST(ProfileLine, equal_parts_count_as_north_south) {
    EXPECT_FALSE(line_to(10, 10).runs_backwards());
    EXPECT_FALSE(line_to(-10, 10).runs_backwards());
    EXPECT_TRUE(line_to(10, -10).runs_backwards());
    EXPECT_TRUE(line_to(-10, -10).runs_backwards());
}

TEST(LineGeometry, normal_and_constant_describe_the_line) {
    const Workspace w = workspace_along(300, 400);
    EXPECT_EQ(w.origin_east, 100);
    EXPECT_EQ(w.origin_north, 200);
    EXPECT_DOUBLE_EQ(w.direction_x, -0.8);
    EXPECT_DOUBLE_EQ(w.direction_y, 0.6);
    for (const double t : {0.0, 0.5, 1.0})
        EXPECT_NEAR(w.direction_x * (100 + 300 * t) + w.direction_y * (200 + 400 * t) + w.line_constant, 0,
                    1e-10);
}

TEST(LineGeometry, azimuth_is_the_bearing_less_180_degrees) {
    const auto degrees = [](double east, double north) {
        return workspace_along(east, north).azimuth * 180 / 3.14159265358979;
    };
    EXPECT_NEAR(degrees(1, 1), 45 - 180, 1e-5);
    EXPECT_NEAR(degrees(-1, 1), 135, 1e-5);  // bearing 315
    EXPECT_NEAR(degrees(1, -0.5), 116.565051 - 180, 1e-5);
    EXPECT_NEAR(degrees(1, 0), 90 - 180, 1e-5);
    EXPECT_NEAR(std::abs(degrees(0, 1)), 180, 1e-5);
}

TEST(LineGeometry, distances_grow_along_the_line_and_do_not_see_offsets) {
    const Workspace w = workspace_along(300, 400);
    EXPECT_DOUBLE_EQ(distance_along(w, 100, 200), 0);
    EXPECT_DOUBLE_EQ(distance_along(w, 400, 600), 500);
    EXPECT_NEAR(distance_along(w, 100 - 80, 200 + 60), 0, 1e-12);
    EXPECT_DOUBLE_EQ(distance_along(w, 100 - 30, 200 - 40), -50);
    EXPECT_THROW(distance_along(w, 1.7e308, 1.7e308), Fault);
}

}  // namespace
}  // namespace anomalis::intake
