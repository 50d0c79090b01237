#pragma once

#include "forward/polyhedron/parallelepiped_lanes.h"

// The sums of a parallelepiped for stations near its edges and faces, without a difference of like numbers
// but those of the coordinates. For kernels that are compiled once a vector level; to be included by such
// files only.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

/// An edge's logarithm as that of n / d.
struct Quotient {
    Lanes n, d;
};

struct NearSight {
    const Sight& all;
    Place to[8];
    Place nearest;
    Lanes nearest_distance;
    Lanes along[3][4];  ///< the product of the places of both ends of every edge
    Lanes on_plus[3];   ///< 1 where the nearest corner lies on the + side of the axis, else 0
};

ANOMALIS_INLINE void look_near(const ParallelepipedTerms& terms, const Place& at, NearSight& near) {
    for (int c = 0; c < 8; ++c) {
        near.to[c] = from_station(terms.corner[c], at);
        const Lanes r = near.all.distance[c];
        const auto closer = c == 0 ? r == r : r < near.nearest_distance;
        near.nearest = {closer ? near.to[c].x : near.nearest.x, closer ? near.to[c].y : near.nearest.y,
                        closer ? near.to[c].z : near.nearest.z};
        near.nearest_distance = closer ? r : near.nearest_distance;
        for (int i = 0; i < 3; ++i)
            near.on_plus[i] = closer ? Lanes{} + static_cast<double>(c >> i & 1) : near.on_plus[i];
    }
    for_axes([&](auto axis) __attribute__((always_inline)) {
        for (int e = 0; e < 4; ++e) {
            const int c = corner_of(axis.value, e);
            near.along[axis.value][e] = dot(near.to[c], near.to[c | 1 << axis.value]);
        }
    });
}

/// log((s + l) / (s - l)). Within the sphere over the edge s^2 - l^2 = 2 (r1 r2 + r1 . r2) is 2 |r1 x r2|^2 /
/// (r1 r2 - r1 . r2), and the distance of the edge is that of its line; beyond it the nearest corner counts.
template <int I>
ANOMALIS_INLINE Quotient near_edge(const ParallelepipedTerms& terms, const NearSight& near, int number,
                                   Lanes& clear) {
    const int c = corner_of(I, number);
    const Place& a = near.to[c];
    const double* e = terms.side[I];
    const double l = terms.length[I];
    const Lanes along = near.along[I][number];
    const Lanes distances = near.all.distance[c] * near.all.distance[c | 1 << I];
    const Place aside{vector_fma(a.y, e[2], -(a.z * e[1])), vector_fma(a.z, e[0], -(a.x * e[2])),
                      vector_fma(a.x, e[1], -(a.y * e[0]))};
    const Lanes squared = dot(aside, aside);
    const Lanes distance =
        along < 0.0 ? squared - (terms.clearance * l) * (terms.clearance * l) : Lanes{} + 1.0;
    clear = smaller(clear, distance);
    const Lanes whole = near.all.sum[I][number] + l;
    const Lanes n = along < 0.0 ? whole * whole * (distances - along) : whole * whole;
    const Lanes d = along < 0.0 ? squared + squared : 2.0 * (distances + along);
    return {n, d};
}

ANOMALIS_INLINE Lanes quotient_log(const Quotient& a, const Quotient& b, const Quotient& over_a,
                                   const Quotient& over_b) {
    return vector_log_quotient(a.n * over_a.d * (b.n * over_b.d), a.d * over_a.n * (b.d * over_b.n));
}

template <int Tensors, bool Gravity, int I>
ANOMALIS_INLINE void add_near_edges(const ParallelepipedTerms& terms, const NearSight& near, Lanes& clear,
                                    Lanes* sum) {
    Quotient edge[4];
    for (int e = 0; e < 4; ++e) edge[e] = near_edge<I>(terms, near, e, clear);
    if (Tensors == 0 && !terms.has_weight[I]) return;
    AxisLogs logs{quotient_log(edge[0], edge[3], edge[1], edge[2]), {}, {}};
    if constexpr (Gravity) {
        if (terms.first_weight[I] != 0) logs.y = quotient_log(edge[2], edge[3], edge[0], edge[1]);
        if (terms.second_weight[I] != 0) logs.z = quotient_log(edge[1], edge[3], edge[0], edge[2]);
    }
    weigh_logs<Tensors, Gravity, I>(terms, near.all, logs, sum);
}

/// An angle as that of a complex number and whole turns beyond -pi to pi.
struct Turned {
    Complex number;
    Lanes turns;
};

ANOMALIS_INLINE Turned sum_of_angles(const Turned& a, const Turned& b) {
    const Complex both = product(a.number, b.number);
    const Lanes rightmost = larger(a.number.re, b.number.re);
    const Lanes up = smaller(both.im, rightmost) < 0.0 ? Lanes{} + 1.0 : Lanes{};
    const Lanes down = smaller(-both.im, rightmost) < 0.0 ? Lanes{} - 1.0 : Lanes{};
    const Lanes over = larger(a.number.im, b.number.im) < 0.0 ? down : Lanes{};
    return {both, a.turns + b.turns + (smaller(a.number.im, b.number.im) < 0.0 ? over : up)};
}

/// The angle between the two faces through the station and the sides J and K that meet at a corner.
template <int I>
ANOMALIS_INLINE Turned corner_angle(const ParallelepipedTerms& terms, const NearSight& near, int corner,
                                    Lanes height) {
    constexpr int J = Axis<I>::first, K = Axis<I>::second;
    const Place& to = near.to[corner];
    const Lanes r = near.all.distance[corner];
    const Lanes re =
        vector_fma(r * r, Lanes{} + 2 * terms.lean[J][K], -(dot(to, terms.side[J]) * dot(to, terms.side[K])));
    const bool opposite = (corner >> J & 1) != (corner >> K & 1);
    return {{opposite ? -re : re, r * height}, Lanes{}};
}

