#include "forward/exact/plane_kernel.h"

#include "forward/station_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

constexpr double least_squared = least_corner_distance * least_corner_distance;
/// Gravity needs no hold on its logarithms: they meet a factor that vanishes. This only keeps zero out.
constexpr double tiny_squared = 1e-30;

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
    return a.x * b.z - a.z * b.x;
}
template <class A, class B>
ANOMALIS_INLINE auto dot(const A& a, const B& b) {
    return a.x * b.x + a.z * b.z;
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

template <class Real>
ANOMALIS_INLINE Real half_strip_at(const PlaneStrip& s, Real x, Real h) {
    const Vector<double> e{s.rx - s.px, s.rz - s.pz};
    const Vector<double> d{s.gx, s.gz};
    const auto wp = from_station(s.px, s.pz, x, h);
    const auto wr = from_station(s.rx, s.rz, x, h);
    const Real left = cross(wp, e);
    const double tolerance = face_tolerance * __builtin_sqrt(dot(e, e));
    const Real log =
        held_log(dot(wp, wp), dot(wr, wr), -(e.x * (wp.x + wr.x) + e.z * (wp.z + wr.z)), least_squared);
    Real angle = vector_atan2(-left, dot(wp, wr));
    angle = left > tolerance ? angle : vector_abs(angle);
    const Real outside = s.log_factor * log - s.angle_factor * angle;
    if (!any_below(-left, -tolerance)) return outside;
    const Real inside = one_if(left, tolerance) * one_if(cross(wr, d), face_tolerance) *
                        one_if(-cross(wp, d), face_tolerance);
    return outside + s.inside_term * inside;
}

/// The four logarithms of a parallelogram are one: with w1 w3 = w2 w4 - E G no digit is lost at any distance.
template <class Real>
ANOMALIS_INLINE Real parallelogram_at(const PlaneStrip& s, Real x, Real h) {
    const Vector<double> e{s.rx - s.px, s.rz - s.pz};
    const Vector<double> g{s.gx, s.gz};
    const Vector<double> eg{e.x * g.x - e.z * g.z, e.x * g.z + e.z * g.x};
    const auto w1 = from_station(s.px, s.pz, x, h);
    const auto w2 = from_station(s.rx, s.rz, x, h);
    const auto w3 = from_station(s.rx + s.gx, s.rz + s.gz, x, h);
    const auto w4 = from_station(s.px + s.gx, s.pz + s.gz, x, h);
    const Vector<Real> a{w2.x * w4.x - w2.z * w4.z, w2.x * w4.z + w2.z * w4.x};
    const Real n1 = dot(w1, w1), n2 = dot(w2, w2), n3 = dot(w3, w3), n4 = dot(w4, w4);
    const Real denominator = at_least(n2, least_squared) * at_least(n4, least_squared);
    const Real numerator = at_least(n1, least_squared) * at_least(n3, least_squared);
    const Real exact_difference = dot(eg, eg) - 2.0 * dot(eg, a);
    const Real change = (numerator - n1 * n3) - (denominator - n2 * n4);
    const Real log = vector_log_quotient(numerator, denominator, exact_difference + change);

    const double area = e.x * g.z - e.z * g.x;
    const double tolerance_e = face_tolerance * __builtin_sqrt(dot(e, e));
    const double tolerance_g = face_tolerance * __builtin_sqrt(dot(g, g));
    const Real left1 = cross(w1, e);
    const Real left2 = cross(w2, g);
    const Real between1 = one_if(left1, tolerance_e) * one_if(area - left1, tolerance_e);
    const Real between2 = one_if(left2, tolerance_g) * one_if(area - left2, tolerance_g);
    // The angles of the edge and of the opposite one: both negative between their lines, else of two signs.
    Real angle = vector_atan2(cross(a, eg) * -1.0, n2 * n4 - dot(eg, a));
    angle = angle * between1 > 0.0 ? angle - 2 * 0x1.921fb54442d18p+1 : angle;
    return s.log_factor * log - s.angle_factor * angle + s.inside_term * between1 * between2;
}

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
        const Real log = held_log(n1, n2, -(e.x * (w1.x + w2.x) + e.z * (w1.z + w2.z)), least_squared);
        Real angle = vector_atan2(-left, dot(w1, w2));
        angle = left > face_tolerance * __builtin_sqrt(dot(e, e)) ? angle : vector_abs(angle);
        sum += p.log_factor[j] * log - p.angle_factor[j] * angle;
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
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
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
    return ring.moment_re * dipole.re - ring.moment_im * dipole.im;
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
    const Real squared = x * x + h * h;
    const double limit = 4 * ring.corner_distance * ring.corner_distance;
    const Real held = at_least(squared, limit);
    const Real beyond = far(ring, Complex<Real>{x / held, -h / held});
    if (!any_below(squared, limit)) return beyond;
    return squared < limit ? near(x, h) : beyond;
}

/// The wall from a corner along (dx, dz), less the part of it that grows without end.
template <class Real>
ANOMALIS_INLINE Real wall_angle(const Vector<Real>& w, const Vector<double>& d) {
    const Real k = cross(w, d);
    return k * (d.x * vector_atan2(k, dot(w, d)));
}

template <class Real>
ANOMALIS_INLINE Real mass_at(const PlaneMass& p, Real x, Real h) {
    Real sum = Real{} + p.level;
    const auto first = from_station(p.x[0], p.z[0], x, h);
    auto w1 = first;
    Real n1 = dot(w1, w1);
    for (int j = 0; j < p.edges; ++j) {
        const Vector<double> e{p.x[j + 1] - p.x[j], p.z[j + 1] - p.z[j]};
        const auto w2 = from_station(p.x[j + 1], p.z[j + 1], x, h);
        const Real n2 = dot(w2, w2);
        const Real k = cross(w1, e);
        const Real log = held_log(n2, n1, e.x * (w1.x + w2.x) + e.z * (w1.z + w2.z), tiny_squared);
        sum += k / dot(e, e) * (e.x * vector_atan2(k, dot(w1, w2)) - 0.5 * e.z * log);
        w1 = w2;
        n1 = n2;
    }
    if (!p.walls) return sum * p.factor;
    const Vector<double> d{p.dx, p.dz};
    sum += wall_angle(w1, d) - wall_angle(first, d);
    if (p.dz != 0) {
        const Real n0 = at_least(dot(first, first), tiny_squared);
        const Vector<double> e{p.x[p.edges] - p.x[0], p.z[p.edges] - p.z[0]};
        const Real ratio = held_log(n1, n0, n1 - n0, tiny_squared);
        sum += 0.5 * p.dz * (cross(w1, d) * ratio + (e.x * d.z - e.z * d.x) * vector_log(n0));
    }
    return sum * p.factor;
}

ANOMALIS_INLINE void store(double* to, double value) {
    *to = value;
}
ANOMALIS_INLINE void store(double* to, Lanes value) {
    store_lanes(to, value);
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
        run([&](auto x, auto h) __attribute__((always_inline)) { return half_strip_at(strip, x, h); });
    } else {
        run([&](auto x, auto h) __attribute__((always_inline)) { return parallelogram_at(strip, x, h); });
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
