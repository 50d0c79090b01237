#pragma once

namespace anomalis::forward {

/// Gravitation: for densities in g/cc and lengths in metres it gives mGal.
inline constexpr double gravity_constant = 0.00667;

}  // namespace anomalis::forward
