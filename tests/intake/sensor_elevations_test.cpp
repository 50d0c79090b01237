#include <algorithm>
#include <gtest/gtest.h>

#include "intake/profile.h"
#include "support/survey.h"
#include "support/told.h"

namespace anomalis::intake {
namespace {

struct Elevations {
    double sensor, ground;
    bool operator==(const Elevations&) const = default;
};

/// One station that was read with sensor 50 and ground 30, under a surface at 200 and an offset of 10.
Workspace workspace_with(int z_column, int dtm_column) {
    Workspace w;
    set_stations(w, {{0, 0, 0, 50, 30}, {10, 0, 0, 60, 35}});
    w.definition.z_column = z_column;
    w.definition.dtm_column = dtm_column;
    w.surface_elevation = 200;
    w.sensor_offset = 10;
    w.mag.observed_filtered = w.mag.calculated_filtered = true;
    return w;
}

Elevations first_station(int z_column, int dtm_column) {
    Faults faults;
    Workspace w = workspace_with(z_column, dtm_column);
    setup_sensor_elevations(w, faults);
    EXPECT_TRUE(faults.empty());
    return {w.stations(1, column_sensor), w.stations(1, column_ground)};
}

TEST(SensorElevations, follow_the_columns_that_the_file_has) {
    EXPECT_EQ(first_station(3, 4), (Elevations{50, 30}));
    EXPECT_EQ(first_station(3, 0), (Elevations{50, 40}));
    EXPECT_EQ(first_station(0, 4), (Elevations{40, 30}));
    EXPECT_EQ(first_station(0, 0), (Elevations{210, 200}));
}

TEST(SensorElevations, the_range_becomes_that_of_the_ground) {
    Faults faults;
    Workspace w = workspace_with(3, 4);
    setup_sensor_elevations(w, faults);
    EXPECT_EQ(w.z_min, 30);
    EXPECT_EQ(w.z_max, 35);
}

TEST(SensorElevations, the_range_is_that_of_a_long_line_wherever_its_ends_stand) {
    constexpr int count = 200'000;
    for (const int lowest : {1, 16384, 16385, count}) {
        Workspace w;
        w.station_count = count;
        w.stations.assign(count);
        std::ranges::fill(w.stations.column(column_ground), 30);
        w.definition.z_column = 3;
        w.definition.dtm_column = 4;
        w.stations(lowest, column_ground) = 7;
        w.stations(count + 1 - lowest, column_ground) = 91;
        Faults faults;
        setup_sensor_elevations(w, faults);
        EXPECT_EQ(w.z_min, 7) << lowest;
        EXPECT_EQ(w.z_max, 91) << lowest;
    }
}

TEST(SensorElevations, outdate_the_filtered_rows) {
    Faults faults;
    Workspace w = workspace_with(3, 4);
    setup_sensor_elevations(w, faults);
    EXPECT_TRUE(w.elevations_ready);
    EXPECT_FALSE(w.mag.observed_filtered || w.mag.calculated_filtered);
}

TEST(SensorElevations, are_left_alone_while_they_are_ready) {
    Faults faults;
    Workspace w = workspace_with(0, 0);
    w.elevations_ready = true;
    setup_sensor_elevations(w, faults);
    EXPECT_EQ(w.stations(1, column_sensor), 50);
    EXPECT_TRUE(w.mag.observed_filtered);
}

TEST(SensorElevations, a_ground_too_low_for_a_single_is_told) {
    Faults faults;
    Workspace w = workspace_with(3, 4);
    w.stations(1, column_ground) = -1e300;
    setup_sensor_elevations(w, faults);
    EXPECT_EQ(texts_of(faults),
              std::vector<std::string>{"An error occurred seting up the sensor elevations: Overflow"});
}

}  // namespace
}  // namespace anomalis::intake
