#pragma once

#include "forward/station_lanes.h"

// Logarithm and angle of an edge as a station sees it, for kernels that are compiled once a vector level. To
// be included by such files only.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

template <class Real>
struct Vector {
    Real x, z;
};

template <class A, class B>
ANOMALIS_INLINE auto cross(const A& a, const B& b) {
    return vector_fma(a.x, b.z, -(a.z * b.x));
}
template <class A, class B>
ANOMALIS_INLINE auto dot(const A& a, const B& b) {
    return vector_fma(a.x, b.x, a.z * b.z);
}
/// The larger of both; keeps NaN.
template <class Real>
ANOMALIS_INLINE Real at_least(Real value, double least) {
    return value < least ? Real{} + least : value;
}

/// Twice the logarithm of the quotient of two distances, and the angle between their directions.
template <class Real>
struct EdgeSight {
    Real log, angle;
};

/// How far a station is, as twice the distance from the middle of an edge over its length, squared, so that
/// the series below keeps its digits; and so that its first half does.
inline constexpr double series_reach = 16, short_series_reach = 256;

/// From where on the series serves for a quotient of this numerator, squared. Below it are also all
/// distances at which logarithms are held at `least`.
ANOMALIS_INLINE double series_limit(double numerator_squared, double least) {
    const double reach = series_reach * numerator_squared;
    return reach > 16 * least ? reach : 16 * least;
}

/// The complex ln((m + d) / (m - d)) = 2 atanh(s), s = d / m: logarithm and angle of an edge d between
/// corners whose sum is m, in one division and without loss however far the edge is. |s| at most 1/4, where
/// twelve terms of the series hold, or 1/16 for six; by the recurrence of Goertzel (1958) for a polynomial
/// with real coefficients, z = s^2.
template <int terms, class Real, class Numerator>
ANOMALIS_INLINE EdgeSight<Real> series_sight(const Numerator& d, double d_squared, const Vector<Real>& m,
                                             Real m_squared) {
    constexpr int last = terms - 1;
    const Real inverse = 1.0 / m_squared;
    const Vector<Real> s{dot(m, d) * inverse, cross(m, d) * inverse};
    const Vector<Real> twice{s.x + s.x, s.z + s.z};
    const Real squared = d_squared * inverse;
    const Real x = vector_fma(s.x, s.x, -(s.z * s.z));
    const Real twice_x = x + x;
    const Real less = -(squared * squared);
    Real after = Real{} + 1.0 / (2 * last + 1);
    Real b = vector_fma(twice_x, after, 1.0 / (2 * last - 1));
    for (int k = last - 2; k > 0; --k) {
        const Real next = vector_fma(twice_x, b, vector_fma(less, after, 1.0 / (2 * k + 1)));
        after = b;
        b = next;
    }
    const Real re = vector_fma(x, b, vector_fma(less, after, 1.0));
    const Real im = twice.x * s.z * b;
    const Real log = vector_fma(twice.x, re, -(twice.z * im));
    return {log + log, vector_fma(twice.x, im, twice.z * re)};
}

template <class Real>
ANOMALIS_INLINE EdgeSight<Real> first_if(Real value, double limit, const EdgeSight<Real>& below,
                                         const EdgeSight<Real>& other) {
    return {value < limit ? below.log : other.log, value < limit ? below.angle : other.angle};
}

/// 2 atanh(d / m) by the series where |m|^2 reaches `limit`, what near() tells elsewhere. Each station by its
/// own place, whatever its neighbours do.
template <class Real, class Numerator, class Near>
ANOMALIS_INLINE EdgeSight<Real> sight(const Numerator& d, double d_squared, double limit,
                                      const Vector<Real>& m, const Near& near) {
    constexpr double further = short_series_reach / series_reach;
    const Real squared = dot(m, m);
    if (!any_less(squared, further * limit)) return series_sight<6>(d, d_squared, m, squared);
    // What lies just on a limit counts as beyond it.
    constexpr double on = 1 - 0x1p-52;
    const bool any_near = any_less(squared, limit);
    if (!any_less(on * limit, squared)) return near();
    EdgeSight<Real> result = series_sight<12>(d, d_squared, m, squared);
    if (any_less(on * further * limit, squared))
        result = first_if(squared, further * limit, result, series_sight<6>(d, d_squared, m, squared));
    return any_near ? first_if(squared, limit, near(), result) : result;
}

/// An edge with what its stations share.
struct PlaneEdge {
    double x1, z1, x2, z2;  ///< its corners
    double dx, dz;          ///< from corner 1 to corner 2
    double sum_x, sum_z;    ///< of both corners
    double squared, limit;  ///< of the length, and from where on the series serves
    double level, steep;    ///< dx / squared / 2 and -dz / squared / 4
};

/// Edges of a row, the corners one more.
struct EdgeRow {
    static constexpr int most = 64;
    PlaneEdge edge[most];
    int count;
};

/// The first edges of a row, at most `EdgeRow::most`.
ANOMALIS_INLINE void prepare_edges(const double* x, const double* z, int edges, double least, EdgeRow& row) {
    row.count = edges < EdgeRow::most ? edges : EdgeRow::most;
    for (int j = 0; j < row.count; ++j) {
        const double dx = x[j + 1] - x[j], dz = z[j + 1] - z[j];
        const double squared = vector_fma(dx, dx, dz * dz);
        row.edge[j] = {x[j],
                       z[j],
                       x[j + 1],
                       z[j + 1],
                       dx,
                       dz,
                       x[j] + x[j + 1],
                       z[j] + z[j + 1],
                       squared,
                       series_limit(squared, least),
                       0.5 * dx / squared,
                       -0.25 * dz / squared};
    }
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
