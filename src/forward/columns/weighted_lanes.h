#pragma once

#include "forward/columns/weighted_columns.h"
#include "forward/station_lanes.h"

// The end of kernels of columns. To be included by files only that are compiled once a vector level.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

ANOMALIS_INLINE void store_column(double* to, double value) {
    *to = value;
}
ANOMALIS_INLINE void store_column(double* to, Lanes value) {
    store_lanes(to, value);
}

template <class Real>
ANOMALIS_INLINE void store_columns(const WeightedColumns& columns, std::size_t i, const Real* terms) {
    for (int column = 0; column < columns.columns; ++column) {
        Real sum{};
        for (int k = columns.first[column]; k < columns.first[column + 1]; ++k)
            sum += columns.weight[k] * terms[columns.term[k]];
        store_column(columns.out + static_cast<std::size_t>(column) * columns.stride + i, sum);
    }
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
