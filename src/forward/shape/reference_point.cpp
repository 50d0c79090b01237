#include "forward/shape/reference_point.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/search.h"

namespace anomalis::forward {

namespace {

/// Stations that have both a distance and a place.
int placed_stations(const Workspace& workspace) {
    return std::min({workspace.station_count, workspace.distances.count(), workspace.stations.rows()});
}

/// The two stations that a distance is laid between, the second one after the first; 0 without such.
int segment_of(const Workspace& workspace, double distance) {
    const int count = placed_stations(workspace);
    if (count <= 1) return 0;
    const auto distances = workspace.distances.span().first(static_cast<std::size_t>(count));
    int at = search_sorted(distances, distance);
    if (workspace.distances[at] != distance) --at;
    return std::clamp(at, 1, count - 1);
}

}  // namespace

void update_body_reference_point(const Workspace& workspace, double distance, double& east, double& north) {
    const int at = segment_of(workspace, distance);
    if (at == 0) return;
    const double near = workspace.distances[at];
    const double far = workspace.distances[at + 1];
    // Not held to 0..1: a body may stand before the first or beyond the last station.
    const double t = far == near ? 0.0 : (distance - near) / (far - near);
    const auto between = [&](int column) {
        const double from = workspace.stations(at, column);
        return from + (workspace.stations(at + 1, column) - from) * t;
    };
    east = between(column_east);
    north = between(column_north);
}

std::optional<double> nearest_distance(const Workspace& workspace, double east, double north) {
    const int count = placed_stations(workspace);
    std::optional<double> nearest;
    double least = std::numeric_limits<double>::infinity();
    for (int i = 1; i < count; ++i) {
        const double from_east = workspace.stations(i, column_east);
        const double from_north = workspace.stations(i, column_north);
        const double run_east = workspace.stations(i + 1, column_east) - from_east;
        const double run_north = workspace.stations(i + 1, column_north) - from_north;
        const double square = run_east * run_east + run_north * run_north;
        if (!(square > 0)) continue;
        const double along = ((east - from_east) * run_east + (north - from_north) * run_north) / square;
        const double low = i == 1 ? -std::numeric_limits<double>::infinity() : 0.0;
        const double high = i == count - 1 ? std::numeric_limits<double>::infinity() : 1.0;
        const double t = std::clamp(along, low, high);
        const double off = std::hypot(from_east + t * run_east - east, from_north + t * run_north - north);
        if (!(off < least)) continue;
        least = off;
        nearest = workspace.distances[i] + t * (workspace.distances[i + 1] - workspace.distances[i]);
    }
    return nearest;
}

PlanSlope reference_point_slope(const Workspace& workspace, double distance) {
    const int at = segment_of(workspace, distance);
    if (at == 0) return {};
    const double run = workspace.distances[at + 1] - workspace.distances[at];
    if (run == 0) return {};
    const auto rise = [&](int column) {
        return (workspace.stations(at + 1, column) - workspace.stations(at, column)) / run;
    };
    return {rise(column_east), rise(column_north)};
}

}  // namespace anomalis::forward
