#pragma once

#include <cstddef>

#include "vector/vector_levels.h"

namespace anomalis::vector {

/// The functions of vector/vector_math.h over arrays, once a level, as a kernel would use them.
ANOMALIS_VECTOR_KERNEL(void, log_loop, (const double* x, double* result, std::size_t n))
ANOMALIS_VECTOR_KERNEL(void, log_quotient_loop,
                       (const double* s, const double* e, double* result, std::size_t n))
ANOMALIS_VECTOR_KERNEL(void, atan_loop, (const double* x, double* result, std::size_t n))
ANOMALIS_VECTOR_KERNEL(void, atan2_loop, (const double* y, const double* x, double* result, std::size_t n))
ANOMALIS_VECTOR_KERNEL(void, atan2_by_lanes,
                       (const double* y, const double* x, double* result, std::size_t n))
ANOMALIS_VECTOR_KERNEL(void, sqrt_by_lanes, (const double* x, double* result, std::size_t n))
/// a b + c of every number on its own, and of whole vectors.
ANOMALIS_VECTOR_KERNEL(void, fma_loop,
                       (const double* a, const double* b, const double* c, double* result, std::size_t n))
ANOMALIS_VECTOR_KERNEL(void, fma_by_lanes,
                       (const double* a, const double* b, const double* c, double* result, std::size_t n))
/// Whether any of one vector of numbers is below that of the other.
ANOMALIS_VECTOR_KERNEL(bool, any_less_of_lanes, (const double* a, const double* b))
ANOMALIS_VECTOR_KERNEL(int, lanes_at_once, ())

}  // namespace anomalis::vector
