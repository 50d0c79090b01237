#pragma once

#include "core/workspace.h"

namespace anomalis::intake {

/// Modelling wants heights at every station. Sensor heights or ground elevations that were read but are
/// missing at some stations become those of the straight line between their neighbours along the profile, or
/// that of the only neighbour at an end of the line. Without gaps, and for a column that is not read, nothing
/// changes.
void fill_missing_heights(Workspace& workspace, StationColumn column);

}  // namespace anomalis::intake
