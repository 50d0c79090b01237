#include "elementary_loops.h"

#include "vector/vector_math.h"

namespace anomalis::ANOMALIS_VECTOR_LEVEL {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

void logarithms(const double* s, const double* e, double* result, std::size_t n) {
    for (std::size_t i = 0; i + lane_count <= n; i += lane_count) {
        const Lanes sum = load_lanes(s + i), edge = load_lanes(e + i);
        store_lanes(result + i, vector_log_quotient(sum + edge, sum - edge, edge + edge));
    }
}

void arc_tangents(const double* y, const double* x, double* result, std::size_t n) {
    for (std::size_t i = 0; i + lane_count <= n; i += lane_count)
        store_lanes(result + i, vector_atan2(load_lanes(y + i), load_lanes(x + i)));
}

}  // namespace anomalis::ANOMALIS_VECTOR_LEVEL
