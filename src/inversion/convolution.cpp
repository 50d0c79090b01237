#include "inversion/convolution.h"

#include "forward/vector_math.h"

namespace anomalis::ANOMALIS_VECTOR_LEVEL {

namespace {

using Singles = float __attribute__((vector_size(ANOMALIS_VECTOR_BYTES)));
/// A vector of one, for the stations that are left over.
using Single = float __attribute__((vector_size(sizeof(float))));

template <class Vector>
constexpr int width_of = static_cast<int>(sizeof(Vector) / sizeof(float));

template <class Vector>
ANOMALIS_INLINE Vector load(const float* from) {
    Vector value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

template <class Vector, bool Odd>
ANOMALIS_INLINE Vector pair_of(const float* left, const float* right) {
    if constexpr (Odd) return load<Vector>(right) - load<Vector>(left);
    return load<Vector>(left) + load<Vector>(right);
}

/// `Count` vectors of stations from station `at` (numbered from 0) on: enough of them to hide the latency of
/// the additions, which must follow one another for each station.
template <class Vector, int Count, bool Odd>
ANOMALIS_INLINE void block(const Convolution& pass, int at) {
    constexpr int width = width_of<Vector>;
    const float* const x = pass.input + at;
    const float* const c = pass.coefficients;
    Vector sum[Count];
#pragma GCC unroll 8
    for (int k = 0; k < Count; ++k) sum[k] = load<Vector>(x + k * width) * c[0];
    const float* left = x;
    const float* right = x;
    for (int j = 1; j <= pass.near_taps; ++j) {
        left -= pass.tap_step;
        right += pass.tap_step;
#pragma GCC unroll 8
        for (int k = 0; k < Count; ++k)
            sum[k] += pair_of<Vector, Odd>(left + k * width, right + k * width) * c[j];
    }
    for (int j = pass.near_taps + 1; j <= pass.stored_taps; ++j) {
        const float term = pass.end_pair * c[j];
#pragma GCC unroll 8
        for (int k = 0; k < Count; ++k) sum[k] += term;
    }
    if (pass.remainder != 0) {
        const float term = pass.end_pair * pass.remainder;
#pragma GCC unroll 8
        for (int k = 0; k < Count; ++k)
            sum[k] += pass.tap_step == 0 ? pair_of<Vector, Odd>(x + k * width, x + k * width) * pass.remainder
                                         : Vector{} + term;
    }
#pragma GCC unroll 8
    for (int k = 0; k < Count; ++k) {
        const Vector result = pass.subtract ? load<Vector>(x + k * width) - sum[k] : sum[k];
        __builtin_memcpy(pass.output + at + k * width, &result, sizeof result);
    }
}

template <bool Odd>
ANOMALIS_INLINE void run(const Convolution& pass) {
    constexpr int width = width_of<Singles>;
    constexpr int vectors = 8;
    int at = 0;
    for (; at + vectors * width <= pass.stations; at += vectors * width)
        block<Singles, vectors, Odd>(pass, at);
    for (; at + width <= pass.stations; at += width) block<Singles, 1, Odd>(pass, at);
    for (; at < pass.stations; ++at) block<Single, 1, Odd>(pass, at);
}

}  // namespace

void convolve(const Convolution& pass) {
    if (pass.odd) return run<true>(pass);
    run<false>(pass);
}

}  // namespace anomalis::ANOMALIS_VECTOR_LEVEL
