#pragma once

#include <vector>

namespace anomalis {

/// What the channel filters reuse from pass to pass, so that no pass allocates after the first.
struct FilterScratch {
    std::vector<float>
        coefficients;     ///< tap 0 is the centre; taps beyond the stored ones stand in `tail_sum`
    double tail_sum = 0;  ///< sum of the taps beyond the stored ones, 0 when all are stored
    std::vector<double> wide_coefficients;  ///< the same taps, widened
    std::vector<double> padded;             ///< the input row with its ends extended, widened
    // The passes with wide kernels:
    std::vector<double> sums;    ///< the filtered row
    std::vector<double> boxcar;  ///< the inner window of a triangle
    std::vector<double> phase;   ///< every n-th value of the row
    std::vector<double> phase_sums;
};

}  // namespace anomalis
