#pragma once

#include <cstddef>

#include "vector/vector_levels.h"

namespace anomalis {

/// Nothing but the elementary functions of a kernel, over lists short enough for the nearest memory.
ANOMALIS_VECTOR_KERNEL(void, logarithms, (const double* s, const double* e, double* result, std::size_t n))
ANOMALIS_VECTOR_KERNEL(void, arc_tangents, (const double* y, const double* x, double* result, std::size_t n))

}  // namespace anomalis
