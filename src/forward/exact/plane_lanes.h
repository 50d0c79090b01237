#pragma once

#include "forward/exact/edge_lanes.h"
#include "forward/exact/plane_kernel.h"
#include "forward/station_lanes.h"

// The logarithms and angles of bodies in the plane across strike, for kernels that are compiled once a vector
// level. To be included by such files only.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

inline constexpr double least_squared = least_corner_distance * least_corner_distance;
/// Gravity needs no hold on its logarithms: they meet a factor that vanishes. This only keeps zero out.
inline constexpr double tiny_squared = 1e-30;

template <class Real>
ANOMALIS_INLINE Vector<Real> from_station(double x, double z, Real sx, Real sz) {
    return {x - sx, z - sz};
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
    const double length = dot(e, e);
    const double tolerance = face_tolerance * __builtin_sqrt(length);
    const Vector<Real> middle{vector_fma(-2.0, x, s.px + s.rx), vector_fma(-2.0, h, s.pz + s.rz)};
    const auto near = [&]() __attribute__((always_inline)) {
        const auto wp = from_station(s.px, s.pz, x, h);
        const auto wr = from_station(s.rx, s.rz, x, h);
        const Real left = cross(wp, e);
        const Real log = held_log(dot(wr, wr), dot(wp, wp), dot(middle, e), least_squared);
        const Real angle = vector_atan2(left, dot(wp, wr));
        return EdgeSight<Real>{log, left > tolerance ? angle : -vector_abs(angle)};
    };
    const EdgeSight<Real> at = sight(e, length, series_limit(length, least_squared), middle, near);
    if (!any_less(tolerance, cross(middle, e))) return {-at.log, -at.angle, Real{}};
    const Vector<double> d{s.gx, s.gz};
    const auto wp = from_station(s.px, s.pz, x, h);
    const auto wr = from_station(s.rx, s.rz, x, h);
    return {-at.log, -at.angle,
            one_if(cross(wp, e), tolerance) * one_if(cross(wr, d), face_tolerance) *
                one_if(-cross(wp, d), face_tolerance)};
}

/// As series_limit, for the product E G: what is farther is also farther from every corner than the distance
/// at which logarithms are held.
ANOMALIS_INLINE double parallelogram_limit(const Vector<double>& e, const Vector<double>& g,
                                           double eg_squared) {
    const double across = __builtin_sqrt(dot(e, e)) + __builtin_sqrt(dot(g, g)) + least_corner_distance;
    return series_limit(eg_squared, least_squared * across * across);
}

/// The four logarithms of a parallelogram are one: with w1 w3 = w2 w4 - E G no digit is lost at any distance.
template <class Real>
ANOMALIS_INLINE StripTerms<Real> parallelogram_at(const PlaneStrip& s, Real x, Real h) {
    const Vector<double> e{s.rx - s.px, s.rz - s.pz};
    const Vector<double> g{s.gx, s.gz};
    const Vector<double> eg{e.x * g.x - e.z * g.z, e.x * g.z + e.z * g.x};
    const double eg_squared = dot(eg, eg);
    const auto w2 = from_station(s.rx, s.rz, x, h);
    const auto w4 = from_station(s.px + s.gx, s.pz + s.gz, x, h);
    const Vector<Real> a{vector_fma(w2.x, w4.x, -(w2.z * w4.z)), vector_fma(w2.x, w4.z, w2.z * w4.x)};
    const Vector<Real> middle{vector_fma(2.0, a.x, -eg.x), vector_fma(2.0, a.z, -eg.z)};
    const auto near = [&]() __attribute__((always_inline)) {
        const auto w1 = from_station(s.px, s.pz, x, h);
        const auto w3 = from_station(s.rx + s.gx, s.rz + s.gz, x, h);
        const Real n1 = dot(w1, w1), n2 = dot(w2, w2), n3 = dot(w3, w3), n4 = dot(w4, w4);
        const Real denominator = at_least(n2, least_squared) * at_least(n4, least_squared);
        const Real numerator = at_least(n1, least_squared) * at_least(n3, least_squared);
        const Real exact_difference = vector_fma(-2.0, dot(eg, a), dot(eg, eg));
        const Real change = vector_fma(-n1, n3, numerator) - vector_fma(-n2, n4, denominator);
        return EdgeSight<Real>{vector_log_quotient(numerator, denominator, exact_difference + change),
                               vector_atan2(-cross(a, eg), vector_fma(n2, n4, -dot(eg, a)))};
    };
    const EdgeSight<Real> at =
        sight(Vector<double>{-eg.x, -eg.z}, eg_squared, parallelogram_limit(e, g, eg_squared), middle, near);

    const double area = e.x * g.z - e.z * g.x;
    const double tolerance_e = face_tolerance * __builtin_sqrt(dot(e, e));
    const Real left1 = cross(from_station(s.px, s.pz, x, h), e);
    if (!any_less(tolerance_e, left1)) return {at.log, at.angle, Real{}};
    const double tolerance_g = face_tolerance * __builtin_sqrt(dot(g, g));
    const Real left2 = cross(w2, g);
    const Real between1 = one_if(left1, tolerance_e) * one_if(area - left1, tolerance_e);
    const Real between2 = one_if(left2, tolerance_g) * one_if(area - left2, tolerance_g);
    // The angles of the edge and of the opposite one: both negative between their lines, else of two signs.
    const Real angle = at.angle * between1 > 0.0 ? at.angle - 2 * 0x1.921fb54442d18p+1 : at.angle;
    return {at.log, angle, between1 * between2};
}

