#pragma once

#include <array>

#include "core/workspace.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// Limits of the plan in map coordinates, m.
struct ClipBox {
    double east_low = 0, east_high = 0;
    double north_low = 0, north_high = 0;
};

/// A closed outline in plan: five points, the last equal to the first.
struct PlanOutline {
    std::array<double, 5> east{};
    std::array<double, 5> north{};
};

/// What a body covers on the ground: along strike between two ends (m from its reference point), across it
/// from `start` on.
struct Footprint {
    double near_end = 0, far_end = 0;
    double start = 0, across = 0;
    bool limited = false;  ///< the ends follow length and offset
    bool clipped = false;  ///< an end is cut short for the drawing
    double fall = 1;       ///< metres on the ground a metre along the body
};
Footprint plan_footprint(const Workspace& workspace, const ModelBody& body);

/// Cuts a segment to the box in place (Cohen and Sutherland). Returns 0, or -1 when it lies outside or
/// has no finite end.
int clip_line(double& east1, double& north1, double& east2, double& north2, const ClipBox& box);

/// The outline of a body on the ground, along strike from its reference point. Sheets, edges and steps
/// reach `width` across strike, pipes and wires twice that, centred. With the exact formulas it is the body
/// that they calculate, pipes and wires as wide as they are. Returns the number of points: 5, or -1
/// when the body lies outside the box or its type has no outline in plan.
int calculate_plan_outline(const Workspace& workspace, const ClipBox& box, const ModelBody& body,
                           PlanOutline& outline, Faults& faults);

}  // namespace anomalis::forward
