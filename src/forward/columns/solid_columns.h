#pragma once

#include <span>

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/station_view.h"

namespace anomalis::forward {

/// Sheets that end along strike, with a lower end or without.
bool is_limited_sheet(const ModelBody& body);

/// The derivatives of the exact values of such a body by the parameters, in one pass that shares the
/// integrals of edges and faces: columns as of `body_columns`. The reference point must be up to date; the
/// kept tensor is brought up to date. Held from 1 mm towards an edge, where those of magnetics grow as 1 / R.
void solid_columns(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                   std::span<const int> param_codes, std::span<double> columns, Pacer& pacer);

}  // namespace anomalis::forward
