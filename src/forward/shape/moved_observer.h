#pragma once

#include "forward/shape/prism_lanes.h"

// A face as a station sees it that is close to the line of one of its edges: from a metre higher, and aside
// of a level edge, again and again until no edge is close, ten times at most. To be included by files that
// are compiled once a vector level.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

inline constexpr int most_attempts = 10;

/// One vector of stations before a face. `close` has bit k of a lane set where edge k is close to it.
template <class Real>
struct CloseStations {
    const PrismFaces& prism;
    const PrismFaces::Face& face;
    NedLanes<Real> observer;
    LaneMask<Real> close;
};

/// How far the observers have gone, and all bits of those that have one attempt left.
template <class Real>
struct Moves {
    NedLanes<Real> by;
    LaneMask<Real> at_last;
};

template <class Real>
ANOMALIS_INLINE NedLanes<Real> moved(const NedLanes<Real>& from, const NedLanes<Real>& by) {
    return {from.north + by.north, from.east + by.east, from.down + by.down};
}

/// Whether |product| is certainly below or above the limit for every observer within `reach` of the corners'
/// distances, which changes the product by `sweep` at most.
template <class Real>
ANOMALIS_INLINE Real certainly_close(Real product, Real r1, Real r2, double sweep, double reach) {
    const Real most = product + sweep;
    const Real d1 = r1 - reach, d2 = r2 - reach;
    const Real limit = near_edge_squared * (1 - 1e-9) * (d1 * d2);
    return d1 > 0.0 ? (d2 > 0.0 ? limit - most * most : Real{} - 1.0) : Real{} - 1.0;
}
template <class Real>
ANOMALIS_INLINE Real certainly_far(Real product, Real r1, Real r2, double sweep, double reach) {
    const Real least = product - sweep;
    const Real limit = near_edge_squared * (1 + 1e-9) * ((r1 + reach) * (r2 + reach));
    return least > 0.0 ? least * least - limit : Real{} - 1.0;
}

/// Far from a short edge all attempts but the last move away from the same one. True where that is certain
/// for all lanes, so that the attempts need not be gone through.
template <class Real>
ANOMALIS_INLINE bool all_from_one_edge(const CloseStations<Real>& at, LaneMask<Real> active,
                                       std::uint64_t any_close, Moves<Real>& moves) {
    const PrismFaces::Face& face = at.face;
    int first = 0;
    while ((any_close >> face.edge[first] & 1U) == 0) ++first;
    // Where the observer is at the ninth attempt: eight steps on.
    const double aside = 36 * __builtin_sqrt(face.step[first][0] * face.step[first][0] +
                                             face.step[first][1] * face.step[first][1]);
    constexpr double up = most_attempts - 2;
    const double reach = __builtin_sqrt(aside * aside + up * up);
    LaneMask<Real> uncertain{};
    for (int i = 0; i <= first; ++i) {
        const PrismFaces::Edge& edge = at.prism.edge[face.edge[i]];
        if (edge.length == 0) continue;
        const NedLanes<Real> a = corner_from(at.prism, edge.from, at.observer);
        const NedLanes<Real> b = corner_from(at.prism, edge.to, at.observer);
        const Real product = vector_sqrt(squared_cross(a, b));
        const Real r1 = vector_sqrt(dot(a, a)), r2 = vector_sqrt(dot(b, b));
        const double sweep = aside * edge.length + up * face.level[i];
        const Real sure = i == first ? certainly_close(product, r1, r2, sweep, reach)
                                     : certainly_far(product, r1, r2, sweep, reach);
        uncertain |= sure > 0.0 ? LaneMask<Real>{} : active;
    }
    if (any_bits(uncertain) != 0) return false;
    const double* nine = face.nine_steps[first];
    moves.by = {active != 0 ? Real{} + nine[0] : Real{}, active != 0 ? Real{} + nine[1] : Real{},
                active != 0 ? Real{} - (most_attempts - 1.0) : Real{}};
    moves.at_last = active;
    return true;
}

/// The lanes of `asked` that are close to edge i of the face from `observer`.
template <class Real>
ANOMALIS_INLINE LaneMask<Real> close_to_edge(const CloseStations<Real>& at, int i,
                                             const NedLanes<Real>& observer, LaneMask<Real> asked) {
    const PrismFaces::Edge& edge = at.prism.edge[at.face.edge[i]];
    if (edge.length == 0) return LaneMask<Real>{};
    const NedLanes<Real> a = corner_from(at.prism, edge.from, observer);
    const NedLanes<Real> b = corner_from(at.prism, edge.to, observer);
    const Real product = squared_cross(a, b);
    constexpr double limit = near_edge_squared * near_edge_squared;
    return product * product <= limit * (dot(a, a) * dot(b, b)) ? asked : LaneMask<Real>{};
}

template <class Real>
ANOMALIS_INLINE void move_from_edge(const PrismFaces::Face& face, int i, int attempt, LaneMask<Real> which,
                                    NedLanes<Real>& by) {
    by.north += which != 0 ? Real{} + face.step[i][0] * attempt : Real{};
    by.east += which != 0 ? Real{} + face.step[i][1] * attempt : Real{};
    by.down -= which != 0 ? Real{} + 1.0 : Real{};
}

