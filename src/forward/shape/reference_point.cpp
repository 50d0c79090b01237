#include "forward/shape/reference_point.h"

#include <algorithm>

#include "core/search.h"

namespace anomalis::forward {

void update_body_reference_point(const Workspace& workspace, double distance, double& east, double& north) {
    const int count =
        std::min({workspace.station_count, workspace.distances.count(), workspace.stations.rows()});
    if (count <= 1) return;
    const auto distances = workspace.distances.span().first(static_cast<std::size_t>(count));
    int at = search_sorted(distances, distance);
    if (workspace.distances[at] != distance) --at;
    at = std::clamp(at, 1, count - 1);

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

}  // namespace anomalis::forward
