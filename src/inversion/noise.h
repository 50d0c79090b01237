#pragma once

#include <span>
#include <vector>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::inversion {

/// Standard deviation of the noise of readings along a line, in their unit, from the readings alone: the
/// spread of their normalised third to sixth differences, which bodies and regional hardly reach (von Neumann
/// 1941; Gasser, Sroka and Jennen-Steinmetz 1986), without what lies beyond three times it (spikes, the
/// crests of shallow bodies). At least what rounding to whole steps leaves, step / sqrt(12), where the
/// readings are rounded so. Readings that are no numbers are left out. 0 where readings tell no noise: fewer
/// than 10, or all on one curve as a constant channel.
double estimate_noise(std::span<const double> readings);

/// The same of a line with gaps: no difference is taken over one. A stretch that is too short for a
/// difference tells nothing.
double estimate_stretches_noise(std::span<const std::vector<double>> stretches);

/// Of the readings of a channel at the stations `first` to `last`, stretch by stretch (core/gaps.h).
double noise_of_readings(const Workspace& workspace, int channel, int first, int last);

/// The step that all readings are multiples of from each other: 1 for whole nanoteslas. 0 when there is none,
/// or when it is so fine that readings hardly share values.
double reading_step(std::span<const double> readings);

}  // namespace anomalis::inversion
