#pragma once

#include <span>
#include <vector>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The regional that was taken off the curve of a chart, a value a station in nT or mGal, about its mean over
/// the stations of the fit: so it lies on the axis of the residual and never widens its scale. Empty for a
/// chart that has none. Missing (-1E32) at stations that the fit did not have, of which it says nothing.
std::vector<float> regional_curve(const Workspace& workspace, int chart);

/// The observed curve of a chart (nT or mGal, a value a station) as it would be if the regional stayed,
/// beyond the stations of the fit, what it is at the nearest of them. Empty where that is the curve as it is.
std::vector<float> with_regional_held(const Workspace& workspace, int chart, std::span<const float> observed);

}  // namespace anomalis::show
