#pragma once

#include "core/workspace.h"

namespace anomalis::forward {

/// Map position (m) of a distance along the profile, between its two stations by linear interpolation and
/// beyond the ends along the last segment. With one station or none, `east` and `north` stay.
void update_body_reference_point(const Workspace& workspace, double distance, double& east, double& north);

}  // namespace anomalis::forward
