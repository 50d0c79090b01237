#pragma once

#include <string>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The station (from 1) nearest to a distance along the line, 0 without stations.
int nearest_station(const Workspace& workspace, double distance);

/// What one of the five charts tells of a distance (m) along the line, a line of text each with its unit: of
/// the curves what they have at the nearest station, of the section the ground. The chart under the pointer,
/// whose place in user units is `pointer`, tells that place too, in the section as depth as well.
std::vector<std::string> crosshair_lines(const Workspace& workspace, int chart,
                                         const chart::AX_Grapher& grapher, double distance,
                                         const chart::Point* pointer);

}  // namespace anomalis::show
