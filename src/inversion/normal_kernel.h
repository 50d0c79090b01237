#pragma once

#include <cstddef>

#include "vector/vector_levels.h"

// Products of the columns of a tall matrix; private to normal_matrix.cpp.
namespace anomalis::inversion {

/// A column-major matrix.
struct TallMatrix {
    const double* values;
    std::size_t stride;  ///< from one column to the next
    std::size_t rows;
};

/// Columns `first` up to, not including, `last`.
struct ColumnPanel {
    std::size_t first, last;
};

/// Writes the products of the columns of `across` with those of `down`: that of columns i and j to
/// normal[i + j * normal_stride], i of `down`. Each is summed in one order, whatever the panels.
ANOMALIS_VECTOR_KERNEL(void, column_products,
                       (const TallMatrix& matrix, const ColumnPanel& down, const ColumnPanel& across,
                        double* normal, std::size_t normal_stride))

}  // namespace anomalis::inversion
