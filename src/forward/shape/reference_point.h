#pragma once

#include <optional>

#include "core/workspace.h"

namespace anomalis::forward {

/// Map position (m) of a distance along the profile, between its two stations by linear interpolation and
/// beyond the ends along the last segment. With one station or none, `east` and `north` stay.
void update_body_reference_point(const Workspace& workspace, double distance, double& east, double& north);

/// The distance along the profile whose map position is nearest to a place, beyond the ends along the last
/// segments; nothing with one station or none.
std::optional<double> nearest_distance(const Workspace& workspace, double east, double north);

/// How fast that position moves with the distance there: 0 where it stays.
struct PlanSlope {
    double east = 0, north = 0;
};
PlanSlope reference_point_slope(const Workspace& workspace, double distance);

}  // namespace anomalis::forward
