#pragma once

#include <span>

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/station_view.h"

namespace anomalis::forward {

/// Sheets without end along strike, edges and steps: what the closed form of the plane across strike gives.
bool lies_in_plane(const ModelBody& body);

/// Exact values of such a body at the stations, as `exact_values` gives them, and the derivatives by the
/// parameters, in one pass: columns as of `body_columns`. Brings the reference point and the kept tensor up
/// to date. Derivatives of magnetics grow as 1 / R towards a corner and are held from 1 mm on, as the values
/// are.
void plane_columns(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                   std::span<const int> param_codes, std::span<double> values, std::span<double> columns,
                   Pacer& pacer);

}  // namespace anomalis::forward
