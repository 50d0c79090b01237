#include "model/burial_depth.h"

#include <algorithm>

#include "core/search.h"
#include "core/workspace.h"

namespace anomalis::model {

double ground_elevation(const Workspace& workspace, double distance) {
    const int n = workspace.station_count;
    if (workspace.definition.dtm_column <= 0) return workspace.surface_elevation;
    if (n < 2) return n == 1 ? workspace.stations(1, column_ground) : workspace.surface_elevation;
    const int i = std::clamp(search_sorted(workspace.distances.span(), distance) - 1, 1, n - 1);
    const double step = workspace.distances[i + 1] - workspace.distances[i];
    const double t = step == 0 ? 0 : (distance - workspace.distances[i]) / step;
    const double low = workspace.stations(i, column_ground);
    return low + (workspace.stations(i + 1, column_ground) - low) * t;
}

bool ground_is_known(const Workspace& workspace) {
    return workspace.definition.dtm_column > 0 || workspace.definition.z_column <= 0;
}

double burial_depth(const Workspace& workspace, const ModelBody& body) {
    const double depth = ground_elevation(workspace, body.distance.value) - body.top.value;
    return body.type == pipe ? depth - body.width.value / 2.0 : depth;
}

void set_burial_depths(Workspace& workspace) {
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = workspace.body(number);
        body.top_elevation = static_cast<float>(burial_depth(workspace, body));
    }
}

}  // namespace anomalis::model
