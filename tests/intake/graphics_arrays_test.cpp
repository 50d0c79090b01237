#include <gtest/gtest.h>

#include "intake/profile.h"
#include "support/survey.h"

namespace anomalis::intake {
namespace {

struct Window {
    std::int32_t first, last;
    double first_distance, last_distance;
    bool operator==(const Window&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Window& w) {
    return out << w.first << " to " << w.last << " (" << w.first_distance << " to " << w.last_distance << ")";
}

class StationWindow : public ::testing::Test {
  protected:
    /// Stations every 10 m from 0 to 100: number 1 to 11.
    StationWindow() {
        initialise_workspace(workspace, prompts);
        workspace.station_count = 11;
        workspace.distances.assign(11);
        for (int i = 1; i <= 11; ++i) workspace.distances[i] = 10.0 * (i - 1);
    }
    Window found(const Window& before) {
        workspace.first_station = before.first;
        workspace.last_station = before.last;
        workspace.first_distance = before.first_distance;
        workspace.last_distance = before.last_distance;
        EXPECT_EQ(setup_graphics_arrays(workspace, prompts), 0);
        return {workspace.first_station, workspace.last_station, workspace.first_distance,
                workspace.last_distance};
    }

    ScriptedPrompts prompts;
    Workspace workspace;
};

TEST_F(StationWindow, every_response_has_a_row_a_station) {
    workspace.elevations_ready = true;
    workspace.bodies[32].mag_response_valid = true;
    EXPECT_EQ(setup_graphics_arrays(workspace, prompts), 0);
    EXPECT_FALSE(workspace.elevations_ready);
    EXPECT_FALSE(workspace.bodies[32].mag_response_valid);
    for (const ModelBody& body : workspace.bodies) EXPECT_EQ(body.response.rows(), 11);
}

TEST_F(StationWindow, without_a_window_all_stations_are_used) {
    EXPECT_EQ(found({0, 0, 0, 0}), (Window{1, 11, 0, 100}));
}

TEST_F(StationWindow, a_valid_window_keeps_its_stations_and_takes_their_distances) {
    EXPECT_EQ(found({3, 7, 0, 0}), (Window{3, 7, 20, 60}));
    EXPECT_EQ(found({3, 7, 19, 61}), (Window{3, 7, 19, 61}));
}

TEST_F(StationWindow, a_window_is_found_again_by_its_distances) {
    EXPECT_EQ(found({0, 0, 20, 60}), (Window{3, 7, 20, 60}));
    EXPECT_EQ(found({0, 0, 24, 66}), (Window{3, 7, 24, 66}));
}

TEST_F(StationWindow, the_first_distance_has_a_tolerance_and_the_last_has_none) {
    EXPECT_EQ(found({0, 0, 19.995, 59.995}), (Window{3, 6, 19.995, 59.995}));
    EXPECT_EQ(found({0, 0, 20.005, 60.005}), (Window{3, 7, 20.005, 60.005}));
    EXPECT_EQ(found({0, 0, 19.98, 60}), (Window{2, 7, 19.98, 60}));
}

TEST_F(StationWindow, a_window_over_the_whole_line_found_by_distance_ends_one_station_short) {
    EXPECT_EQ(found({0, 0, 0, 100}), (Window{1, 10, 0, 100}));
    EXPECT_EQ(found({0, 0, 0.001, 500}), (Window{1, 10, 0.001, 500}));
}

TEST_F(StationWindow, a_first_station_beyond_the_end_starts_at_1) {
    EXPECT_EQ(found({12, 20, 30, 60}), (Window{1, 11, 0, 100}));
}

TEST_F(StationWindow, a_last_station_not_above_the_first_ends_at_the_end) {
    EXPECT_EQ(found({5, 5, 40, 40}), (Window{5, 11, 40, 100}));
    EXPECT_EQ(found({-3, 2, -1, 60}), (Window{1, 2, 0, 60}));
}

TEST_F(StationWindow, a_single_station_is_first_and_last) {
    workspace.station_count = 1;
    workspace.distances.assign(1);
    EXPECT_EQ(found({0, 0, 20, 60}), (Window{1, 1, 20, 60}));
}

}  // namespace
}  // namespace anomalis::intake
