#pragma once

#include "forward/polyhedron/parallelepiped_kernel.h"
#include "vector/vector_math.h"

// What the stations of one vector see of a parallelepiped, for kernels that are compiled once a vector level.
// To be included by such files only.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

inline constexpr double half_turn = 0x1.921fb54442d18p+1;

template <int N>
struct Axis {
    static constexpr int value = N;
    /// The two others, the shorter first.
    static constexpr int first = N == 0 ? 1 : 0, second = N == 2 ? 1 : 2;
};
template <class Use>
ANOMALIS_INLINE void for_axes(const Use& use) {
    use(Axis<0>{});
    use(Axis<1>{});
    use(Axis<2>{});
}

/// Number of an edge along an axis among the four, from one of its corners.
constexpr int edge_at(int axis, int corner) {
    const int first = axis == 0 ? 1 : 0, second = axis == 2 ? 1 : 2;
    return (corner >> first & 1) + 2 * (corner >> second & 1);
}
/// The corner of edge `number` on the - side of the axis.
constexpr int corner_of(int axis, int number) {
    const int first = axis == 0 ? 1 : 0, second = axis == 2 ? 1 : 2;
    return (number & 1) << first | (number >> 1) << second;
}

struct Place {
    Lanes x, y, z;
};

ANOMALIS_INLINE Lanes dot(const Place& a, const double* b) {
    return vector_fma(a.x, b[0], vector_fma(a.y, b[1], a.z * b[2]));
}
ANOMALIS_INLINE Lanes dot(const Place& a, const Place& b) {
    return vector_fma(a.x, b.x, vector_fma(a.y, b.y, a.z * b.z));
}
ANOMALIS_INLINE Lanes smaller(Lanes a, Lanes b) {
    return a < b ? a : b;
}
ANOMALIS_INLINE Lanes larger(Lanes a, Lanes b) {
    return a > b ? a : b;
}

/// The body as the stations of one vector see it.
struct Sight {
    Place centre;
    Lanes distance[8];
    Lanes sum[3][4];  ///< of the distances of both ends of every edge
};

ANOMALIS_INLINE Place from_station(const double* place, const Place& at) {
    return {place[0] - at.x, place[1] - at.y, place[2] - at.z};
}

ANOMALIS_INLINE void look(const ParallelepipedTerms& terms, const Place& at, Sight& sight) {
    sight.centre = from_station(terms.centre, at);
    for (int c = 0; c < 8; ++c) {
        const Place to = from_station(terms.corner[c], at);
        sight.distance[c] = vector_sqrt(dot(to, to));
    }
    for_axes([&](auto axis) __attribute__((always_inline)) {
        for (int e = 0; e < 4; ++e) {
            const int c = corner_of(axis.value, e);
            sight.sum[axis.value][e] = sight.distance[c] + sight.distance[c | 1 << axis.value];
        }
    });
}

/// Three logarithms of an axis, those that are wanted.
struct AxisLogs {
    Lanes x, y, z;
};
struct AxisAngles {
    Lanes minus, plus, both;  ///< half solid angles, positive for a station on the side of the body
    Lanes minus_triple, plus_triple;
};

/// Adds what the logarithms and angles of an axis weigh.
template <int Tensors, bool Gravity, int I>
ANOMALIS_INLINE void weigh_logs(const ParallelepipedTerms& terms, const Sight& sight, const AxisLogs& logs,
                                Lanes* sum) {
    for (int k = 0; k < Tensors; ++k) sum[k] = vector_fma(terms.edge_factor[I][k], logs.x, sum[k]);
    if constexpr (Gravity) {
        if (!terms.has_weight[I]) return;
        sum[Tensors] = vector_fma(dot(sight.centre, terms.edge_weight[I]), logs.x, sum[Tensors]);
        if (terms.first_weight[I] != 0)
            sum[Tensors] = vector_fma(terms.first_weight[I], logs.y, sum[Tensors]);
        if (terms.second_weight[I] != 0)
            sum[Tensors] = vector_fma(terms.second_weight[I], logs.z, sum[Tensors]);
    }
}
template <int Tensors, bool Gravity, int I>
ANOMALIS_INLINE void weigh_angles(const ParallelepipedTerms& terms, const AxisAngles& angles, Lanes* sum) {
    for (int k = 0; k < Tensors; ++k) sum[k] = vector_fma(terms.face_factor[I][k], angles.both, sum[k]);
    if constexpr (Gravity) {
        if (terms.face_weight[I] == 0) return;
        const Lanes moment =
            vector_fma(angles.plus_triple, angles.plus, -(angles.minus_triple * angles.minus));
        sum[Tensors] = vector_fma(terms.face_weight[I], moment, sum[Tensors]);
    }
}

struct Complex {
    Lanes re, im;
};
ANOMALIS_INLINE Complex product(const Complex& a, const Complex& b) {
    return {vector_fma(a.re, b.re, -(a.im * b.im)), vector_fma(a.re, b.im, a.im * b.re)};
}

/// A station in the plane of a face, whatever the rounding, is seen from outside it.
ANOMALIS_INLINE Lanes off_the_plane(Lanes triple, Lanes shift) {
    return vector_abs(triple) < shift ? -shift : triple;
}
/// A station below a face by no more than the tolerance, and not beside it, stands above it.
ANOMALIS_INLINE Lanes seen_from_outside(Lanes triple, Lanes re, double tolerance) {
    const Lanes turned = re < 0.0 ? -triple : triple;
    return triple > 0.0 ? (triple < tolerance ? turned : triple) : triple;
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
