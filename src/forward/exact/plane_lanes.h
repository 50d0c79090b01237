#pragma once

#include "forward/exact/plane_kernel.h"
#include "forward/station_lanes.h"

// The logarithms and angles of bodies in the plane across strike, for kernels that are compiled once a vector
// level. To be included by such files only.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

inline constexpr double least_squared = least_corner_distance * least_corner_distance;
/// Gravity needs no hold on its logarithms: they meet a factor that vanishes. This only keeps zero out.
inline constexpr double tiny_squared = 1e-30;

template <class Real>
struct Vector {
    Real x, z;
};

template <class Real>
ANOMALIS_INLINE Vector<Real> from_station(double x, double z, Real sx, Real sz) {
    return {x - sx, z - sz};
}
template <class A, class B>
ANOMALIS_INLINE auto cross(const A& a, const B& b) {
    return vector_fma(a.x, b.z, -(a.z * b.x));
}
template <class A, class B>
ANOMALIS_INLINE auto dot(const A& a, const B& b) {
    return vector_fma(a.x, b.x, a.z * b.z);
}
template <class Real>
ANOMALIS_INLINE Real at_least(Real value, double least) {
    return value < least ? Real{} + least : value;
}
template <class Real>
ANOMALIS_INLINE Real one_if(Real a, double limit) {
    return a > limit ? Real{} + 1.0 : Real{};
}

/// ln(n / d) of two squared distances; `difference` is n - d, exact where they nearly agree.
template <class Real>
ANOMALIS_INLINE Real held_log(Real n, Real d, Real difference, double least) {
    const Real held_n = at_least(n, least);
    const Real held_d = at_least(d, least);
    // Where nothing was held the difference stands as it is.
    const Real change = (held_n - n) - (held_d - d);
    return vector_log_quotient(held_n, held_d, difference + change);
}

ANOMALIS_INLINE bool any_below(double value, double limit) {
    return value < limit;
}
ANOMALIS_INLINE bool any_below(Lanes value, double limit) {
    bool any = false;
    for (int lane = 0; lane < lane_count; ++lane) any |= value[lane] < limit;
    return any;
}

/// What a strip is made of at a station. With w = corner - station the `log` is that of |w1 w3|^2 / |w2
/// w4|^2, `angle` the angle of w1 w3 / (w2 w4) as the sum of those of its edges; without w3 and w4 for
/// endless walls.
template <class Real>
struct StripTerms {
    Real log, angle, inside;
};

template <class Real>
ANOMALIS_INLINE Real strip_anomaly(const PlaneStrip& s, const StripTerms<Real>& at) {
    return vector_fma(s.log_factor, at.log, vector_fma(-s.angle_factor, at.angle, s.inside_term * at.inside));
}

template <class Real>
ANOMALIS_INLINE StripTerms<Real> half_strip_at(const PlaneStrip& s, Real x, Real h) {
    const Vector<double> e{s.rx - s.px, s.rz - s.pz};
    const Vector<double> d{s.gx, s.gz};
    const auto wp = from_station(s.px, s.pz, x, h);
    const auto wr = from_station(s.rx, s.rz, x, h);
    const Real left = cross(wp, e);
    const double tolerance = face_tolerance * __builtin_sqrt(dot(e, e));
    const Real log =
        held_log(dot(wp, wp), dot(wr, wr), -vector_fma(e.x, wp.x + wr.x, e.z * (wp.z + wr.z)), least_squared);
    Real angle = vector_atan2(-left, dot(wp, wr));
    angle = left > tolerance ? angle : vector_abs(angle);
    if (!any_below(-left, -tolerance)) return {log, angle, Real{}};
    return {log, angle,
            one_if(left, tolerance) * one_if(cross(wr, d), face_tolerance) *
                one_if(-cross(wp, d), face_tolerance)};
}

