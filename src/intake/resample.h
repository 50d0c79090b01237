#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

/// The most intervals that a resampled profile may have; a smaller spacing is widened to this many.
inline constexpr int most_intervals = 8192;

/// How many stations a spacing gives on a line of some length (m): whole, a tie to the even number, and not
/// limited to what an integer can hold. Raises Fault division_by_zero.
double points_along(double length, double spacing);

/// Replaces the stations by points every `station_spacing` metres along the profile: each quantity that the
/// file has is taken from the cubic spline over the old distances, the others are 0. No spline goes over a
/// gap (core/gaps.h): readings are missing in it, places and heights go straight from one side to the other.
/// Raises Fault division_by_zero when two stations stand at one distance; the old stations then stay.
void resample_profile(Workspace& workspace);

}  // namespace anomalis::intake