/// All attempts but the last.
template <class Real>
ANOMALIS_INLINE Moves<Real> go_through_attempts(const CloseStations<Real>& at, LaneMask<Real> active) {
    Moves<Real> moves{};
    for (int attempt = 1; attempt < most_attempts && any_bits(active) != 0; ++attempt) {
        const NedLanes<Real> observer = moved(at.observer, moves.by);
        LaneMask<Real> hit{};
        for (int i = 0; i < 4 && any_bits(active & ~hit) != 0; ++i) {
            const LaneMask<Real> here = close_to_edge(at, i, observer, active & ~hit);
            move_from_edge(at.face, i, attempt, here, moves.by);
            hit |= here;
        }
        active = hit;
    }
    moves.at_last = active;
    return moves;
}

/// The integral as one takes it at the last attempt close to the line of an edge from a to b: along a to the
/// edge's end, or along b with the distance of a where b is the nearer one.
template <class Real>
struct LastIntegral {
    Real n, d;  ///< the argument of the logarithm
    Real sign;
};
template <class Real>
ANOMALIS_INLINE LastIntegral<Real> last_integral(const NedLanes<double>& edge, double length,
                                                 const NedLanes<Real>& a, const NedLanes<Real>& b, Real r1,
                                                 Real r2) {
    const auto along_edge = [&](const NedLanes<Real>& v) {
        return v.north * edge.north + v.east * edge.east + v.down * edge.down;
    };
    Real along = r1 > r2 ? along_edge(b) : along_edge(a);
    const Real ahead = r1 + along / length;
    // Below 0 by rounding alone: the observer stands on the edge itself.
    along = ahead > 0.0 ? along : -along;
    const Real t = along / length;
    const Real squared = length * length + 2.0 * along + r1 * r1;
    const Real d = r1 + t;
    return {vector_sqrt(squared > 0.0 ? squared : Real{}) + length + t, d > 0.0 ? d : Real{} + 1.0,
            ahead > 0.0 ? Real{} + 1.0 : (d > 0.0 ? Real{} - 1.0 : Real{})};
}

/// The edges' part of a face at the last attempt: who is still close to an edge moves on before its integral,
/// and all edges after it are seen from there.
template <bool Magnetic, class Real>
ANOMALIS_INLINE void add_edges_at_last(const CloseStations<Real>& at, LaneMask<Real> at_last,
                                       NedLanes<Real> observer, FaceLanes<Real>& sum) {
    const PrismFaces::Face& face = at.face;
    for (int i = 0; i < 4; ++i) {
        const PrismFaces::Edge& edge = at.prism.edge[face.edge[i]];
        if (edge.length == 0) continue;
        const int from = face.corner[i], to = face.corner[(i + 1) & 3];
        const NedLanes<Real> a = corner_from(at.prism, from, observer);
        const NedLanes<Real> b = corner_from(at.prism, to, observer);
        const LaneMask<Real> close = close_to_edge(at, i, observer, at_last);
        const Real r1 = vector_sqrt(dot(a, a)), r2 = vector_sqrt(dot(b, b));
        if (any_bits(close) == 0) {
            add_edge<Magnetic>(face, i, edge_integral(r1, r2, edge.length), sum);
            continue;
        }
        move_from_edge(face, i, most_attempts, close, observer);
        const LastIntegral<Real> last =
            last_integral(corner_from(at.prism, to, corner_place(at.prism, from)), edge.length, a, b, r1, r2);
        const Real both = r1 + r2;
        const Real n = close != 0 ? last.n : both + edge.length;
        const Real d = close != 0 ? last.d : both - edge.length;
        const Real difference = close != 0 ? last.n - last.d : Real{} + 2 * edge.length;
        const Real sign = close != 0 ? last.sign : Real{} + 1.0;
        add_edge<Magnetic>(face, i, sign * vector_log_quotient(n, d, difference) / edge.length, sum);
    }
}

/// The face from where its observers are moved to. Lanes that are not close to it see it as they stand, with
/// the same bits as by the common route.
template <bool Magnetic, class Real>
[[gnu::noinline]] void see_moved(const CloseStations<Real>& at, FaceLanes<Real>& seen) {
    const PrismFaces::Face& face = at.face;
    const LaneMask<Real> own = at.close & std::uint64_t{face.edges};
    const LaneMask<Real> active = own != 0 ? ~LaneMask<Real>{} : LaneMask<Real>{};
    Moves<Real> moves{};
    if (!all_from_one_edge(at, active, any_bits(own), moves)) moves = go_through_attempts(at, active);
    const NedLanes<Real> observer = moved(at.observer, moves.by);
    NedLanes<Real> to[4];
    Real distance[4];
    for (int c = 0; c < 4; ++c) {
        to[c] = corner_from(at.prism, face.corner[c], observer);
        distance[c] = vector_sqrt(dot(to[c], to[c]));
    }
    seen.plane = to[0].north * face.normal[0] + to[0].east * face.normal[1] + to[0].down * face.normal[2];
    begin_face<Magnetic>(face,
                         solid_angle(face.area, seen.plane, to[0], to[1], to[2], to[3], distance[0],
                                     distance[1], distance[2], distance[3]),
                         seen);
    if (face.integrals == 0) return;
    if (any_bits(moves.at_last) != 0) return add_edges_at_last<Magnetic>(at, moves.at_last, observer, seen);
    for (int i = 0; i < 4; ++i)
        if ((face.integrals >> face.edge[i] & 1U) != 0)
            add_edge<Magnetic>(
                face, i,
                edge_integral(distance[i], distance[(i + 1) & 3], at.prism.edge[face.edge[i]].length), seen);
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
