#pragma once

#include <span>

#include "core/workspace.h"
#include "forward/station_view.h"

namespace anomalis::forward {

/// Spheres and wires.
bool is_point_body(const ModelBody& body);

/// The derivatives of the exact values of such a body by the parameters: columns as of `body_columns`. The
/// reference point must be up to date. A pair of wires without separation is a single wire, whose separation
/// has no slope.
void point_columns(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                   std::span<const int> param_codes, std::span<double> columns);

}  // namespace anomalis::forward
