#include "intake/body_elevations.h"

#include <algorithm>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/search.h"
#include "core/workspace.h"

namespace anomalis::intake {

namespace {

double ground_at(const Workspace& w, float distance) {
    if (w.definition.dtm_column <= 0) return w.surface_elevation;
    if (w.station_count == 1) return w.stations(1, column_ground);
    int p = search_sorted(w.distances.span(), distance);
    if (static_cast<float>(w.distances[p]) > distance || w.distances[p] != distance) --p;
    p = std::clamp(p, 1, w.station_count - 1);
    const double step = w.distances[p + 1] - w.distances[p];
    if (step == 0) throw Fault(FaultKind::division_by_zero);
    const double left = w.stations(p, column_ground);
    const double right = w.stations(p + 1, column_ground);
    return left + (right - left) * (distance - w.distances[p]) / step;
}

}  // namespace

void set_body_elevations(Workspace& w) {
    for (int i = 1; i <= w.body_count; ++i) {
        ModelBody& body = w.body(i);
        const double width = body.width.value;
        double top = ground_at(w, body.distance.value) - body.top.value - width;
        if (body.type == pipe) top -= width / 2;
        body.top_elevation = to_single(top);
    }
}

}  // namespace anomalis::intake
