#pragma once

#include "core/workspace.h"

namespace anomalis::inversion {

/// The elevation in a column of the stations at a distance along the profile (m), straight between stations
/// and level beyond the ends. 0 without stations.
double elevation_at(const Workspace& workspace, double distance, StationColumn column);

}  // namespace anomalis::inversion