/// As `half_angle`, with every term as small as a corner is near.
template <int I, int Side>
ANOMALIS_INLINE Complex near_triangles(const NearSight& near, Lanes height) {
    constexpr int J = Axis<I>::first, K = Axis<I>::second;
    constexpr int a = Side << I, b = a | 1 << J, c = b | 1 << K, d = a | 1 << K;
    const Lanes* r = near.all.distance;
    const Lanes ab = near.along[J][edge_at(J, a)], cd = near.along[J][edge_at(J, d)];
    const Lanes bc = near.along[K][edge_at(K, b)], da = near.along[K][edge_at(K, a)];
    const Lanes ac = dot(near.to[a], near.to[c]);
    const Lanes first = vector_fma(vector_fma(r[a], r[b], ab), r[c], vector_fma(bc, r[a], ac * r[b]));
    const Lanes second = vector_fma(vector_fma(r[a], r[d], da), r[c], vector_fma(cd, r[a], ac * r[d]));
    return {vector_fma(first, second, -(height * height)), height * vector_abs(first + second)};
}

/// The solid angle, and a whole turn, as the sum of the angles at the corners.
template <int I, int Side>
ANOMALIS_INLINE Turned corner_sum(const ParallelepipedTerms& terms, const NearSight& near, Lanes height) {
    constexpr int J = Axis<I>::first, K = Axis<I>::second;
    constexpr int a = Side << I;
    const Turned first = sum_of_angles(corner_angle<I>(terms, near, a, height),
                                       corner_angle<I>(terms, near, a | 1 << J, height));
    const Turned second = sum_of_angles(corner_angle<I>(terms, near, a | 1 << J | 1 << K, height),
                                        corner_angle<I>(terms, near, a | 1 << K, height));
    return sum_of_angles(first, second);
}

ANOMALIS_INLINE Lanes size_of(const Complex& value) {
    return larger(vector_abs(value.re), vector_abs(value.im));
}

/// The half solid angle of a face, not negative, by two roads of which the better one for a station is taken:
/// its triangles, which are lost where their diagonal is touched; and what the angles at its corners exceed
/// those of a plane quadrangle by, which is lost on the lines of its edges.
template <int I, int Side>
ANOMALIS_INLINE Lanes near_half_angle(const ParallelepipedTerms& terms, const NearSight& near, Lanes height) {
    constexpr int J = Axis<I>::first, K = Axis<I>::second;
    constexpr int a = Side << I, b = a | 1 << J, d = a | 1 << K;
    const Complex triangles = near_triangles<I, Side>(near, height);
    const Turned corners = corner_sum<I, Side>(terms, near, height);
    const Lanes* r = near.all.distance;
    const double sides = terms.length[J] * terms.length[K];
    // How much of its largest possible size each number has kept.
    const Lanes kept_by_triangles = size_of(triangles) * (r[b] * r[d] * (sides * sides * sides * sides));
    const auto by_corners = size_of(corners.number) > kept_by_triangles;
    const Lanes angle = vector_atan2(by_corners ? corners.number.im : triangles.im,
                                     by_corners ? corners.number.re : triangles.re);
    return by_corners ? 0.5 * angle + (corners.turns - 1.0) * half_turn : angle;
}

ANOMALIS_INLINE Lanes near_angle_signed(Lanes& triple, Lanes angle, double tolerance) {
    triple = seen_from_outside(triple, half_turn / 2 - angle, tolerance);
    return vector_copysign(angle, triple);
}

template <int Tensors, bool Gravity, int I>
ANOMALIS_INLINE void add_near_faces(const ParallelepipedTerms& terms, const NearSight& near, Lanes* sum) {
    if (Tensors == 0 && terms.face_weight[I] == 0) return;
    // From the nearest corner, so that the side of a face's plane is known as well as the coordinates are.
    const Lanes here = dot(near.nearest, terms.normal[I]);
    const Lanes volume = Lanes{} + 2 * terms.half_volume;
    const Lanes shift = (plane_shift * terms.area[I]) * near.nearest_distance;
    const auto on_plus = near.on_plus[I] > 0.5;
    AxisAngles angles{{},
                      {},
                      {},
                      off_the_plane(on_plus ? volume - here : -here, shift),
                      off_the_plane(on_plus ? here : volume + here, shift)};
    const double tolerance = terms.area[I] * terms.face_tolerance;
    angles.minus = near_angle_signed(
        angles.minus_triple, near_half_angle<I, 0>(terms, near, vector_abs(angles.minus_triple)), tolerance);
    angles.plus = near_angle_signed(
        angles.plus_triple, near_half_angle<I, 1>(terms, near, vector_abs(angles.plus_triple)), tolerance);
    angles.both = angles.minus + angles.plus;
    weigh_angles<Tensors, Gravity, I>(terms, angles, sum);
}

/// Sums of stations near the body; returns what is negative where one stands on an edge.
template <int Tensors, bool Gravity>
ANOMALIS_INLINE Lanes near_sums(const ParallelepipedTerms& terms, const Place& at, const Sight& sight,
                                Lanes* sum) {
    NearSight near{sight, {}, {}, {}, {}, {}};
    look_near(terms, at, near);
    Lanes clear = near.nearest_distance - terms.clearance;
    for_axes([&](auto axis) __attribute__((always_inline)) {
        add_near_edges<Tensors, Gravity, axis.value>(terms, near, clear, sum);
        add_near_faces<Tensors, Gravity, axis.value>(terms, near, sum);
    });
    return clear;
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
