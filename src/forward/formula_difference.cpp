#include "forward/formula_difference.h"

#include <algorithm>
#include <cmath>

#include "core/faults.h"
#include "forward/body_price.h"
#include "forward/exact/exact_response.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

using ExactCurve = void (*)(const Workspace&, ModelBody&, Polyhedron&, std::span<double>, ExactNotes&,
                            Pacer&);

double share_of(const Workspace& workspace, int body_number, int column, ExactCurve exact) {
    // A copy, which the exact formulas may fit to their ways.
    ModelBody body = workspace.body(body_number);
    Polyhedron polyhedron;
    std::vector<double> values(static_cast<std::size_t>(workspace.station_count));
    ExactNotes notes;
    exact(workspace, body, polyhedron, values, notes, no_pace());
    const float* classic = response_column(workspace, body, column);
    double peak = 0, difference = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        peak = std::max(peak, std::abs(values[i]));
        difference = std::max(difference, std::abs(values[i] - classic[i]));
    }
    if (difference == 0) return 0;
    return peak > 0 ? std::min(difference / peak, no_common_measure) : no_common_measure;
}

std::string reason_to_leave_out(const Workspace& workspace, const ModelBody& body) {
    const BodyPrice price = body_price(body, Formulas::exact, workspace.station_count);
    try {
        require_affordable(price);
    } catch (const Fault& refusal) {
        return refusal.what();
    }
    if (work_of(price, workspace.station_count) <= most_comparison_units) return "";
    return "its exact curve takes too long: " + std::to_string(price.station_facets) +
           " facets seen by the stations, " + std::to_string(price.facets) + " of the solid";
}

}  // namespace

FormulaDifference formula_difference(const Workspace& workspace, int body_number, Faults& faults) {
    FormulaDifference difference;
    if (workspace.formulas == Formulas::exact || workspace.station_count <= 0) return difference;
    report_failure(faults, "An error occurred while comparing the formulas: ", [&] {
        const ModelBody& body = workspace.body(body_number);
        if (body.turned_off == 1) return;
        difference.left_out = reason_to_leave_out(workspace, body);
        if (!difference.left_out.empty()) return;
        if (workspace.has_mag() && body.mag_response_valid)
            difference.magnetic = share_of(workspace, body_number, 1, exact_anomaly);
        if (workspace.has_grav() && body.grav_response_valid)
            difference.gravity = share_of(workspace, body_number, 2, exact_gravity);
    });
    return difference;
}

}  // namespace anomalis::forward
