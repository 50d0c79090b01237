#pragma once

#include <vector>

#include "survey/results/line_result.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::survey {

/// The track of a loaded line as few points: its ends, and those between that no straight piece comes near
/// enough to (Douglas and Peucker 1973): 1 m, of a line above 1 km a thousandth of its length. Empty without
/// stations.
std::vector<TrackPoint> line_track(const Workspace& workspace);

}  // namespace anomalis::survey
