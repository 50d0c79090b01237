#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

/// Sets `top_elevation` of every body from the ground at its distance: interpolated between its neighbour
/// stations when the file has a ground column (extrapolated beyond the ends), else `surface_elevation`.
/// Raises Fault division_by_zero when those two stations stand at one distance.
void set_body_elevations(Workspace& workspace);

}  // namespace anomalis::intake
