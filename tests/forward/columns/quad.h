#pragma once

#include <cmath>

// Quadruple precision with the few functions that a reference needs: a starting value in long double, and one
// step that doubles its digits.
namespace anomalis::forward {

#if defined(__SIZEOF_FLOAT128__)
__extension__ typedef __float128 Quad;
#else
using Quad = long double;
#endif

struct QuadPair {
    Quad x = 0, z = 0;
};

inline QuadPair operator+(const QuadPair& a, const QuadPair& b) {
    return {a.x + b.x, a.z + b.z};
}
inline QuadPair operator-(const QuadPair& a, const QuadPair& b) {
    return {a.x - b.x, a.z - b.z};
}
inline QuadPair operator*(Quad factor, const QuadPair& a) {
    return {factor * a.x, factor * a.z};
}
inline Quad dot(const QuadPair& a, const QuadPair& b) {
    return a.x * b.x + a.z * b.z;
}
inline Quad cross(const QuadPair& a, const QuadPair& b) {
    return a.x * b.z - a.z * b.x;
}

/// exp(a), a complex: the series of a small part of it, squared back.
inline QuadPair quad_exp(QuadPair a) {
    constexpr int halvings = 11, terms = 14;
    for (int k = 0; k < halvings; ++k) a = Quad(0.5) * a;
    QuadPair sum{1, 0};
    for (int k = terms; k > 0; --k) {
        const QuadPair next{a.x * sum.x - a.z * sum.z, a.x * sum.z + a.z * sum.x};
        sum = {1 + next.x / k, next.z / k};
    }
    for (int k = 0; k < halvings; ++k) sum = {sum.x * sum.x - sum.z * sum.z, 2 * sum.x * sum.z};
    return sum;
}

/// The logarithm of a complex number: of its size, and its angle from -pi to pi.
inline QuadPair quad_log(const QuadPair& v) {
    const auto x = static_cast<long double>(v.x), z = static_cast<long double>(v.z);
    const QuadPair near{std::log(std::hypot(x, z)), std::atan2(z, x)};
    const QuadPair back = quad_exp({-near.x, -near.z});
    return {near.x + (v.x * back.x - v.z * back.z - 1), near.z + (v.x * back.z + v.z * back.x)};
}

inline Quad quad_sqrt(Quad value) {
    const Quad near = std::sqrt(static_cast<long double>(value));
    return near == 0 ? near : (near + value / near) / 2;
}

/// pi as the angle that it is.
inline Quad quad_pi() {
    static const Quad pi = quad_log({-1, 0}).z;
    return pi;
}

inline Quad quad_cos(Quad degrees) {
    return quad_exp({0, degrees * quad_pi() / 180}).x;
}
inline Quad quad_sin(Quad degrees) {
    return quad_exp({0, degrees * quad_pi() / 180}).z;
}

}  // namespace anomalis::forward
