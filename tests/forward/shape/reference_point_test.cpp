#include "forward/shape/reference_point.h"

#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {

namespace {

struct Place {
    double east = -1, north = -2;
};

Place place_at(const Workspace& workspace, double distance) {
    Place place;
    update_body_reference_point(workspace, distance, place.east, place.north);
    return place;
}

}  // namespace

TEST(ReferencePoint, lies_between_its_two_stations) {
    const Line line(5, 10, 90);
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 25).east, 350025);
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 25).north, 6500000);
}

TEST(ReferencePoint, at_a_station_is_that_station) {
    Line line(5, 10, 90);
    line.workspace.stations(3, column_north) += 7;
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 20).east, 350020);
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 20).north, 6500007);
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 40).east, 350040);
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 0).east, 350000);
}

TEST(ReferencePoint, before_the_first_station_goes_back_along_the_first_segment) {
    const Line line(5, 10, 90);
    EXPECT_DOUBLE_EQ(place_at(line.workspace, -35).east, 349965);
}

TEST(ReferencePoint, beyond_the_last_station_goes_on_along_the_last_segment) {
    Line line(5, 10, 90);
    line.workspace.stations(5, column_north) += 10;
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 60).east, 350060);
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 60).north, 6500030);
}

TEST(ReferencePoint, between_stations_of_one_distance_is_the_first_of_them) {
    Line line(4, 10, 90);
    for (int i = 1; i <= 4; ++i) line.workspace.distances[i] = 0;
    EXPECT_DOUBLE_EQ(place_at(line.workspace, 5).east, 350020);
}

TEST(ReferencePoint, the_nearest_distance_finds_its_own_place_again) {
    Line line(6, 10, 90);
    line.workspace.stations(3, column_north) += 7;
    line.workspace.stations(6, column_north) -= 4;
    for (const double distance : {-35.0, 0.0, 4.0, 20.0, 23.0, 41.5, 50.0, 80.0}) {
        const Place place = place_at(line.workspace, distance);
        const auto found = nearest_distance(line.workspace, place.east, place.north);
        ASSERT_TRUE(found.has_value());
        EXPECT_NEAR(*found, distance, 1e-6);
    }
    const Line straight(6, 10, 90);
    EXPECT_NEAR(*nearest_distance(straight.workspace, 350015, 6500300), 15, 1e-9) << "beside the line";
    line.workspace.station_count = 1;
    EXPECT_FALSE(nearest_distance(line.workspace, 350000, 6500000).has_value());
}

TEST(ReferencePoint, needs_two_stations) {
    for (const int count : {0, 1}) {
        Line line(2);
        line.workspace.station_count = count;
        EXPECT_EQ(place_at(line.workspace, 5).east, -1);
        EXPECT_EQ(place_at(line.workspace, 5).north, -2);
    }
}

TEST(ReferencePoint, of_a_distance_that_is_no_number_is_none) {
    const Line line(5);
    EXPECT_TRUE(std::isnan(place_at(line.workspace, std::nan("")).north));
}

}  // namespace anomalis::forward
