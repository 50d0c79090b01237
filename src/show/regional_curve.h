#pragma once

#include <vector>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The regional that was taken off the curve of a chart, a value a station in nT or mGal, about its mean over
/// the stations of the fit: so it lies on the axis of the residual and never widens its scale. Empty for a
/// chart that has none.
std::vector<float> regional_curve(const Workspace& workspace, int chart);

}  // namespace anomalis::show
