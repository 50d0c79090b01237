#include "forward/exact/plane_kernel.h"

#include "forward/exact/plane_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

/// The part of the edges of a row, whose factors begin at the given places.
template <class Real>
ANOMALIS_INLINE Real polygon_at(const EdgeRow& row, const double* log_factor, const double* angle_factor,
                                Real x, Real h) {
    const Vector<Real> twice{x + x, h + h};
    Real sum{};
    for (int j = 0; j < row.count; ++j) {
        const PlaneEdge& e = row.edge[j];
        const Vector<Real> middle{e.sum_x - twice.x, e.sum_z - twice.z};
        const auto outside = [&](Real left, Real angle) __attribute__((always_inline)) {
            const Real tolerance = Real{} + face_tolerance * __builtin_sqrt(e.squared);
            return left > tolerance ? angle : -vector_abs(angle);
        };
        const EdgeSight<Real> at = edge_sight(e, least_squared, x, h, middle, outside);
        sum = vector_fma(angle_factor[j], at.angle, vector_fma(-log_factor[j], at.log, sum));
    }
    return sum;
}

template <class Real>
struct Complex {
    Real re, im;
};
template <class Real>
ANOMALIS_INLINE Complex<Real> product(const Complex<Real>& a, const Complex<Real>& b) {
    return {vector_fma(a.re, b.re, -(a.im * b.im)), vector_fma(a.re, b.im, a.im * b.re)};
}

/// How many terms of the series of a ring count at twice its corner distance.
ANOMALIS_INLINE int ring_terms(int edges) {
    return 55 / edges;
}

/// a0 + u (a1 + u (a2 ...)) of a ring, the coefficients from `coefficient(m)` at m = 0, edges, 2 edges ...
template <class Real, class Coefficient>
ANOMALIS_INLINE Complex<Real> ring_series(const PlaneRing& ring, const Complex<Real>& inverse,
                                          const Coefficient& coefficient) {
    const int edges = ring.polygon.edges;
    Complex<Real> power{Real{} + 1.0, Real{}};
    Complex<Real> square{inverse.re * ring.corner_distance, inverse.im * ring.corner_distance};
    for (int left = edges; left > 0; left /= 2) {
        if (left % 2 != 0) power = product(power, square);
        square = product(square, square);
    }
    const int terms = ring_terms(edges);
    Complex<Real> sum{Real{} + coefficient(terms * edges), Real{}};
    for (int k = terms; k-- > 0;) {
        sum = product(sum, power);
        sum.re += coefficient(k * edges);
    }
    return sum;
}

template <class Real>
ANOMALIS_INLINE Real far_ring_magnetics(const PlaneRing& ring, const Complex<Real>& inverse) {
    const Complex<Real> sum = ring_series(ring, inverse, [](int m) { return 2.0 / (m + 2.0); });
    const Complex<Real> dipole = product(sum, product(inverse, inverse));
    return vector_fma(ring.moment_re, dipole.re, -(ring.moment_im * dipole.im));
}

template <class Real>
ANOMALIS_INLINE Real far_ring_gravity(const PlaneRing& ring, const Complex<Real>& inverse) {
    const Complex<Real> sum = ring_series(ring, inverse, [](int m) { return 2.0 / ((m + 1.0) * (m + 2.0)); });
    return -ring.mass * product(sum, inverse).im;
}

/// `near` holds from the ring out to twice its corner distance, `far` beyond. Each station takes the same
/// way whatever its neighbours do.
template <class Real, class Near, class Far>
ANOMALIS_INLINE Real ring_at(const PlaneRing& ring, Real x, Real h, const Near& near, const Far& far) {
    const Real squared = vector_fma(x, x, h * h);
    const double limit = 4 * ring.corner_distance * ring.corner_distance;
    const Real held = at_least(squared, limit);
    const Real beyond = far(ring, Complex<Real>{x / held, -h / held});
    if (!any_less(squared, limit)) return beyond;
    return squared < limit ? near(x, h) : beyond;
}

/// Calls step(row, first edge) for the rows that a polygon is cut into.
template <class Step>
ANOMALIS_INLINE void for_rows(const double* x, const double* z, int edges, double least, const Step& step) {
    EdgeRow row;
    for (int from = 0; from < edges; from += row.count) {
        prepare_edges(x + from, z + from, edges - from, least, row);
        step(row, from);
    }
}

struct NoUse {
    template <class Real>
    ANOMALIS_INLINE void operator()(int, Real, Real) const {}
};

