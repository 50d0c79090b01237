#pragma once

#include <cstddef>

namespace anomalis::forward {

/// Columns that are weighted sums of a station's terms, for kernels: those of column k are `term` and
/// `weight` from first[k] up to, not including, first[k + 1].
struct WeightedColumns {
    const int* first;
    const int* term;
    const double* weight;
    int columns;
    double* out;  ///< one column after the other
    std::size_t stride;
};

}  // namespace anomalis::forward
