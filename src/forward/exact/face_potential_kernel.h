#pragma once

#include <cstddef>

#include "vector/vector_levels.h"

namespace anomalis::forward {

/// A plane polygon: x, y, z of its corners one after the other, which turn either way, and its unit normal.
struct PotentialFace {
    const double* corners;
    std::size_t count;
    const double* normal;
};

/// Where its potential is wanted.
struct PotentialPlaces {
    const double *x, *y, *z;
    std::size_t count;
};

/// Integral of 1 / R over the polygon as seen from each place, in the unit of length (Wilton and others,
/// 1984, IEEE Trans. Antennas Propag. 32).
ANOMALIS_VECTOR_KERNEL(void, face_potentials,
                       (const PotentialFace& face, const PotentialPlaces& places, double* potential))

}  // namespace anomalis::forward
