#pragma once

#include "vector/vector_levels.h"

// The inner loop of a filter pass, private to this room.
namespace anomalis::filter {

/// One pass over a row whose ends are extended by `near_taps * tap_step` copies of its end values.
struct Convolution {
    const double* input = nullptr;  ///< station 1 inside the extended row
    float* output = nullptr;
    int stations = 0;
    int tap_step = 1;                      ///< not negative
    const double* coefficients = nullptr;  ///< tap 0 is the centre
    int near_taps = 0;                     ///< taps that see stations of the row
    int stored_taps = 0;                   ///< those and the ones that see only the two end values
    double end_pair = 0;                   ///< what the outer taps see: right with, or less, left end value
    double remainder = 0;                  ///< sum of the taps that are not stored
    bool odd = false;                      ///< right less left, not right with left
    bool subtract = false;                 ///< the output is input less filtered input
};

/// Runs over blocks of stations. Each station adds its taps in their order to a sum that is stored in a
/// single after each tap, so every vector level gives the same bits. Row and taps are singles, widened once.
ANOMALIS_VECTOR_KERNEL(void, convolve, (const Convolution& pass))

}  // namespace anomalis::filter
