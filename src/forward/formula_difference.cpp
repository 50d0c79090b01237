#include "forward/formula_difference.h"

#include <algorithm>
#include <cmath>

#include "core/faults.h"
#include "forward/exact/exact_response.h"
#include "forward/forward_memory.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

using ExactCurve = void (*)(const Workspace&, ModelBody&, Polyhedron&, std::span<double>, ExactNotes&);

double share_of(Workspace& workspace, ModelBody& body, int column, ExactCurve exact) {
    ForwardMemory& memory = forward_memory(workspace);
    ExactNotes notes;
    exact(workspace, body, memory.polyhedron, memory.values, notes);
    const float* classic = response_column(workspace, body, column);
    double peak = 0, difference = 0;
    for (std::size_t i = 0; i < memory.values.size(); ++i) {
        peak = std::max(peak, std::abs(memory.values[i]));
        difference = std::max(difference, std::abs(memory.values[i] - classic[i]));
    }
    if (difference == 0) return 0;
    return peak > 0 ? std::min(difference / peak, no_common_measure) : no_common_measure;
}

}  // namespace

FormulaDifference formula_difference(Workspace& workspace, int body_number, Faults& faults) {
    FormulaDifference difference;
    if (workspace.formulas == Formulas::exact || workspace.station_count <= 0) return difference;
    report_failure(faults, "An error occurred while comparing the formulas: ", [&] {
        ModelBody& body = workspace.body(body_number);
        if (body.turned_off == 1) return;
        if (workspace.has_mag() && body.mag_response_valid)
            difference.magnetic = share_of(workspace, body, 1, exact_anomaly);
        if (workspace.has_grav() && body.grav_response_valid)
            difference.gravity = share_of(workspace, body, 2, exact_gravity);
    });
    return difference;
}

}  // namespace anomalis::forward
