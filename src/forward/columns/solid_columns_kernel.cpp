#include "forward/columns/solid_columns_kernel.h"

#include "forward/columns/weighted_lanes.h"
#include "forward/exact/plane_kernel.h"
#include "forward/station_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

/// The derivatives keep their value at this distance from an edge, m.
constexpr double least_squared = least_corner_distance * least_corner_distance;

template <class Real>
struct Vector {
    Real x, y, z;
};

template <class Real>
ANOMALIS_INLINE Vector<Real> operator+(const Vector<Real>& a, const Vector<Real>& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
template <class Real>
ANOMALIS_INLINE Vector<Real> operator-(const Vector<Real>& a, const Vector<Real>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
template <class Real>
ANOMALIS_INLINE Vector<Real> times(const Vector<Real>& a, const Real& factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
template <class Real>
ANOMALIS_INLINE Vector<Real> times(const double* a, const Real& factor) {
    return {a[0] * factor, a[1] * factor, a[2] * factor};
}
template <class Real>
ANOMALIS_INLINE Real dot(const Vector<Real>& a, const double* b) {
    return vector_fma(a.x, b[0], vector_fma(a.y, b[1], a.z * b[2]));
}
template <class Real>
ANOMALIS_INLINE Real dot(const Vector<Real>& a, const Vector<Real>& b) {
    return vector_fma(a.x, b.x, vector_fma(a.y, b.y, a.z * b.z));
}
/// a x b.
template <class Real>
ANOMALIS_INLINE Vector<Real> cross(const double* a, const Vector<Real>& b) {
    return {vector_fma(a[1], b.z, -(a[2] * b.y)), vector_fma(a[2], b.x, -(a[0] * b.z)),
            vector_fma(a[0], b.y, -(a[1] * b.x))};
}
template <class Real>
ANOMALIS_INLINE Real larger(Real a, double least) {
    return a < least ? Real{} + least : a;
}

/// A corner from the station: where, how far, and 1 by that.
template <class Real>
struct Corner {
    Vector<Real> r;
    Real distance, inverse;
};

/// What is summed up over edges and faces at one station.
template <class Real>
struct Sums {
    Real integral[SolidSection::most_edges];
    Real angle[SolidSection::most_faces];
    Real face_weight[SolidSection::most_faces];
    Vector<Real> corner[SolidSection::most_corners];
    Vector<Real> direction;
    Vector<Real> gradient;  ///< by the places in the weights
};

template <class Real>
ANOMALIS_INLINE Real weight_at(const SolidSection& solid, const SolidSection::Weight& weight,
                               const Vector<Real>& place) {
    const Real constant = Real{} + weight.constant;
    return solid.gradients ? constant + dot(place, weight.gradient) : constant;
}

/// A station on a face stands outside the body.
template <class Real>
ANOMALIS_INLINE Real signed_volume(Real height, double spread) {
    const Real size = vector_abs(height) * spread;
    return height > face_tolerance ? size : -size;
}

/// Of van Oosterom and Strackee (1983, IEEE Trans. Biomed. Eng. 30): two triangles, or a triangle with its
/// far corner without end.
template <class Real>
ANOMALIS_INLINE Real solid_angle(const SolidSection::Face& face, const double* along,
                                 const Corner<Real>* at) {
    const Corner<Real>&a = at[face.corner[0]], &b = at[face.corner[1]];
    const Real volume = signed_volume(dot(a.r, face.normal), face.spread);
    const Real ab = dot(a.r, b.r);
    if (face.corner[2] < 0)
        return 2.0 * vector_atan2(volume, a.distance * b.distance + ab + dot(a.r, along) * b.distance +
                                              dot(b.r, along) * a.distance);
    const Corner<Real>&c = at[face.corner[2]], &d = at[face.corner[3]];
    const Real ac = dot(a.r, c.r);
    const Real near = vector_fma(vector_fma(a.distance, b.distance, ab), c.distance,
                                 vector_fma(dot(b.r, c.r), a.distance, ac * b.distance));
    const Real far = vector_fma(vector_fma(a.distance, c.distance, ac), d.distance,
                                vector_fma(dot(c.r, d.r), a.distance, dot(d.r, a.r) * c.distance));
    return 2.0 * (vector_atan2(volume, near) + vector_atan2(volume, far));
}

template <class Real>
ANOMALIS_INLINE void add_edge(const SolidSection& solid, int number, const Corner<Real>* at,
                              Sums<Real>& sums) {
    const SolidSection::Edge& edge = solid.edge[number];
    const Corner<Real>&a = at[edge.from], &b = at[edge.to];
    const double l = edge.length;
    const Real s = a.distance + b.distance;
    const Real first = dot(a.r, edge.along), last = dot(b.r, edge.along);
    const Vector<Real> across = cross(edge.along, a.r);
    const Real squared = dot(across, across);
    // s - l, with all its digits beside a long edge: each end's distance less its place along the edge.
    const Real p = a.distance + vector_abs(first), q = b.distance + vector_abs(last);
    const Real near = first < 0.0 ? squared : p * p;
    const Real far = last > 0.0 ? squared : q * q;
    const Real short_of = larger((near * q + far * p) / (p * q), 2 * least_squared / l);
    sums.integral[number] = vector_log_quotient(short_of + 2 * l, short_of, Real{} + 2 * l);
    const Real weight = weight_at(solid, edge.weight, a.r);
    const Real jump = sums.face_weight[edge.left] - sums.face_weight[edge.right];
    // The integral of 1 / R: by the places of its two ends.
    const Real product = short_of * (short_of + 2 * l);
    const Real both = 1.0 / (product * s);
    const Real part = weight * (2.0 * s * both);
    const Vector<Real> straight = times(edge.along, part * s);
    // The solid angles: integrals of 1 / R^3 and of its moment along the edge, a metre of it.
    const Real inverse = a.inverse * b.inverse;
    const Real plain = 2.0 * s * s * both * inverse;
    const Real moment = (first + last) * product * both * inverse;
    const Vector<Real> aside = times(across, jump);
    sums.corner[edge.from] = sums.corner[edge.from] - straight - times(a.r, part * l * a.inverse) -
                             times(aside, last * plain - moment);
    sums.corner[edge.to] = sums.corner[edge.to] + straight - times(b.r, part * l * b.inverse) -
                           times(aside, moment - first * plain);
}

template <class Real>
ANOMALIS_INLINE void add_endless_edge(const SolidSection& solid, int number, const Corner<Real>* at,
                                      Sums<Real>& sums) {
    const SolidSection::Edge& edge = solid.edge[number];
    const Corner<Real>& a = at[edge.from];
    const Real forward = dot(a.r, edge.along);
    const Vector<Real> across = cross(edge.along, a.r);
    const Real back = larger(dot(across, across), least_squared) / (a.distance - forward);
    const Real sum = forward < 0.0 ? back : larger(a.distance + forward, least_squared);
    sums.integral[number] = -vector_log(sum);
    const Real weight = weight_at(solid, edge.weight, a.r);
    const Real jump = sums.face_weight[edge.left] - sums.face_weight[edge.right];
    const Real inverse = 1.0 / sum;
    const Vector<Real> aside = times(across, jump * inverse);
    const Vector<Real> ahead = times(a.r, a.inverse) + times(edge.along, Real{} + 1.0);
    sums.corner[edge.from] =
        sums.corner[edge.from] - times(ahead, weight * inverse) - times(aside, a.inverse);
    sums.direction = sums.direction - times(a.r, weight * inverse) - aside;
}

template <class Real>
ANOMALIS_INLINE void add_gradient(const double* gradient, Real amount, Sums<Real>& sums) {
    sums.gradient = sums.gradient + times(gradient, amount);
}

template <class Real>
ANOMALIS_INLINE Sums<Real> sums_at(const SolidSection& solid, const Vector<Real>& station) {
    Sums<Real> sums{};
    Corner<Real> at[SolidSection::most_corners];
    for (int k = 0; k < solid.corners; ++k) {
        const double* const corner = solid.corner[k];
        at[k].r = {corner[0] - station.x, corner[1] - station.y, corner[2] - station.z};
        at[k].distance = vector_sqrt(larger(dot(at[k].r, at[k].r), least_squared));
        at[k].inverse = 1.0 / at[k].distance;
    }
    const double* const along = solid.edge[solid.edges - 1].along;
    for (int f = 0; f < solid.faces; ++f) {
        const SolidSection::Face& face = solid.face[f];
        sums.angle[f] = solid_angle(face, along, at);
        sums.face_weight[f] = weight_at(solid, face.weight, at[face.corner[0]].r);
        if (solid.gradients) add_gradient(face.weight.gradient, -sums.angle[f], sums);
    }
    for (int e = 0; e < solid.edges; ++e) {
        if (solid.edge[e].to < 0) {
            add_endless_edge(solid, e, at, sums);
        } else {
            add_edge(solid, e, at, sums);
        }
        if (solid.gradients) add_gradient(solid.edge[e].weight.gradient, sums.integral[e], sums);
    }
    return sums;
}

/// One function of the station, with gradients also times each of its coordinates.
template <class Real>
ANOMALIS_INLINE Real* put(Real* to, Real value, bool gradients, const Vector<Real>& station) {
    *to++ = value;
    if (!gradients) return to;
    *to++ = value * station.x;
    *to++ = value * station.y;
    *to++ = value * station.z;
    return to;
}

template <class Real>
ANOMALIS_INLINE void solid_terms_at(const SolidSection& solid, const Vector<Real>& station, Real* terms) {
    const Sums<Real> sums = sums_at(solid, station);
    Real* to = terms;
    for (int e = 0; e < solid.edges; ++e) to = put(to, sums.integral[e], solid.gradients, station);
    for (int f = 0; f < solid.faces; ++f) to = put(to, sums.angle[f], solid.gradients, station);
    Vector<Real> all = sums.gradient;
    for (int k = 0; k < solid.corners; ++k) {
        *to++ = sums.corner[k].x;
        *to++ = sums.corner[k].y;
        *to++ = sums.corner[k].z;
        all = all + sums.corner[k];
    }
    *to++ = sums.direction.x;
    *to++ = sums.direction.y;
    *to++ = sums.direction.z;
    *to = station.y * all.x - station.x * all.y;
}

}  // namespace

void solid_columns(const StationView& stations, const BodyFrame& frame, const SolidSection& solid,
                   const WeightedColumns& columns) {
    over_stretches(
        stations, frame, [&](const Stretch& part, const BodyStation& at) __attribute__((always_inline)) {
            Lanes terms[most_solid_terms];
            solid_terms_at(solid, Vector<Lanes>{at.x, at.y, at.z}, terms);
            store_columns(columns, part, terms);
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
