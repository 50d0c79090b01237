#pragma once

#include <complex>

#include "forward/polyhedron/polyhedron_exterior_kernel.h"
#include "forward/polyhedron/polyhedron_mesh.h"

namespace anomalis::forward {

/// A station this many radii from the middle of the body is served by the expansion: 16^-11 of the field,
/// with the growth of the second derivatives 4e-12, is what the terms left out amount to at most.
inline constexpr double exterior_distance = 16;

/// The potential of a uniform closed body far away, as its moments of volume in solid harmonics. The terms of
/// the expansion fall off with the field itself, so nothing cancels at any distance, where the sum over edges
/// and faces loses the square of the distance in digits.
class PolyhedronExterior {
  public:
    /// Moments of a shape, about the origin of its unit coordinates.
    void take(const PolyhedronMesh& mesh, Pacer& pacer);

    /// Adds to sum number `sum` the derivative of the potential along `first`, and also along `second` where
    /// that is not null.
    void fold(const Point3& first, const Point3* second, int sum, ExteriorTerms& terms) const;

  private:
    std::complex<double> moments_[exterior_order_count(exterior_degree)];
};

}  // namespace anomalis::forward
