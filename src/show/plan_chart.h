#pragma once

#include "chart/drawing_types.h"
#include "show/polygon_table.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis {
class Faults;
struct Workspace;
}  // namespace anomalis
namespace anomalis::edit {
struct ViewState;
}  // namespace anomalis::edit

namespace anomalis::show {

/// The least that the plan shows, in map coordinates (m): the survey at round numbers.
chart::Rect survey_limits(const Workspace& workspace);

/// Registers the stations with the plan's chart and sets its axes: a metre is as long to the east as to the
/// north, the axis with room to spare shows more than the survey. The chart must be shown afterwards.
void set_up_plan(chart::AX_Grapher& chart, const Workspace& workspace);

/// Records every body's outline on the ground and its reference point; a body without an outline inside the
/// plan has its point alone.
void record_plan(chart::AX_Grapher& chart, const Workspace& workspace, const edit::ViewState& view,
                 PolygonTable& polygons, Faults& faults);

}  // namespace anomalis::show