/// The wall from a corner along (dx, dz), less the part of it that grows without end.
template <class Real>
ANOMALIS_INLINE Real wall_angle(const Vector<Real>& w, const Vector<double>& d) {
    const Real k = cross(w, d);
    return k * (d.x * vector_atan2(k, dot(w, d)));
}

/// ln |w2 / w1|^2 and the angle of w2 / w1 of an edge, w from the station to its corners, `middle` the sum of
/// both. Near the edge angle_of(left, angle) says what the angle is on its line, left = w1 x w2.
template <class Real, class Angle>
ANOMALIS_INLINE EdgeSight<Real> edge_sight(const PlaneEdge& e, double least, Real x, Real h,
                                           const Vector<Real>& middle, const Angle& angle_of) {
    const Vector<double> d{e.dx, e.dz};
    const auto near = [&]() __attribute__((always_inline)) {
        const auto w1 = from_station(e.x1, e.z1, x, h);
        const auto w2 = from_station(e.x2, e.z2, x, h);
        const Real left = cross(w1, d);
        const Real log = held_log(dot(w2, w2), dot(w1, w1), dot(middle, d), least);
        return EdgeSight<Real>{log, angle_of(left, vector_atan2(left, dot(w1, w2)))};
    };
    return sight(d, e.squared, e.limit, middle, near);
}

/// The part of edges of a mass, before its factor. `edge` is told ln |w2 / w1|^2 and the angle of w2 / w1.
template <class Real, class Edge>
ANOMALIS_INLINE Real edges_sum(const EdgeRow& row, Real x, Real h, Real sum, const Edge& edge) {
    const Vector<Real> twice{x + x, h + h};
    for (int j = 0; j < row.count; ++j) {
        const PlaneEdge& e = row.edge[j];
        const Vector<Real> middle{e.sum_x - twice.x, e.sum_z - twice.z};
        const EdgeSight<Real> at = edge_sight(
            e, tiny_squared, x, h, middle,
            [](Real, Real angle) __attribute__((always_inline)) { return angle; });
        edge(j, at.log, at.angle);
        sum = vector_fma(cross(middle, Vector<double>{e.dx, e.dz}),
                         vector_fma(e.level, at.angle, e.steep * at.log), sum);
    }
    return sum;
}

/// The level of a mass and its endless walls, before its factor.
template <class Real>
ANOMALIS_INLINE Real walls_sum(const PlaneMass& p, Real x, Real h) {
    Real sum = Real{} + p.level;
    if (!p.walls) return sum;
    const auto first = from_station(p.x[0], p.z[0], x, h);
    const auto last = from_station(p.x[p.edges], p.z[p.edges], x, h);
    const Vector<double> d{p.dx, p.dz};
    sum += wall_angle(last, d) - wall_angle(first, d);
    if (p.dz != 0) {
        const Real n0 = at_least(dot(first, first), tiny_squared);
        const Real n1 = dot(last, last);
        const Vector<double> e{p.x[p.edges] - p.x[0], p.z[p.edges] - p.z[0]};
        const Real ratio = held_log(n1, n0, n1 - n0, tiny_squared);
        sum += 0.5 * p.dz * (cross(last, d) * ratio + (e.x * d.z - e.z * d.x) * vector_log(n0));
    }
    return sum;
}

ANOMALIS_INLINE void store(double* to, double value) {
    *to = value;
}
ANOMALIS_INLINE void store(double* to, Lanes value) {
    store_lanes(to, value);
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
