#pragma once

// Branch-free elementary functions for kernels that run over many stations.
//
// Every function is a template over `double` and `Lanes`, the widest vector of doubles of the translation
// unit. A plain loop over doubles vectorises by itself; a loop that is written with Lanes is sure to. Only
// the four operations, the square root and vector_fma are used, each rounded on its own, so a lane gives the
// same bits whatever the width of the vector. Products and sums are fused where vector_fma says so and
// nowhere else: what a compiler fuses by itself differs between widths.
//
// How to write a kernel that uses the widest vectors of the processor it meets:
//
//   // sheet_kernel.h: declares the kernel once a level, and `thin_sheet_at(level)` that picks one
//   #include "vector/vector_levels.h"
//   namespace anomalis {
//   ANOMALIS_VECTOR_KERNEL(void, thin_sheet, (const Sheet& sheet, const double* x, double* t, std::size_t n))
//   }
//
//   // sheet_kernel.cpp: compiled once a level
//   #include "vector/vector_math.h"
//   namespace anomalis::ANOMALIS_VECTOR_LEVEL {
//   void thin_sheet(const Sheet& sheet, const double* x, double* t, std::size_t n) {
//       for (std::size_t i = 0; i < n; ++i) t[i] = vector_log(1 + x[i] * x[i]) + vector_atan(x[i]);
//   }
//   }
//
//   // CMakeLists.txt, after anomalis_room(forward ...)
//   anomalis_vector_sources(forward sheet_kernel.cpp)
//
//   // the caller
//   thin_sheet_at(widest_vector_level())(sheet, x, t, n);
//
// A kernel file must not include or call anything inline that other files share (standard containers, spans,
// std::min): such a function compiled for wide vectors could be the copy that the linker keeps for the whole
// program. Pass plain structs and pointers, and keep what the file defines in ANOMALIS_VECTOR_LEVEL.

#include <cstdint>

#ifndef ANOMALIS_VECTOR_LEVEL
#define ANOMALIS_VECTOR_LEVEL vector_baseline
#endif

#if defined(__AVX512F__)
#define ANOMALIS_VECTOR_BYTES 64
#elif defined(__AVX__)
#define ANOMALIS_VECTOR_BYTES 32
#else
#define ANOMALIS_VECTOR_BYTES 16
#endif

// GCC makes one instruction of a loop over the lanes only by a search that is off for kernels, see
// anomalis_vector_sources; other compilers do so in any case.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define ANOMALIS_GCC_LANES
#endif

#define ANOMALIS_INLINE [[gnu::always_inline]] inline

