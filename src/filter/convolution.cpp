#include "filter/convolution.h"

#include "vector/vector_math.h"

namespace anomalis::filter::ANOMALIS_VECTOR_LEVEL {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

namespace {

// Everything is written once for Lanes and for a double, which takes the stations that are left over.

template <class Vector>
constexpr int width_of = static_cast<int>(sizeof(Vector) / sizeof(double));

template <class Vector>
ANOMALIS_INLINE Vector load(const double* from) {
    Vector value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

using SingleLanes = float __attribute__((vector_size(ANOMALIS_VECTOR_BYTES / 2)));

ANOMALIS_INLINE SingleLanes to_singles(Lanes value) {
    return __builtin_convertvector(value, SingleLanes);
}
ANOMALIS_INLINE float to_singles(double value) {
    return static_cast<float>(value);
}

/// Far above a number in (1, 2), where doubles stand as close as singles do there.
constexpr double coarse = 0x1.8p29;

/// What storing in a single and reading back leaves (below 1e-38, where singles thin out, some digits more).
/// Adding a large power of two rounds to the grid of the singles, ties to even, in fewer operations than two
/// conversions. The grid is exact, so fusing it changes no bit; where that is a call, nothing is fused.
template <class Real>
ANOMALIS_INLINE Real through_single(Real value) {
    const Real power = detail::from_bits<Real>(detail::bits(value) & detail::exponent_bits);
#if ANOMALIS_VECTOR_BYTES > 16
    return vector_fma(power, -coarse, vector_fma(power, coarse, value));
#else
    const Real grid = power * coarse;
    return (value + grid) - grid;
#endif
}

template <class Vector, bool Odd>
ANOMALIS_INLINE Vector pair_of(const double* left, const double* right) {
    if constexpr (Odd) return load<Vector>(right) - load<Vector>(left);
    return load<Vector>(left) + load<Vector>(right);
}

/// `Count` vectors of stations from station `at` (numbered from 0) on: enough of them to hide the latency of
/// the additions, which must follow one another for each station.
template <class Vector, int Count, bool Odd>
ANOMALIS_INLINE void block(const Convolution& pass, int at) {
    constexpr int width = width_of<Vector>;
    const double* const x = pass.input + at;
    const double* const c = pass.coefficients;
    Vector sum[Count];
#pragma GCC unroll 8
    for (int k = 0; k < Count; ++k) sum[k] = through_single(load<Vector>(x + k * width) * c[0]);
    const double* left = x;
    const double* right = x;
    for (int j = 1; j <= pass.near_taps; ++j) {
        left -= pass.tap_step;
        right += pass.tap_step;
        if (c[j] == 0) continue;
#pragma GCC unroll 8
        for (int k = 0; k < Count; ++k)
            sum[k] = through_single(
                vector_fma(pair_of<Vector, Odd>(left + k * width, right + k * width), c[j], sum[k]));
    }
    for (int j = pass.near_taps + 1; j <= pass.stored_taps; ++j) {
        const double term = pass.end_pair * c[j];
#pragma GCC unroll 8
        for (int k = 0; k < Count; ++k) sum[k] = through_single(sum[k] + term);
    }
    if (pass.remainder != 0) {
        const double term = pass.end_pair * pass.remainder;
#pragma GCC unroll 8
        for (int k = 0; k < Count; ++k)
            sum[k] += pass.tap_step == 0 ? pair_of<Vector, Odd>(x + k * width, x + k * width) * pass.remainder
                                         : Vector{} + term;
    }
#pragma GCC unroll 8
    for (int k = 0; k < Count; ++k) {
        const Vector result = pass.subtract ? load<Vector>(x + k * width) - sum[k] : sum[k];
        const auto singles = to_singles(result);
        __builtin_memcpy(pass.output + at + k * width, &singles, sizeof singles);
    }
}

template <bool Odd>
ANOMALIS_INLINE void run(const Convolution& pass) {
    constexpr int vectors = 8;
    int at = 0;
    for (; at + vectors * lane_count <= pass.stations; at += vectors * lane_count)
        block<Lanes, vectors, Odd>(pass, at);
    for (; at + lane_count <= pass.stations; at += lane_count) block<Lanes, 1, Odd>(pass, at);
    for (; at < pass.stations; ++at) block<double, 1, Odd>(pass, at);
}

}  // namespace

void convolve(const Convolution& pass) {
    if (pass.odd) return run<true>(pass);
    run<false>(pass);
}

}  // namespace anomalis::filter::ANOMALIS_VECTOR_LEVEL
