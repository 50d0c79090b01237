#include "vector/upper_halves.h"

#include "vector/vector_levels.h"

namespace anomalis::vector {

void clear_upper_halves() {
#if defined(__x86_64__)
    // Baseline code holds nothing in these halves, so nothing is lost.
    if (widest_vector_level() != VectorLevel::baseline) asm volatile("vzeroupper");
#endif
}

}  // namespace anomalis::vector
