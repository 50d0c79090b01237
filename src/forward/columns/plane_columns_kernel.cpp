#include "forward/columns/plane_columns_kernel.h"

#include "forward/columns/weighted_lanes.h"
#include "forward/exact/plane_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

template <class Real>
ANOMALIS_INLINE Vector<Real> operator+(const Vector<Real>& a, const Vector<Real>& b) {
    return {a.x + b.x, a.z + b.z};
}
template <class A, class B>
ANOMALIS_INLINE Vector<A> product(const Vector<A>& a, const Vector<B>& b) {
    return {a.x * b.x - a.z * b.z, a.x * b.z + a.z * b.x};
}
template <class A, class B>
ANOMALIS_INLINE Vector<A> times(const Vector<A>& a, const B& factor) {
    return {a.x * factor, a.z * factor};
}
/// 1 / w, held near 0.
template <class Real>
ANOMALIS_INLINE Vector<Real> inverse(const Vector<Real>& w) {
    const Real by = 1.0 / at_least(dot(w, w), least_squared);
    return {w.x * by, -w.z * by};
}
template <class Real>
ANOMALIS_INLINE void put(Real* terms, int at, const Vector<Real>& value) {
    terms[at] = value.x;
    terms[at + 1] = value.z;
}

/// What a station brings.
template <class Real>
struct Station {
    Real x, h, along;
};

template <class Real>
ANOMALIS_INLINE void anomaly_terms(const PlaneStrip& s, const Station<Real>& at,
                                   const StripTerms<Real>& strip, Real* terms) {
    const auto w1 = from_station(s.px, s.pz, at.x, at.h);
    const auto i1 = inverse(w1);
    const auto i2 = inverse(from_station(s.rx, s.rz, at.x, at.h));
    terms[anomaly_term::log] = strip.log;
    terms[anomaly_term::angle] = strip.angle;
    terms[anomaly_term::inside] = strip.inside;
    auto shift = product(i1, i2);
    if (s.endless) {
        put(terms, anomaly_term::far_top, i2);
    } else {
        const auto w3 = from_station(s.rx + s.gx, s.rz + s.gz, at.x, at.h);
        const auto i3 = inverse(w3);
        const auto i4 = inverse(from_station(s.px + s.gx, s.pz + s.gz, at.x, at.h));
        const auto lower = product(i3, i4);
        shift = product(product(w1 + w3, shift), lower);
        put(terms, anomaly_term::far_top, product(i2, i3));
        put(terms, anomaly_term::lower, lower);
    }
    put(terms, anomaly_term::shift, shift);
    put(terms, anomaly_term::shift_along, times(shift, at.along));
}

template <class Real>
ANOMALIS_INLINE void mass_terms(const PlaneMass& m, const Station<Real>& at, const Vector<Real>* l,
                                Real* terms) {
    const Vector<double> e{m.x[1] - m.x[0], m.z[1] - m.z[0]};
    const Vector<double> g{m.x[2] - m.x[1], m.z[2] - m.z[1]};
    const auto w1 = from_station(m.x[0], m.z[0], at.x, at.h);
    const auto level = l[0] + l[2];
    const auto steep = l[1] + l[3];
    put(terms, mass_term::level, level);
    put(terms, mass_term::steep, steep);
    put(terms, mass_term::level_along, times(level, at.along));
    put(terms, mass_term::steep_along, times(steep, at.along));
    put(terms, mass_term::far_side, l[1]);
    put(terms, mass_term::lower, l[2]);
    put(terms, mass_term::top_turn, product(w1, level) + product(l[2], g));
    put(terms, mass_term::side_turn, product(w1, steep) + product(l[1], e));
}

/// The logarithm of w / d, d a unit vector.
template <class Real>
ANOMALIS_INLINE Vector<Real> logarithm(const Vector<Real>& w, const Vector<double>& d) {
    return {0.5 * vector_log(at_least(dot(w, w), tiny_squared)), -vector_atan2(cross(w, d), dot(w, d))};
}

template <class Real>
ANOMALIS_INLINE void wall_terms(const PlaneMass& m, const Station<Real>& at, const Vector<Real>& l,
                                Real* terms) {
    const Vector<double> d{m.dx, m.dz};
    const auto w1 = from_station(m.x[0], m.z[0], at.x, at.h);
    const auto w2 = from_station(m.x[1], m.z[1], at.x, at.h);
    const auto m1 = times(logarithm(w1, d), -1.0);
    const auto m2 = logarithm(w2, d);
    const auto walls = m1 + m2;
    put(terms, wall_term::top, l);
    put(terms, wall_term::walls, walls);
    put(terms, wall_term::top_along, times(l, at.along));
    put(terms, wall_term::walls_along, times(walls, at.along));
    put(terms, wall_term::top_turn, product(w1, l));
    put(terms, wall_term::far_wall, m2);
    put(terms, wall_term::wall_turn, product(w2, m2) + product(w1, m1));
    terms[wall_term::one] = Real{} + 1.0;
}

}  // namespace

void strip_anomaly_columns(const StationView& stations, const BodyFrame& frame, const PlaneStrip& strip,
                           const WeightedColumns& columns, double* anomaly) {
    over_stretches(
        stations, frame, [&](const Stretch& part, const BodyStation& at) __attribute__((always_inline)) {
            Lanes terms[anomaly_term::count];
            const StripTerms<Lanes> made =
                strip.endless ? half_strip_at(strip, at.x, at.z) : parallelogram_at(strip, at.x, at.z);
            store_part(anomaly, part, strip_anomaly(strip, made));
            anomaly_terms(strip, Station<Lanes>{at.x, at.z, at.y}, made, terms);
            store_columns(columns, part, terms);
        });
}

void strip_gravity_columns(const StationView& stations, const BodyFrame& frame, const PlaneMass& mass,
                           const WeightedColumns& columns, double* attraction) {
    EdgeRow row;
    prepare_edges(mass.x, mass.z, mass.edges, tiny_squared, row);
    over_stretches(
        stations, frame, [&](const Stretch& part, const BodyStation& body) __attribute__((always_inline)) {
            const Station<Lanes> at{body.x, body.z, body.y};
            Vector<Lanes> logarithms[4];
            const Lanes sum = edges_sum(
                row, at.x, at.h, walls_sum(mass, at.x, at.h),
                [&](int j, Lanes log, Lanes angle) __attribute__((always_inline)) {
                    logarithms[j] = {0.5 * log, angle};
                });
            store_part(attraction, part, sum * mass.factor);
            Lanes terms[mass_term::count];
            if (mass.walls) {
                wall_terms(mass, at, logarithms[0], terms);
                terms[wall_term::sum] = sum;
            } else {
                mass_terms(mass, at, logarithms, terms);
                terms[mass_term::sum] = sum;
            }
            store_columns(columns, part, terms);
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
