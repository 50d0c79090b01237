#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// How deep the bodies lie under the ground: one rule for the label in the section, the tables and the batch
// tool.
namespace anomalis::model {

/// Elevation of the ground (m) at a distance along the profile: between its two stations, extrapolated beyond
/// the ends; the constant surface elevation without a ground column.
double ground_elevation(const Workspace& workspace, double distance);

/// The ground is known from a column of its own, or as the level that the sensor is carried over; a column of
/// the sensor alone does not tell it.
bool ground_is_known(const Workspace& workspace);

/// Sets `top_elevation` of every body: the ground at its place less its top (m), of a pipe also less half its
/// width, since its top is its axis. The elevations of the stations must be up to date.
void set_burial_depths(Workspace& workspace);

}  // namespace anomalis::model
