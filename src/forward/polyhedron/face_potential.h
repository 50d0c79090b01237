#pragma once

#include <array>
#include <span>
#include <vector>

#include "core/model_body.h"

namespace anomalis::forward {

/// Integral of 1 / R over a plane polygon as seen from a point, m (Wilton and others, 1984, IEEE Trans.
/// Antennas Propag. 32). `normal` is its unit normal; the corners turn either way.
double face_potential(std::span<const Point3> corners, const Point3& normal, const Point3& from);

/// Twenty nodes in 0 to 1 that crowd at both ends, as t^2 (3 - 2 t) of the Gauss nodes, for integrands whose
/// slope is infinite there.
struct CrowdedNodes {
    std::array<double, 20> place;
    std::array<double, 20> weight;
};
const CrowdedNodes& crowded_nodes();

}  // namespace anomalis::forward