namespace anomalis::vector::ANOMALIS_VECTOR_LEVEL {

/// As many doubles as one register holds, and their bit patterns.
using Lanes = double __attribute__((vector_size(ANOMALIS_VECTOR_BYTES)));
using LaneBits = std::uint64_t __attribute__((vector_size(ANOMALIS_VECTOR_BYTES)));
inline constexpr int lane_count = ANOMALIS_VECTOR_BYTES / 8;

/// Reads and writes a vector at any address.
ANOMALIS_INLINE Lanes load_lanes(const double* from) {
    Lanes value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}
ANOMALIS_INLINE void store_lanes(double* to, Lanes value) {
    __builtin_memcpy(to, &value, sizeof value);
}

namespace detail {

/// A number in every lane; nothing where it is one already.
template <class Wide>
ANOMALIS_INLINE Wide spread(Wide value) {
    return value;
}
template <class Wide, class Narrow>
requires(sizeof(Wide) > sizeof(Narrow)) ANOMALIS_INLINE Wide spread(Narrow value) {
    return value - Wide{};
}

ANOMALIS_INLINE bool any_less_lane(double a, double b) {
    return a < b;
}
ANOMALIS_INLINE bool any_less_lane(Lanes a, Lanes b) {
#if defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 64
    return __builtin_ia32_cmppd512_mask(a, b, 17, -1, 4) != 0;  // 17: less, ordered, quiet
#elif defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 32
    return __builtin_ia32_movmskpd256(__builtin_bit_cast(Lanes, a < b)) != 0;
#elif defined(ANOMALIS_GCC_LANES)
    return __builtin_ia32_movmskpd(__builtin_bit_cast(Lanes, a < b)) != 0;
#else
    bool any = false;
    for (int lane = 0; lane < lane_count; ++lane) any |= a[lane] < b[lane];
    return any;
#endif
}

ANOMALIS_INLINE double fused(double a, double b, double c) {
    return __builtin_fma(a, b, c);
}
ANOMALIS_INLINE Lanes fused(Lanes a, Lanes b, Lanes c) {
#if defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 64
    return __builtin_ia32_vfmaddpd512_mask(a, b, c, -1, 4);  // 4: rounds as everything else does
#elif defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 32
    return __builtin_ia32_vfmaddpd256(a, b, c);
#else
    Lanes result = c;
    for (int lane = 0; lane < lane_count; ++lane) result[lane] = __builtin_fma(a[lane], b[lane], c[lane]);
    return result;
#endif
}

}  // namespace detail

/// Whether any lane of `a` is below that of `b`; NaN is not. Each may be a double or Lanes.
template <class A, class B>
ANOMALIS_INLINE bool any_less(A a, B b) {
    using Real = decltype(a + b);
    return detail::any_less_lane(detail::spread<Real>(a), detail::spread<Real>(b));
}

/// a b + c, rounded once. Each may be a double or Lanes. The baseline asks the C library, which has the
/// processor's own instruction where there is one, so that the bits are the same everywhere.
template <class A, class B, class C>
ANOMALIS_INLINE auto vector_fma(A a, B b, C c) {
    using Real = decltype(a + b + c);
    return detail::fused(detail::spread<Real>(a), detail::spread<Real>(b), detail::spread<Real>(c));
}

namespace detail {

template <class Real>
struct BitsOf;
template <>
struct BitsOf<double> {
    using type = std::uint64_t;
};
template <>
struct BitsOf<Lanes> {
    using type = LaneBits;
};
template <class Real>
using Bits = typename BitsOf<Real>::type;

inline constexpr std::uint64_t sign_bit = 0x8000000000000000U;
inline constexpr std::uint64_t exponent_bits = 0x7FF0000000000000U;
inline constexpr std::uint64_t exponent_of_one = 0x3FF0000000000000U;
inline constexpr std::uint64_t half_an_exponent = 0x0008000000000000U;
inline constexpr double smallest_normal = 0x1p-1022;

template <class Real>
ANOMALIS_INLINE Bits<Real> bits(Real value) {
    return __builtin_bit_cast(Bits<Real>, value);
}

template <class Real>
ANOMALIS_INLINE Real from_bits(Bits<Real> pattern) {
    return __builtin_bit_cast(Real, pattern);
}

/// atanh(s) / s - 1 as a polynomial in z = s^2, |s| <= 0.2005: Chebyshev fit, relative error below 6e-17.
template <class Real>
ANOMALIS_INLINE Real atanh_tail(Real z) {
    Real p = vector_fma(z, 0x1.35b99f3a4cd26p-4, 0x1.38ffd7ff2ea9cp-4);
    p = vector_fma(p, z, 0x1.746bd7ec3f49dp-4);
    p = vector_fma(p, z, 0x1.c71c3c49cff06p-4);
    p = vector_fma(p, z, 0x1.249249529dd5cp-3);
    p = vector_fma(p, z, 0x1.999999997bed9p-3);
    return vector_fma(p, z, 0x1.555555555556ep-2) * z;
}

/// atan(t) / t - 1 as a polynomial in z = t^2, |t| <= tan(pi / 16): Chebyshev fit, relative error below
/// 4e-17.
template <class Real>
ANOMALIS_INLINE Real atan_tail(Real z) {
    Real p = vector_fma(z, -0x1.e41614b2c7b99p-5, 0x1.396db8c7f67aap-4);
    p = vector_fma(p, z, -0x1.7451d4b1cc5e5p-4);
    p = vector_fma(p, z, 0x1.c71c4a15685abp-4);
    p = vector_fma(p, z, -0x1.24924903293d3p-3);
    p = vector_fma(p, z, 0x1.9999999984786p-3);
    return vector_fma(p, z, -0x1.5555555555544p-2) * z;
}

/// The power of two nearest to n / d on the logarithmic scale (within a factor of 1.51).
template <class Real>
ANOMALIS_INLINE Real nearest_power(Real n, Real d) {
    return from_bits<Real>((bits(n) - bits(d) + (exponent_of_one + half_an_exponent)) & exponent_bits);
}

/// k of the power of two 2^k.
template <class Real>
ANOMALIS_INLINE Real exponent_of(Real power) {
    constexpr std::uint64_t two_to_52 = 0x4330000000000000U;
    return from_bits<Real>((bits(power) >> 52) | two_to_52) - (0x1p52 + 1023.0);
}

/// k log(2) + 2 atanh(s).
template <class Real>
ANOMALIS_INLINE Real assemble_log(Real k, Real s) {
    constexpr double log2_high = 0x1.62e42fefa3800p-1;  // 42 bits, so that k * log2_high is exact
    constexpr double log2_low = 0x1.ef35793c76730p-45;
    const Real twice = s + s;
    return vector_fma(k, log2_high, twice + vector_fma(twice, atanh_tail(s * s), k * log2_low));
}

}  // namespace detail

/// |value|; keeps NaN.
template <class Real>
ANOMALIS_INLINE Real vector_abs(Real value) {
    return detail::from_bits<Real>(detail::bits(value) & ~detail::sign_bit);
}

/// The magnitude of the first with the sign of the second.
template <class Real>
ANOMALIS_INLINE Real vector_copysign(Real magnitude, Real sign) {
    return detail::from_bits<Real>((detail::bits(magnitude) & ~detail::sign_bit) |
                                   (detail::bits(sign) & detail::sign_bit));
}

/// Square root, correctly rounded.
ANOMALIS_INLINE double vector_sqrt(double value) {
    return __builtin_sqrt(value);
}
ANOMALIS_INLINE Lanes vector_sqrt(Lanes value) {
#if defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 64
    return __builtin_ia32_sqrtpd512_mask(value, value, -1, 4);
#elif defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 32
    return __builtin_ia32_sqrtpd256(value);
#elif defined(ANOMALIS_GCC_LANES)
    return __builtin_ia32_sqrtpd(value);
#else
    Lanes root = value;
    for (int lane = 0; lane < lane_count; ++lane) root[lane] = __builtin_sqrt(value[lane]);
    return root;
#endif
}

/// log(n / d) for positive normal n and d whose quotient is between 2^-1022 and 2^1023.
/// `difference` is n - d as the caller knows it best: with it the result keeps its relative accuracy where n
/// and d nearly agree, for instance n = s + e, d = s - e, difference = 2 e. Error below 1e-15 of the result.
/// NaN in either gives NaN; n or d of 0 gives no useful number.
template <class Real>
ANOMALIS_INLINE Real vector_log_quotient(Real n, Real d, Real difference) {
    const Real power = detail::nearest_power(n, d);
    const Real numerator = power == 1.0 ? difference : vector_fma(-power, d, n);
    return detail::assemble_log(detail::exponent_of(power), numerator / vector_fma(power, d, n));
}

/// The same where n and d are all that is known: accurate to 1e-15 of the larger of 1 and the result.
template <class Real>
ANOMALIS_INLINE Real vector_log_quotient(Real n, Real d) {
    const Real power = detail::nearest_power(n, d);
    return detail::assemble_log(detail::exponent_of(power),
                                vector_fma(-power, d, n) / vector_fma(power, d, n));
}

/// Natural logarithm of a positive normal number below 2^1023, relative error below 1e-15.
template <class Real>
ANOMALIS_INLINE Real vector_log(Real x) {
    return vector_log_quotient(x, Real{} + 1.0);
}

/// Angle of the vector (x, y) in -pi to pi, relative error below 1e-15; atan2(0, 0) = 0. The sign of a zero x
/// does not count: atan2(y, -0) = pi / 2 with the sign of y, atan2(0, -0) = 0. NaN in either gives NaN.
template <class Real>
ANOMALIS_INLINE Real vector_atan2(Real y, Real x) {
    constexpr double tan_pi_8 = 0x1.a827999fcef32p-2;
    constexpr double tan_pi_16 = 0x1.975f5e0553158p-3;
    constexpr double tan_3pi_16 = 0x1.561b82ab7f990p-1;
    constexpr double pi = 0x1.921fb54442d18p+1;
    const Real ax = vector_abs(x);
    const Real ay = vector_abs(y);
    const Real low = ay > ax ? ax : ay;
    const Real high = ay > ax ? ay : ax;
    // Turn the vector back by 0, pi / 8 or pi / 4, whichever leaves the smallest angle.
    const Real zero = Real{};
    const Real turn =
        low > tan_3pi_16 * high ? zero + 1.0 : (low > tan_pi_16 * high ? zero + tan_pi_8 : zero);
    const Real turned =
        low > tan_3pi_16 * high ? zero + pi / 4 : (low > tan_pi_16 * high ? zero + pi / 8 : zero);
    const Real t = vector_fma(-turn, high, low) / (vector_fma(turn, low, high) + detail::smallest_normal);
    Real angle = turned + vector_fma(t, detail::atan_tail(t * t), t);
    angle = ay > ax ? pi / 2 - angle : angle;
    angle = x < 0.0 ? pi - angle : angle;
    return vector_copysign(angle, y);
}

/// Arc tangent in -pi/2 to pi/2, relative error below 1e-15.
template <class Real>
ANOMALIS_INLINE Real vector_atan(Real x) {
    return vector_atan2(x, Real{} + 1.0);
}

}  // namespace anomalis::vector::ANOMALIS_VECTOR_LEVEL
