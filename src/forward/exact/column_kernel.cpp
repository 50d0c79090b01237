#include "forward/exact/column_kernel.h"

#include "forward/exact/plane_kernel.h"
#include "forward/station_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

template <class Real>
struct Vector {
    Real x, y, z;
};

template <class A>
ANOMALIS_INLINE A dot(const Vector<A>& a, const double* b) {
    return vector_fma(a.x, b[0], vector_fma(a.y, b[1], a.z * b[2]));
}
template <class A>
ANOMALIS_INLINE A dot(const Vector<A>& a, const Vector<A>& b) {
    return vector_fma(a.x, b.x, vector_fma(a.y, b.y, a.z * b.z));
}
template <class Real>
ANOMALIS_INLINE Real larger(Real a, Real b) {
    return a < b ? b : a;
}

/// Integral of 1 / R along an edge of length l between distances that sum to s.
template <class Real>
ANOMALIS_INLINE Real edge_integral(Real s, double l, double least_squared) {
    const Real least = Real{} + 2 * least_squared / l;
    const Real short_of = larger(s - l, least);
    return vector_log_quotient(short_of + 2 * l, short_of, Real{} + 2 * l);
}

/// The same of an edge that runs off along `u`, less the part that grows without end and is common to all.
template <class Real>
ANOMALIS_INLINE Real endless_integral(const Vector<Real>& r, Real distance, Real forward, const double* u,
                                      double least_squared) {
    const Vector<Real> c{vector_fma(r.y, u[2], -(r.z * u[1])), vector_fma(r.z, u[0], -(r.x * u[2])),
                         vector_fma(r.x, u[1], -(r.y * u[0]))};
    const Real aside = larger(dot(c, c), Real{} + least_squared);
    const Real back = aside / (distance - forward);
    return -vector_log(forward < 0.0 ? back : larger(distance + forward, Real{} + least_squared));
}

/// A station on a face stands outside the body.
template <class Real>
ANOMALIS_INLINE Real signed_volume(Real height, double spread) {
    const Real size = vector_abs(height) * spread;
    return height > face_tolerance ? size : -size;
}

template <class Real>
ANOMALIS_INLINE Real weight(const ColumnBody& c, double constant, const double* gradient,
                            const Vector<Real>& at) {
    const Real w = Real{} + constant;
    return c.gradients ? w + dot(at, gradient) : w;
}

template <class Real>
ANOMALIS_INLINE Real column_at(const ColumnBody& c, Real sx, Real sy, Real sz) {
    Vector<Real> r[4];
    Real distance[4], forward[4];
    for (int k = 0; k < 4; ++k) {
        r[k] = {c.corner[k][0] - sx, c.corner[k][1] - sy, c.corner[k][2] - sz};
        const Real squared = dot(r[k], r[k]);
        distance[k] = vector_sqrt(larger(squared, Real{} + 1e-30));
        forward[k] = dot(r[k], c.along);
    }
    Real sum{};
    for (int k = 0; k < 4; ++k) {
        const int next = (k + 1) % 4;
        const Real edge = edge_integral(distance[k] + distance[next], c.edge_length[k], c.least_squared);
        const Real wall = endless_integral(r[k], distance[k], forward[k], c.along, c.least_squared);
        const Real volume = signed_volume(dot(r[k], c.normal[1 + k]), c.spread[1 + k]);
        const Real strip = vector_atan2(
            volume, vector_fma(distance[k], distance[next],
                               vector_fma(forward[k], distance[next],
                                          vector_fma(forward[next], distance[k], dot(r[k], r[next])))));
        sum = vector_fma(weight(c, c.edge_constant[k], c.edge_gradient[k], r[k]), edge, sum);
        sum = vector_fma(weight(c, c.edge_constant[4 + k], c.edge_gradient[4 + k], r[k]), wall, sum);
        sum = vector_fma(weight(c, c.face_constant[1 + k], c.face_gradient[1 + k], r[k]), -2.0 * strip, sum);
    }
    const Real volume = signed_volume(dot(r[0], c.normal[0]), c.spread[0]);
    Real top{};
    for (int k = 1; k < 3; ++k) {
        const Real across = dot(r[0], r[k]), far = dot(r[k], r[k + 1]), back = dot(r[k + 1], r[0]);
        top += vector_atan2(volume, vector_fma(vector_fma(distance[0], distance[k], across), distance[k + 1],
                                               vector_fma(far, distance[0], back * distance[k])));
    }
    return sum - weight(c, c.face_constant[0], c.face_gradient[0], r[0]) * (2.0 * top);
}

ANOMALIS_INLINE void store(double* to, double value) {
    *to = value;
}
ANOMALIS_INLINE void store(double* to, Lanes value) {
    store_lanes(to, value);
}

}  // namespace

void column_stations(const StationView& stations, const BodyFrame& frame, const ColumnBody& column,
                     double* values) {
    for_stations(
        stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const Real east = load<Real>(stations.east + i) - frame.east;
            const Real north = load<Real>(stations.north + i) - frame.north;
            store(values + i, column_at<Real>(column, frame.cos_strike * east - frame.sin_strike * north,
                                              frame.sin_strike * east + frame.cos_strike * north,
                                              load<Real>(stations.sensor + i) - frame.top));
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
