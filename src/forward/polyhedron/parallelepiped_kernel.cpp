#include "forward/polyhedron/parallelepiped_kernel.h"

#include "vector/vector_math.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

namespace {

constexpr double pi = 0x1.921fb54442d18p+1;

/// Below this r1 + r2 - l, as a part of r1 + r2 + l, an edge counts as near: what follows from distances
/// alone has lost too many digits.
constexpr double least_edge_margin = 1e-5;
/// Likewise for both parts of the tangent of a face's half solid angle, which vanish on its edges and where a
/// diagonal is touched.
constexpr double least_face_margin = 1e-3;

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
ANOMALIS_INLINE bool any_negative(Lanes value) {
    bool any = false;
    for (int lane = 0; lane < lane_count; ++lane) any |= value[lane] < 0.0;
    return any;
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

/// Twice the hyperbolic arc tangent of n / d: the difference of the logarithms of two edges.
struct Difference {
    Lanes n, d;
};

/// Of the edges along axis I on the + and on the - side of axis J, on one side of the third. From the
/// differences of their distances, which are known from the sides between them, so that it is as small as the
/// edges are near each other and no digit is lost far away.
template <int I, int J>
ANOMALIS_INLINE Difference difference_across(const ParallelepipedTerms& terms, const Sight& sight,
                                             const Lanes* halfway, int side) {
    constexpr int K = 3 - I - J;
    const int low = side << K, high = low | 1 << I;
    const Lanes a = sight.sum[J][edge_at(J, low)], b = sight.sum[J][edge_at(J, high)];
    const Lanes change = vector_fma(halfway[edge_at(J, low)], b, halfway[edge_at(J, high)] * a);
    const double l = terms.length[I];
    const Lanes product =
        vector_fma(sight.sum[I][edge_at(I, low)], sight.sum[I][edge_at(I, low | 1 << J)], Lanes{} - l * l);
    return {change * (-2 * l), product * (a * b)};
}

/// Side J times the way from the station to the middle of each of its four edges.
template <int J>
ANOMALIS_INLINE void find_halfways(const ParallelepipedTerms& terms, const Sight& sight, Lanes* halfway) {
    const Lanes middle = dot(sight.centre, terms.side[J]);
    const double a = terms.lean[J][Axis<J>::first], b = terms.lean[J][Axis<J>::second];
    halfway[0] = middle - (a + b);
    halfway[1] = middle + (a - b);
    halfway[2] = middle - (a - b);
    halfway[3] = middle + (a + b);
}

ANOMALIS_INLINE Lanes joined_difference(const Difference& plus, const Difference& minus) {
    const Lanes n = vector_fma(plus.n, minus.d, -(minus.n * plus.d));
    const Lanes d = vector_fma(plus.d, minus.d, -(plus.n * minus.n));
    return vector_log_quotient(d + n, d - n, n + n);
}
ANOMALIS_INLINE Lanes joined_sum(const Difference& plus, const Difference& minus) {
    const Lanes n = vector_fma(plus.n, minus.d, minus.n * plus.d);
    const Lanes d = vector_fma(plus.d, minus.d, plus.n * minus.n);
    return vector_log_quotient(d + n, d - n, n + n);
}

template <int Tensors, bool Gravity, int I>
ANOMALIS_INLINE Lanes add_edges(const ParallelepipedTerms& terms, const Sight& sight,
                                const Lanes (*halfway)[4], Lanes* sum) {
    constexpr int J = Axis<I>::first, K = Axis<I>::second;
    const Lanes* s = sight.sum[I];
    const Lanes least = smaller(smaller(s[0], s[1]), smaller(s[2], s[3]));
    const Lanes margin =
        vector_fma(1 - least_edge_margin, least, Lanes{} - (1 + least_edge_margin) * terms.length[I]);
    if (Tensors == 0 && !terms.has_weight[I]) return margin;
    const Difference minus = difference_across<I, J>(terms, sight, halfway[J], 0);
    const Difference plus = difference_across<I, J>(terms, sight, halfway[J], 1);
    AxisLogs logs{joined_difference(plus, minus), {}, {}};
    if constexpr (Gravity) {
        if (terms.second_weight[I] != 0) logs.z = joined_sum(plus, minus);
        if (terms.first_weight[I] != 0)
            logs.y = joined_sum(difference_across<I, K>(terms, sight, halfway[K], 1),
                                difference_across<I, K>(terms, sight, halfway[K], 0));
    }
    weigh_logs<Tensors, Gravity, I>(terms, sight, logs, sum);
    return margin;
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

/// The half solid angle of a face as a complex number: the product of those of its triangles (van Oosterom
/// and Strackee), whose triple products are equal. `triple` is moved to the outside where it has to be.
template <int I, int Side>
ANOMALIS_INLINE Complex half_angle(const ParallelepipedTerms& terms, const Sight& sight, Lanes& triple,
                                   Lanes& margin) {
    constexpr int J = Axis<I>::first, K = Axis<I>::second;
    constexpr int a = Side << I, b = a | 1 << J, c = b | 1 << K, d = a | 1 << K;
    const Lanes ra = sight.distance[a], rb = sight.distance[b], rc = sight.distance[c],
                rd = sight.distance[d];
    const double j = terms.length[J] * terms.length[J], k = terms.length[K] * terms.length[K];
    const double across = terms.diagonal[I];
    const Lanes ac = ra + rc;
    const Lanes near = sight.sum[J][edge_at(J, a)] * sight.sum[K][edge_at(K, b)] * ac;
    const Lanes far = sight.sum[J][edge_at(J, d)] * sight.sum[K][edge_at(K, a)] * ac;
    const Lanes first = vector_fma(-j, rc, vector_fma(-k, ra, vector_fma(-across, rb, near)));
    const Lanes second = vector_fma(-j, ra, vector_fma(-k, rc, vector_fma(-across, rd, far)));
    const Lanes twice = triple + triple;
    const Lanes re = vector_fma(first, second, -(twice * twice));
    triple = seen_from_outside(triple, re, terms.area[I] * terms.face_tolerance);
    // Both half angles together are at most pi.
    const Lanes im = (triple + triple) * vector_abs(first + second);
    const Lanes size = larger(vector_abs(re), vector_abs(im));
    margin = smaller(margin, vector_fma(-least_face_margin, near * far, size));
    return {re, im};
}

/// Both half solid angles together from the product of their numbers. A station that is not between the faces
/// has them of two signs, so that the sum is below pi; between them it is positive and reaches 2 pi. What
/// tells them apart has the right sign whatever the rounding.
ANOMALIS_INLINE Lanes joined_angle(const Complex& minus, const Complex& plus) {
    const Complex both = product(minus, plus);
    const Lanes angle = vector_atan2(both.im, both.re);
    const Lanes round = smaller(both.im, larger(minus.re, plus.re));
    const Lanes turned = round < 0.0 ? angle + 2 * pi : angle;
    return smaller(minus.im, plus.im) > 0.0 ? turned : angle;
}

template <int Tensors, bool Gravity, int I>
ANOMALIS_INLINE Lanes add_faces(const ParallelepipedTerms& terms, const Sight& sight, Lanes margin,
                                Lanes* sum) {
    if (Tensors == 0 && terms.face_weight[I] == 0) return margin;
    const Lanes middle = dot(sight.centre, terms.normal[I]);
    const Lanes shift = Lanes{} + plane_shift * terms.area[I] * terms.radius;
    AxisAngles angles{{},
                      {},
                      {},
                      off_the_plane(terms.half_volume - middle, shift),
                      off_the_plane(terms.half_volume + middle, shift)};
    const Complex minus = half_angle<I, 0>(terms, sight, angles.minus_triple, margin);
    const Complex plus = half_angle<I, 1>(terms, sight, angles.plus_triple, margin);
    if (Gravity && terms.face_weight[I] != 0) {
        angles.minus = vector_atan2(minus.im, minus.re);
        angles.plus = vector_atan2(plus.im, plus.re);
        angles.both = angles.minus + angles.plus;
    } else {
        angles.both = joined_angle(minus, plus);
    }
    weigh_angles<Tensors, Gravity, I>(terms, angles, sum);
    return margin;
}

/// The same near edges and faces, without a difference of like numbers but those of the coordinates.

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
    return by_corners ? 0.5 * angle + (corners.turns - 1.0) * pi : angle;
}

ANOMALIS_INLINE Lanes near_angle_signed(Lanes& triple, Lanes angle, double tolerance) {
    triple = seen_from_outside(triple, pi / 2 - angle, tolerance);
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

template <int Tensors, bool Gravity>
void set_all(const ParallelepipedTerms& terms, StationBlock& block) {
    constexpr int sums = Tensors + (Gravity ? 1 : 0);
    for (std::size_t i = 0; i < block.count; i += lane_count) {
        const Place at{load_lanes(block.x + i), load_lanes(block.y + i), load_lanes(block.z + i)};
        Sight sight;
        look(terms, at, sight);
        Lanes halfway[3][4];
        find_halfways<0>(terms, sight, halfway[0]);
        find_halfways<1>(terms, sight, halfway[1]);
        if constexpr (Gravity) find_halfways<2>(terms, sight, halfway[2]);
        Lanes sum[sums] = {};
        Lanes margin = Lanes{} + 1.0;
        for_axes([&](auto axis) __attribute__((always_inline)) {
            margin = smaller(margin, add_edges<Tensors, Gravity, axis.value>(terms, sight, halfway, sum));
            margin = add_faces<Tensors, Gravity, axis.value>(terms, sight, margin, sum);
        });
        Lanes clear = Lanes{} + 1.0;
        if (any_negative(margin)) {
            Lanes near[sums] = {};
            const Lanes near_clear = near_sums<Tensors, Gravity>(terms, at, sight, near);
            clear = margin < 0.0 ? near_clear : clear;
            for (int k = 0; k < sums; ++k) sum[k] = margin < 0.0 ? near[k] : sum[k];
        }
        for (int k = 0; k < sums; ++k) store_lanes(block.sum[k] + i, sum[k]);
        store_lanes(block.margin + i, clear);
    }
}

}  // namespace

void parallelepiped_sums(const ParallelepipedTerms& terms, StationBlock& block) {
    switch (terms.kind) {
        case FieldKind::total_field:
            return set_all<1, false>(terms, block);
        case FieldKind::gravity:
            return set_all<0, true>(terms, block);
        case FieldKind::total_field_and_gravity:
            return set_all<1, true>(terms, block);
        case FieldKind::magnetic_components:
            return set_all<3, false>(terms, block);
        case FieldKind::gradient:
            return set_all<6, false>(terms, block);
    }
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
