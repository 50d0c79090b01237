#pragma once

#include "core/point_transform.h"

namespace anomalis::edit {

struct Workbench;

/// Takes an edited coordinate transform over. When it differs from the present one the stations are dropped,
/// since they were laid out through the old one. Returns whether it differs.
bool change_transform(Workbench& workbench, PointTransform transform);

}  // namespace anomalis::edit
