#include "forward/shape/reference_point.h"

#include <algorithm>

#include "core/search.h"

namespace anomalis::forward {

namespace {

/// The two stations that a distance is laid between, the second one after the first; 0 without such.
int segment_of(const Workspace& workspace, double distance) {
    const int count =
        std::min({workspace.station_count, workspace.distances.count(), workspace.stations.rows()});
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