/// The four logarithms of a parallelogram are one: with w1 w3 = w2 w4 - E G no digit is lost at any distance.
template <class Real>
ANOMALIS_INLINE StripTerms<Real> parallelogram_at(const PlaneStrip& s, Real x, Real h) {
    const Vector<double> e{s.rx - s.px, s.rz - s.pz};
    const Vector<double> g{s.gx, s.gz};
    const Vector<double> eg{e.x * g.x - e.z * g.z, e.x * g.z + e.z * g.x};
    const auto w1 = from_station(s.px, s.pz, x, h);
    const auto w2 = from_station(s.rx, s.rz, x, h);
    const auto w3 = from_station(s.rx + s.gx, s.rz + s.gz, x, h);
    const auto w4 = from_station(s.px + s.gx, s.pz + s.gz, x, h);
    const Vector<Real> a{vector_fma(w2.x, w4.x, -(w2.z * w4.z)), vector_fma(w2.x, w4.z, w2.z * w4.x)};
    const Real n1 = dot(w1, w1), n2 = dot(w2, w2), n3 = dot(w3, w3), n4 = dot(w4, w4);
    const Real denominator = at_least(n2, least_squared) * at_least(n4, least_squared);
    const Real numerator = at_least(n1, least_squared) * at_least(n3, least_squared);
    const Real exact_difference = vector_fma(-2.0, dot(eg, a), dot(eg, eg));
    const Real change = vector_fma(-n1, n3, numerator) - vector_fma(-n2, n4, denominator);
    const Real log = vector_log_quotient(numerator, denominator, exact_difference + change);

    const double area = e.x * g.z - e.z * g.x;
    const double tolerance_e = face_tolerance * __builtin_sqrt(dot(e, e));
    const double tolerance_g = face_tolerance * __builtin_sqrt(dot(g, g));
    const Real left1 = cross(w1, e);
    const Real left2 = cross(w2, g);
    const Real between1 = one_if(left1, tolerance_e) * one_if(area - left1, tolerance_e);
    const Real between2 = one_if(left2, tolerance_g) * one_if(area - left2, tolerance_g);
    // The angles of the edge and of the opposite one: both negative between their lines, else of two signs.
    Real angle = vector_atan2(cross(a, eg) * -1.0, vector_fma(n2, n4, -dot(eg, a)));
    angle = angle * between1 > 0.0 ? angle - 2 * 0x1.921fb54442d18p+1 : angle;
    return {log, angle, between1 * between2};
}

/// The wall from a corner along (dx, dz), less the part of it that grows without end.
template <class Real>
ANOMALIS_INLINE Real wall_angle(const Vector<Real>& w, const Vector<double>& d) {
    const Real k = cross(w, d);
    return k * (d.x * vector_atan2(k, dot(w, d)));
}

/// The sum before its factor. `edge` is told ln |w2 / w1|^2 and the angle of w2 / w1 of every edge.
template <class Real, class Edge>
ANOMALIS_INLINE Real mass_sum(const PlaneMass& p, Real x, Real h, const Edge& edge) {
    Real sum = Real{} + p.level;
    const auto first = from_station(p.x[0], p.z[0], x, h);
    auto w1 = first;
    Real n1 = dot(w1, w1);
    for (int j = 0; j < p.edges; ++j) {
        const Vector<double> e{p.x[j + 1] - p.x[j], p.z[j + 1] - p.z[j]};
        const auto w2 = from_station(p.x[j + 1], p.z[j + 1], x, h);
        const Real n2 = dot(w2, w2);
        const Real k = cross(w1, e);
        const Real log = held_log(n2, n1, vector_fma(e.x, w1.x + w2.x, e.z * (w1.z + w2.z)), tiny_squared);
        const Real angle = vector_atan2(k, dot(w1, w2));
        edge(j, log, angle);
        sum = vector_fma(k / dot(e, e), vector_fma(e.x, angle, -0.5 * e.z * log), sum);
        w1 = w2;
        n1 = n2;
    }
    if (!p.walls) return sum;
    const Vector<double> d{p.dx, p.dz};
    sum += wall_angle(w1, d) - wall_angle(first, d);
    if (p.dz != 0) {
        const Real n0 = at_least(dot(first, first), tiny_squared);
        const Vector<double> e{p.x[p.edges] - p.x[0], p.z[p.edges] - p.z[0]};
        const Real ratio = held_log(n1, n0, n1 - n0, tiny_squared);
        sum += 0.5 * p.dz * (cross(w1, d) * ratio + (e.x * d.z - e.z * d.x) * vector_log(n0));
    }
    return sum;
}

template <class Real>
ANOMALIS_INLINE Real mass_at(const PlaneMass& p, Real x, Real h) {
    return mass_sum(p, x, h, [](int, Real, Real) __attribute__((always_inline)){}) * p.factor;
}

ANOMALIS_INLINE void store(double* to, double value) {
    *to = value;
}
ANOMALIS_INLINE void store(double* to, Lanes value) {
    store_lanes(to, value);
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