/// Adds value(x, h) at every station, x across and h above the body's origin. Works on a frame of its own:
/// what is stored could else be part of it.
template <class Value>
ANOMALIS_INLINE void add_at_stations(const StationView& all, const BodyFrame& body, double* sum,
                                     Value value) {
    const StationView stations = all;
    const BodyFrame frame = body;
    for_stations(
        stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const Real x = across_strike<Real>(stations, frame, i);
            const Real h = load<Real>(stations.sensor + i) - frame.top;
            store(sum + i, load<Real>(sum + i) + value(x, h));
        });
}

}  // namespace

void strip_magnetics(const StationView& all, const BodyFrame& body, const PlaneStrip& poles,
                     double* anomaly) {
    const StationView stations = all;
    const BodyFrame frame = body;
    const PlaneStrip strip = poles;
    const auto run = [&](auto formula) __attribute__((always_inline)) {
        for_stations(
            stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
                using Real = decltype(kind);
                const Real x = across_strike<Real>(stations, frame, i);
                const Real h = load<Real>(stations.sensor + i) - frame.top;
                store(anomaly + i, formula(x, h));
            });
    };
    if (strip.endless) {
        run([&](auto x, auto h)
                __attribute__((always_inline)) { return strip_anomaly(strip, half_strip_at(strip, x, h)); });
    } else {
        run([&](auto x, auto h) __attribute__((always_inline)) {
            return strip_anomaly(strip, parallelogram_at(strip, x, h));
        });
    }
}

void add_ring_magnetics(const StationView& stations, const BodyFrame& frame, const PlaneRing& ring,
                        double* anomaly) {
    const PlanePolygon& polygon = ring.polygon;
    const PlaneRing own = ring;
    for_rows(
        polygon.x, polygon.z, polygon.edges,
        least_squared, [&](const EdgeRow& row, int from) __attribute__((always_inline)) {
            add_at_stations(
                stations, frame, anomaly, [&](auto x, auto h) __attribute__((always_inline)) {
                    using Real = decltype(x);
                    return ring_at(
                        own, x, h,
                        [&](Real a, Real b) __attribute__((always_inline)) {
                            return polygon_at(row, polygon.log_factor + from, polygon.angle_factor + from, a,
                                              b);
                        },
                        [&](const PlaneRing& r, const Complex<Real>& inverse) __attribute__((always_inline)) {
                            return from == 0 ? far_ring_magnetics(r, inverse) : Real{};
                        });
                });
        });
}

void add_ring_gravity(const StationView& stations, const BodyFrame& frame, const PlaneRing& ring,
                      double* attraction) {
    const PlaneRing own = ring;
    for_rows(
        ring.polygon.x, ring.polygon.z, ring.polygon.edges,
        tiny_squared, [&](const EdgeRow& row, int from) __attribute__((always_inline)) {
            add_at_stations(
                stations, frame, attraction, [&](auto x, auto h) __attribute__((always_inline)) {
                    using Real = decltype(x);
                    return ring_at(
                        own, x, h,
                        [&](Real a, Real b) __attribute__((always_inline)) {
                            return edges_sum(row, a, b, Real{}, NoUse{}) * own.factor;
                        },
                        [&](const PlaneRing& r, const Complex<Real>& inverse) __attribute__((always_inline)) {
                            return from == 0 ? far_ring_gravity(r, inverse) : Real{};
                        });
                });
        });
}

void add_polygon_magnetics(const StationView& stations, const BodyFrame& frame, const PlanePolygon& polygon,
                           double* anomaly) {
    for_rows(
        polygon.x, polygon.z, polygon.edges,
        least_squared, [&](const EdgeRow& row, int from) __attribute__((always_inline)) {
            const double* const log_factor = polygon.log_factor + from;
            const double* const angle_factor = polygon.angle_factor + from;
            add_at_stations(
                stations, frame, anomaly, [&](auto x, auto h) __attribute__((always_inline)) {
                    return polygon_at(row, log_factor, angle_factor, x, h);
                });
        });
}

void add_plane_gravity(const StationView& stations, const BodyFrame& frame, const PlaneMass& all,
                       double* attraction) {
    const PlaneMass mass = all;
    for_rows(
        mass.x, mass.z, mass.edges,
        tiny_squared, [&](const EdgeRow& row, int from) __attribute__((always_inline)) {
            add_at_stations(
                stations, frame, attraction, [&](auto x, auto h) __attribute__((always_inline)) {
                    using Real = decltype(x);
                    const Real start = from == 0 ? walls_sum(mass, x, h) : Real{};
                    return edges_sum(row, x, h, start, NoUse{}) * mass.factor;
                });
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
