#pragma once

#include "forward/shape/prism_kernel.h"
#include "forward/station_lanes.h"

// One face of a prism in vectors of stations. To be included by files that are compiled once a vector level.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

/// A pattern of 64 bits a lane.
template <class Real>
using LaneMask = vector::ANOMALIS_VECTOR_LEVEL::detail::Bits<Real>;

/// The bits that any lane has.
ANOMALIS_INLINE std::uint64_t any_bits(std::uint64_t mask) {
    return mask;
}
ANOMALIS_INLINE std::uint64_t any_bits(LaneBits mask) {
    std::uint64_t any = 0;
    for (int lane = 0; lane < lane_count; ++lane) any |= mask[lane];
    return any;
}

template <class Real>
struct NedLanes {
    Real north, east, down;
};

template <class Real>
ANOMALIS_INLINE Real dot(const NedLanes<Real>& a, const NedLanes<Real>& b) {
    return a.north * b.north + a.east * b.east + a.down * b.down;
}

template <class Real>
ANOMALIS_INLINE Real squared_cross(const NedLanes<Real>& a, const NedLanes<Real>& b) {
    const NedLanes<Real> c{a.east * b.down - a.down * b.east, a.down * b.north - a.north * b.down,
                           a.north * b.east - a.east * b.north};
    return dot(c, c);
}

ANOMALIS_INLINE NedLanes<double> corner_place(const PrismFaces& prism, int corner) {
    const double* at = prism.corner[corner];
    return {at[0], at[1], at[2]};
}

template <class Real>
ANOMALIS_INLINE NedLanes<Real> corner_from(const PrismFaces& prism, int corner,
                                           const NedLanes<Real>& observer) {
    const double* at = prism.corner[corner];
    return {at[0] - observer.north, at[1] - observer.east, at[2] - observer.down};
}

/// An observer is close to the line of an edge of length L at a distance h when L h, the product of its two
/// corners, is below this (m) times the root of their distances.
inline constexpr double near_edge_squared = 0.1 * 0.1;

template <class Real>
ANOMALIS_INLINE Real edge_integral(Real r1, Real r2, double length) {
    const Real sum = r1 + r2;
    return vector_log_quotient(sum + length, sum - length, Real{} + 2 * length) / length;
}

/// The solid angle of the face that spans corners a, b, c, d at distances ra to rd, with the sign of its
/// side. Both triangles of the parallelogram have the same area, so the triple product is the same; the two
/// angles are added as arguments of complex numbers.
template <class Real>
ANOMALIS_INLINE Real solid_angle(double area, Real plane, const NedLanes<Real>& a, const NedLanes<Real>& b,
                                 const NedLanes<Real>& c, const NedLanes<Real>& d, Real ra, Real rb, Real rc,
                                 Real rd) {
    const Real ac = dot(a, c);
    const Real first = ra * rb * rc + dot(a, b) * rc + dot(b, c) * ra + ac * rb;
    const Real second = ra * rc * rd + ac * rd + dot(c, d) * ra + dot(d, a) * rc;
    const Real triple = vector_abs(plane) * area;
    const Real half = vector_abs(vector_atan2(triple * (first + second), first * second - triple * triple));
    return plane < 0.0 ? 2.0 * half : (plane > 0.0 ? -2.0 * half : plane);
}

/// What one face gives: the field of a unit pole density, all of it or down alone, and the plane's distance.
template <class Real>
struct FaceLanes {
    NedLanes<Real> field;
    Real plane;
};

template <bool Magnetic, class Real>
ANOMALIS_INLINE void begin_face(const PrismFaces::Face& face, Real angle, FaceLanes<Real>& at) {
    if constexpr (Magnetic) {
        at.field.north = face.normal[0] * angle;
        at.field.east = face.normal[1] * angle;
    }
    at.field.down = face.normal[2] * angle;
}

template <bool Magnetic, class Real>
ANOMALIS_INLINE void add_edge(const PrismFaces::Face& face, int i, Real integral, FaceLanes<Real>& at) {
    if constexpr (Magnetic) {
        at.field.north += face.turned[i][0] * integral;
        at.field.east += face.turned[i][1] * integral;
    }
    at.field.down += face.turned[i][2] * integral;
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
