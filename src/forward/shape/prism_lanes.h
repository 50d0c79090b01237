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

/// Whether any lane has a bit.
ANOMALIS_INLINE bool any_lane(std::uint64_t mask) {
    return mask != 0;
}
ANOMALIS_INLINE bool any_lane(LaneBits mask) {
#if defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 64
    using Words = long long __attribute__((vector_size(64)));
    return __builtin_ia32_ptestmq512((Words)mask, (Words)mask, 0xFF) != 0;
#elif defined(ANOMALIS_GCC_LANES) && ANOMALIS_VECTOR_BYTES == 32
    using Words = long long __attribute__((vector_size(32)));
    return __builtin_ia32_ptestz256((Words)mask, (Words)mask) == 0;
#else
    return any_bits(mask) != 0;
#endif
}

template <class Real>
struct NedLanes {
    Real north, east, down;
};

/// Each product rounded on its own, as `facet_terms` does it: whether an observer stands on an edge or in a
/// plane is a matter of the last bit.
template <class Real>
ANOMALIS_INLINE Real dot(const NedLanes<Real>& a, const NedLanes<Real>& b) {
    return a.north * b.north + a.east * b.east + a.down * b.down;
}

template <class Real>
ANOMALIS_INLINE Real fused_dot(const NedLanes<Real>& a, const NedLanes<Real>& b) {
    return vector_fma(a.north, b.north, vector_fma(a.east, b.east, a.down * b.down));
}

template <class Real>
ANOMALIS_INLINE Real squared_cross(const NedLanes<Real>& a, const NedLanes<Real>& b) {
    const NedLanes<Real> c{vector_fma(a.east, b.down, -(a.down * b.east)),
                           vector_fma(a.down, b.north, -(a.north * b.down)),
                           vector_fma(a.north, b.east, -(a.east * b.north))};
    return fused_dot(c, c);
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

/// Corners and edges as one vector of stations sees them.
template <class Real>
struct Sight {
    NedLanes<Real> to[8];
    Real distance[8];
    Real product[12];      ///< squared length of the product of an edge's corners
    LaneMask<Real> close;  ///< bit k where edge k is close
};

/// The logarithms and angles of all faces at one vector of stations, gathered first and taken together, so
/// that none waits for another.
template <class Real>
struct FaceTermLanes {
    struct Logarithm {
        Real n, d, difference;  ///< of the quotient n / d, and n - d
    };
    struct Face {
        Real plane;          ///< distance of its plane
        Real across, along;  ///< of the vector whose angle is half the solid angle
        int logarithm[4];    ///< of its edges, where they count
    };
    Logarithm argument[36];
    Real logarithm[36];
    Face face[6];
    Real angle[6];  ///< solid angle with the sign of the side
    int count = 0;  ///< of logarithms

    int add(Real n, Real d, Real difference) {
        argument[count] = {n, d, difference};
        return count++;
    }
    /// The integral of 1 / r along an edge, times its length.
    int add_edge(Real r1, Real r2, double length) {
        const Real sum = r1 + r2;
        return add(sum + length, sum - length, Real{} + 2 * length);
    }
};

/// The plane and the solid angle of a face that spans corners a, b, c, d at distances ra to rd. Both
/// triangles of the parallelogram have the same area, so the triple product is the same; the two angles are
/// added as arguments of complex numbers.
template <class Real>
ANOMALIS_INLINE void span_face(const PrismFaces::Face& face, const NedLanes<Real>& a, const NedLanes<Real>& b,
                               const NedLanes<Real>& c, const NedLanes<Real>& d, Real ra, Real rb, Real rc,
                               Real rd, typename FaceTermLanes<Real>::Face& to) {
    const Real ac = fused_dot(a, c), outer = vector_fma(ra, rc, ac);
    const Real first = vector_fma(outer, rb, vector_fma(fused_dot(a, b), rc, fused_dot(b, c) * ra));
    const Real second = vector_fma(outer, rd, vector_fma(fused_dot(c, d), ra, fused_dot(d, a) * rc));
    to.plane = a.north * face.normal[0] + a.east * face.normal[1] + a.down * face.normal[2];
    const Real triple = vector_abs(to.plane) * face.area;
    to.across = triple * (first + second);
    to.along = vector_fma(first, second, -(triple * triple));
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
