#include "forward/polyhedron/parallelepiped_kernel.h"

#include "forward/polyhedron/parallelepiped_near_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

/// Below this r1 + r2 - l, as a part of r1 + r2 + l, an edge counts as near: what follows from distances
/// alone has lost too many digits.
constexpr double least_edge_margin = 1e-5;
/// Likewise for both parts of the tangent of a face's half solid angle, which vanish on its edges and where a
/// diagonal is touched.
constexpr double least_face_margin = 1e-3;

/// Negative where a station is near. That of the attraction leaves out the faces without a part in it, so
/// that it does not hang on what else is asked for.
struct Margins {
    Lanes tensor, gravity;
};

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
ANOMALIS_INLINE void add_edges(const ParallelepipedTerms& terms, const Sight& sight,
                               const Lanes (*halfway)[4], Margins& margins, Lanes* sum) {
    constexpr int J = Axis<I>::first, K = Axis<I>::second;
    const Lanes* s = sight.sum[I];
    const Lanes least = smaller(smaller(s[0], s[1]), smaller(s[2], s[3]));
    const Lanes margin =
        vector_fma(1 - least_edge_margin, least, Lanes{} - (1 + least_edge_margin) * terms.length[I]);
    margins.tensor = smaller(margins.tensor, margin);
    margins.gravity = smaller(margins.gravity, margin);
    if (Tensors == 0 && !terms.has_weight[I]) return;
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
    const Lanes turned = round < 0.0 ? angle + 2 * half_turn : angle;
    return smaller(minus.im, plus.im) > 0.0 ? turned : angle;
}

template <int Tensors, bool Gravity, int I>
ANOMALIS_INLINE void add_faces(const ParallelepipedTerms& terms, const Sight& sight, Margins& margins,
                               Lanes* sum) {
    if (Tensors == 0 && terms.face_weight[I] == 0) return;
    const Lanes middle = dot(sight.centre, terms.normal[I]);
    Lanes margin = Lanes{} + 1.0;
    const Lanes shift = Lanes{} + plane_shift * terms.area[I] * terms.radius;
    AxisAngles angles{{},
                      {},
                      {},
                      off_the_plane(terms.half_volume - middle, shift),
                      off_the_plane(terms.half_volume + middle, shift)};
    const Complex minus = half_angle<I, 0>(terms, sight, angles.minus_triple, margin);
    const Complex plus = half_angle<I, 1>(terms, sight, angles.plus_triple, margin);
    angles.both = joined_angle(minus, plus);
    if (Gravity && terms.face_weight[I] != 0) {
        angles.plus = vector_atan2(plus.im, plus.re);
        angles.minus = angles.both - angles.plus;
    }
    weigh_angles<Tensors, Gravity, I>(terms, angles, sum);
    margins.tensor = smaller(margins.tensor, margin);
    if (Gravity && terms.face_weight[I] != 0) margins.gravity = smaller(margins.gravity, margin);
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
        Margins margins{Lanes{} + 1.0, Lanes{} + 1.0};
        for_axes([&](auto axis) __attribute__((always_inline)) {
            add_edges<Tensors, Gravity, axis.value>(terms, sight, halfway, margins, sum);
            add_faces<Tensors, Gravity, axis.value>(terms, sight, margins, sum);
        });
        Lanes clear = Lanes{} + 1.0;
        const Lanes margin = Tensors > 0 ? margins.tensor : margins.gravity;
        if (any_less(margin, 0.0)) {
            Lanes near[sums] = {};
            const Lanes near_clear = near_sums<Tensors, Gravity>(terms, at, sight, near);
            clear = margin < 0.0 ? near_clear : clear;
            for (int k = 0; k < Tensors; ++k) sum[k] = margin < 0.0 ? near[k] : sum[k];
            if constexpr (Gravity) sum[Tensors] = margins.gravity < 0.0 ? near[Tensors] : sum[Tensors];
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
