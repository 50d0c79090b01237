#pragma once

#include <array>

namespace anomalis::forward {

/// Twenty nodes in 0 to 1 that crowd at both ends, as t^2 (3 - 2 t) of the Gauss nodes, for integrands whose
/// slope is infinite there.
struct CrowdedNodes {
    std::array<double, 20> place;
    std::array<double, 20> weight;
};
const CrowdedNodes& crowded_nodes();

}  // namespace anomalis::forward
