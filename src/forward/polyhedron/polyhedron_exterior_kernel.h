#pragma once

// Sums over solid harmonics of many stations, and of many points of a body, compiled once for every vector
// level.

#include <cstddef>

#include "forward/polyhedron/polyhedron_kernel.h"

namespace anomalis::forward {

/// Degree of the moments that are kept. Second derivatives of the potential reach two degrees further.
inline constexpr int exterior_degree = 10;
inline constexpr int exterior_field_degree = exterior_degree + 2;

/// Number of pairs (l, m) with 0 <= m <= l <= degree.
constexpr int exterior_order_count(int degree) {
    return (degree + 1) * (degree + 2) / 2;
}

/// Place of (l, m) in a list that runs through m and, for each m, through l from m to degree.
constexpr int exterior_place(int degree, int l, int m) {
    return m * (degree + 1) - m * (m - 1) / 2 + l - m;
}

/// The sums wanted, as factors of the real and imaginary parts of the outer solid harmonics
/// S(l, m) = (l - m)! P(l, m)(cos theta) exp(i m phi) / r^(l + 1), without alternating signs in P.
struct ExteriorTerms {
    int sum_count = 0;
    double factor[most_sums][exterior_order_count(exterior_field_degree)][2] = {};
};

/// Fills the sums of a block whose stations are all outside the sphere round the body.
ANOMALIS_VECTOR_KERNEL(void, exterior_sums, (const ExteriorTerms& terms, StationBlock& block))

/// Points with weights, in eights; a lane of eight keeps its own sums so that every level adds in one order.
struct WeightedPoints {
    static constexpr std::size_t lanes = 8;
    static constexpr std::size_t capacity = 40;
    double x[capacity], y[capacity], z[capacity], weight[capacity];
};
struct MomentSums {
    double part[exterior_order_count(exterior_degree)][2][WeightedPoints::lanes] = {};
};

/// Adds weight times R(l, m) = r^l P(l, m)(cos theta) exp(i m phi) / (l + m)! of `count` points, a multiple
/// of 8.
ANOMALIS_VECTOR_KERNEL(void, add_moments, (const WeightedPoints& points, std::size_t count, MomentSums& sums))

}  // namespace anomalis::forward
