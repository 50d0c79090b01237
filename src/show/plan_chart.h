#pragma once

#include <optional>

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

/// How a straight line runs over the map.
struct StraightLine {
    chart::Point start;           ///< where the distance is 0, m
    chart::Point step{1.0, 0.0};  ///< one metre along the line, m
    chart::Point place(double distance) const {
        return {start.x + distance * step.x, start.y + distance * step.y};
    }
};

/// Of a line with no station further than a two-hundredth of its length from the straight; none for any
/// other.
std::optional<StraightLine> straight_line(const Workspace& workspace);

/// Distances along the line, m.
struct DistanceWindow {
    double low = 0;
    double high = 0;
};

/// Registers the stations with the plan's chart and sets its axes: a metre is as long to the east as to the
/// north, the axis with room to spare shows more than the survey. The chart must be shown afterwards.
///
/// `curves`: what the charts above show. A straight line towards the east, so far as the height of the plan
/// allows, then has every station right below its place on the curves; true when it has.
bool set_up_plan(chart::AX_Grapher& chart, const Workspace& workspace,
                 const std::optional<DistanceWindow>& curves);

/// Records distances along a straight line, at multiples of `interval` (m) as far as they have room.
void record_distances(chart::AX_Grapher& chart, const Workspace& workspace, double interval);

/// Records every body's outline on the ground and its reference point; a body without an outline inside the
/// plan has its point alone.
void record_plan(chart::AX_Grapher& chart, const Workspace& workspace, const edit::ViewState& view,
                 PolygonTable& polygons, Faults& faults);

}  // namespace anomalis::show
