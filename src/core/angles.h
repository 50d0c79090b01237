#pragma once

#include <cmath>

namespace anomalis {

/// Degrees to radians, in the digits that angles of single precision have. All rooms take this one: with a
/// longer constant beside it the parts of one body would differ in the eighth digit.
inline constexpr double radians_per_degree = 0.017453292;
inline constexpr double pi = 3.14159265358979;

inline double sign_of(double v) {
    return v > 0 ? 1.0 : v < 0 ? -1.0 : 0.0;
}

/// Two-argument arc tangent in -pi to pi (radians); an x of 0 counts as 1e-9.
inline double guarded_atan2(double y, double x) {
    if (x == 0) x = 1e-9;
    const double a = std::atan(std::abs(y) / std::abs(x));
    const double t = (a * sign_of(y) - pi / 2) * sign_of(x) + pi / 2;
    return t > pi ? t - 6.28318530717958 : t;
}

/// Arc cosine in 0 to pi (radians) of any number: 1 and above give 0, -1 and below give pi.
inline double guarded_acos(double v) {
    if (v >= 1) return 0;
    if (v <= -1) return pi;
    return std::atan(-v / std::sqrt(1 - v * v)) + pi / 2;
}

}  // namespace anomalis
