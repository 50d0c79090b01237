#pragma once

namespace anomalis {
struct ModelBody;
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

/// Burial depth (m): the ground at the body's place less its top, of a pipe also less half its width, since
/// its top is its axis. The elevations of the stations must be up to date.
double burial_depth(const Workspace& workspace, const ModelBody& body);

/// Sets `top_elevation` of every body to its burial depth.
void set_burial_depths(Workspace& workspace);

}  // namespace anomalis::model
