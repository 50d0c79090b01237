#include "vector_math_loops.h"

#include "vector/vector_math.h"

namespace anomalis::vector::ANOMALIS_VECTOR_LEVEL {

void log_loop(const double* x, double* result, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) result[i] = vector_log(x[i]);
}

void log_quotient_loop(const double* s, const double* e, double* result, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) result[i] = vector_log_quotient(s[i] + e[i], s[i] - e[i], 2 * e[i]);
}

void atan_loop(const double* x, double* result, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) result[i] = vector_atan(x[i]);
}

void atan2_loop(const double* y, const double* x, double* result, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) result[i] = vector_atan2(y[i], x[i]);
}

void atan2_by_lanes(const double* y, const double* x, double* result, std::size_t n) {
    for (std::size_t i = 0; i + lane_count <= n; i += lane_count)
        store_lanes(result + i, vector_atan2(load_lanes(y + i), load_lanes(x + i)));
}

void sqrt_by_lanes(const double* x, double* result, std::size_t n) {
    for (std::size_t i = 0; i + lane_count <= n; i += lane_count)
        store_lanes(result + i, vector_sqrt(load_lanes(x + i)));
}

void fma_loop(const double* a, const double* b, const double* c, double* result, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) result[i] = vector_fma(a[i], b[i], c[i]);
}

void fma_by_lanes(const double* a, const double* b, const double* c, double* result, std::size_t n) {
    for (std::size_t i = 0; i + lane_count <= n; i += lane_count)
        store_lanes(result + i, vector_fma(load_lanes(a + i), load_lanes(b + i), load_lanes(c + i)));
}

bool any_less_of_lanes(const double* a, const double* b) {
    return any_less(load_lanes(a), load_lanes(b));
}

int lanes_at_once() {
    return lane_count;
}

}  // namespace anomalis::vector::ANOMALIS_VECTOR_LEVEL
