#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/prompts.h"
#include "core/search.h"
#include "core/workspace.h"
#include "intake/profile.h"

namespace anomalis::intake {

namespace {

constexpr double same_distance = 0.01;

int inside_window(int station, const Workspace& w) {
    return std::clamp(station, 1, std::max(w.station_count - 1, 1));
}

void find_first_station(Workspace& w) {
    if (w.first_station >= 1 && w.first_station <= w.station_count) {
        if (w.first_distance == 0) w.first_distance = w.distances[w.first_station];
    } else if (w.first_distance > 0 && w.first_station <= 0) {
        const int p = search_sorted(w.distances.span(), w.first_distance);
        const bool found = std::abs(w.first_distance - w.distances[p]) <= same_distance;
        w.first_station = inside_window(found ? p : p - 1, w);
    } else {
        w.first_station = 1;
        w.first_distance = 0;
    }
}

/// Without the tolerance of the first station, on purpose: a window over the whole line that is found again
/// by its distances ends one station short.
void find_last_station(Workspace& w) {
    const bool valid =
        w.last_station > 0 && w.last_station > w.first_station && w.last_station <= w.station_count;
    if (valid) {
        if (w.last_distance == 0) w.last_distance = w.distances[w.last_station];
    } else if (w.last_distance > 0 && w.last_station <= 0) {
        const int p = search_sorted(w.distances.span(), w.last_distance);
        w.last_station = inside_window(w.distances[p] == w.last_distance ? p : p - 1, w);
    } else {
        w.last_station = w.station_count;
        w.last_distance = w.distances.last();
    }
}

}  // namespace

void find_station_window(Workspace& workspace) {
    find_first_station(workspace);
    find_last_station(workspace);
    settle_station_window(workspace);
}

int setup_graphics_arrays(Workspace& workspace, Prompts& prompts) {
    return report_failure(prompts, "An error occurred while setting up the graphics arrays: ", [&] {
        workspace.elevations_ready = false;
        reset_calculated_data(workspace, prompts);
        for (ModelBody& body : workspace.bodies) body.response.assign(workspace.station_count);
        find_first_station(workspace);
        find_last_station(workspace);
    });
}

}  // namespace anomalis::intake
