#pragma once

#include <cstddef>

#include "vector/vector_levels.h"

// The inner loops of the window sums, private to this room.
namespace anomalis::filter {

inline constexpr std::size_t side_by_side = 4;

/// Four complex numbers, or four real ones when nobody reads `im`.
struct FourNumbers {
    double re[side_by_side];
    double im[side_by_side];
};

/// Up to four terms weight * base^m of a kernel, m = 0 ... window - 1; places without one have a weight of 0.
struct TermGroup {
    FourNumbers weight;
    FourNumbers base;
    FourNumbers inverse;  ///< 1 / base
    FourNumbers last;     ///< weight * base^(window - 1)
    std::size_t window;
};

/// Adds to out[k], k = 0 ... count - 1, the sum over the terms and over m of Re(weight * base^m) * in[k + m].
/// All levels reckon four terms at a time in the same order, so each gives the same bits.
ANOMALIS_VECTOR_KERNEL(void, add_real_windows,
                       (const TermGroup& group, const double* in, double* out, std::size_t count))
ANOMALIS_VECTOR_KERNEL(void, add_complex_windows,
                       (const TermGroup& group, const double* in, double* out, std::size_t count))

}  // namespace anomalis::filter
