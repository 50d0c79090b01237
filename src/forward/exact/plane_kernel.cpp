#include "forward/exact/plane_kernel.h"

#include "forward/exact/plane_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

template <class Real>
ANOMALIS_INLINE Real polygon_at(const PlanePolygon& p, Real x, Real h) {
    Real sum{};
    auto w1 = from_station(p.x[0], p.z[0], x, h);
    Real n1 = dot(w1, w1);
    for (int j = 0; j < p.edges; ++j) {
        const Vector<double> e{p.x[j + 1] - p.x[j], p.z[j + 1] - p.z[j]};
        const auto w2 = from_station(p.x[j + 1], p.z[j + 1], x, h);
        const Real n2 = dot(w2, w2);
        const Real left = cross(w1, e);
        const Real log = held_log(n1, n2, -vector_fma(e.x, w1.x + w2.x, e.z * (w1.z + w2.z)), least_squared);
        Real angle = vector_atan2(-left, dot(w1, w2));
        angle = left > face_tolerance * __builtin_sqrt(dot(e, e)) ? angle : vector_abs(angle);
        sum = vector_fma(p.log_factor[j], log, vector_fma(-p.angle_factor[j], angle, sum));
        w1 = w2;
        n1 = n2;
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
    if (!any_below(squared, limit)) return beyond;
    return squared < limit ? near(x, h) : beyond;
}

/// Adds value(x, h) at every station, x across and h above the body's origin.
template <class Value>
ANOMALIS_INLINE void add_at_stations(const StationView& stations, const BodyFrame& frame, double* sum,
                                     Value value) {
    for_stations(
        stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const Real x = across_strike<Real>(stations, frame, i);
            const Real h = load<Real>(stations.sensor + i) - frame.top;
            store(sum + i, load<Real>(sum + i) + value(x, h));
        });
}

}  // namespace

void strip_magnetics(const StationView& stations, const BodyFrame& frame, const PlaneStrip& strip,
                     double* anomaly) {
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
    add_at_stations(
        stations, frame, anomaly, [&](auto x, auto h) __attribute__((always_inline)) {
            using Real = decltype(x);
            return ring_at(
                ring, x, h, [&](Real a, Real b) { return polygon_at(ring.polygon, a, b); },
                far_ring_magnetics<Real>);
        });
}

void add_ring_gravity(const StationView& stations, const BodyFrame& frame, const PlaneRing& ring,
                      double* attraction) {
    const PlaneMass mass{ring.polygon.x, ring.polygon.z, ring.polygon.edges, false, 0, 0, 0, ring.factor};
    add_at_stations(
        stations, frame, attraction, [&](auto x, auto h) __attribute__((always_inline)) {
            using Real = decltype(x);
            return ring_at(
                ring, x, h, [&](Real a, Real b) { return mass_at(mass, a, b); }, far_ring_gravity<Real>);
        });
}

void add_polygon_magnetics(const StationView& stations, const BodyFrame& frame, const PlanePolygon& polygon,
                           double* anomaly) {
    add_at_stations(
        stations, frame,
        anomaly, [&](auto x, auto h) __attribute__((always_inline)) { return polygon_at(polygon, x, h); });
}

void add_plane_gravity(const StationView& stations, const BodyFrame& frame, const PlaneMass& mass,
                       double* attraction) {
    add_at_stations(
        stations, frame,
        attraction, [&](auto x, auto h) __attribute__((always_inline)) { return mass_at(mass, x, h); });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
