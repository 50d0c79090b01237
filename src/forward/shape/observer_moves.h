#pragma once

#include "forward/shape/prism_lanes.h"

// A face as a station sees it that is close to the line of one of its edges: from a metre higher, and aside
// of a level edge, again and again until no edge is close, ten times at most. To be included by files that
// are compiled once a vector level.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

inline constexpr int most_attempts = 10;
/// How high, and how many first steps aside, the last attempt but one may find an observer.
inline constexpr double last_height = 8, farthest_step = 36;

/// One vector of stations before a face.
template <class Real>
struct CloseStations {
    const PrismFaces& prism;
    const PrismFaces::Face& face;
    NedLanes<Real> observer;
    const Sight<Real>& sight;
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

/// Those of `lanes` that may be close to edge i after 0 to 8 moves, up to `aside` (m) to a side. The product
/// of its corners changes by s at most on the way, and (p - s)^2 is at least (1 - e) p^2 + (1 - 1 / e) s^2.
template <class Real>
ANOMALIS_INLINE LaneMask<Real> may_come_close(const CloseStations<Real>& at, int i, LaneMask<Real> lanes,
                                              double aside) {
    constexpr double e = 0.125;
    const int k = at.face.edge[i];
    const PrismFaces::Edge& edge = at.prism.edge[k];
    if (edge.length == 0) return LaneMask<Real>{};
    const double sweep = aside * edge.length + last_height * at.face.level[i], reach = aside + last_height;
    const Real r1 = at.sight.distance[edge.from], r2 = at.sight.distance[edge.to];
    const Real least = vector_fma(at.sight.product[k], 1 - e, Real{} + (1 - 1 / e) * sweep * sweep);
    const Real limit = near_edge_squared * (1 + 1e-9) * ((r1 + reach) * (r2 + reach));
    return least > limit ? LaneMask<Real>{} : lanes;
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

/// The way of observers that are only ever close to two opposite edges of a face, whose steps lead to and
/// fro on one line: after k moves they are t steps aside and k metres up. Squares of distances and of the
/// product of an edge's corners are polynomials of t and k on it.
template <class Real>
class EdgeOnWay {
  public:
    /// Of edge i, for steps away from edge `first`.
    EdgeOnWay(const CloseStations<Real>& at, int i, int first) {
        const int from = at.face.corner[i], to = at.face.corner[(i + 1) & 3];
        const NedLanes<double> e = corner_from(at.prism, to, corner_place(at.prism, from));
        const NedLanes<Real>& a = at.sight.to[from];
        const double n = at.face.step[first][0], o = at.face.step[first][1];
        // Products of the step and of a metre down with the edge.
        const NedLanes<double> s{o * e.down, -n * e.down, n * e.east - o * e.north};
        const NedLanes<double> d{-e.east, e.north, 0};
        const NedLanes<Real> c{vector_fma(a.east, e.down, -(a.down * e.east)),
                               vector_fma(a.down, e.north, -(a.north * e.down)),
                               vector_fma(a.north, e.east, -(a.east * e.north))};
        const Real aside = vector_fma(a.north, n, a.east * o);
        product_ = {at.sight.product[at.face.edge[i]],
                    -2.0 * vector_fma(c.north, s.north, vector_fma(c.east, s.east, c.down * s.down)),
                    2.0 * vector_fma(c.north, d.north, c.east * d.east),
                    s.north * s.north + s.east * s.east + s.down * s.down,
                    d.north * d.north + d.east * d.east,
                    -2 * (s.north * d.north + s.east * d.east)};
        const double level = n * n + o * o;
        r1_ = at.sight.distance[from];
        r2_ = at.sight.distance[to];
        from_ = {r1_ * r1_, -2.0 * aside, 2.0 * a.down, level, 1, 0};
        to_ = {r2_ * r2_, -2.0 * (aside + (n * e.north + o * e.east)), 2.0 * (a.down + e.down), level, 1, 0};
    }

    /// Those of `lanes` that are close to the edge after k moves.
    LaneMask<Real> close(Real t, Real k, LaneMask<Real> lanes) const {
        constexpr double limit = near_edge_squared * near_edge_squared;
        const Real p = product_.after(t, k);
        return p * p <= limit * (from_.after(t, k) * to_.after(t, k)) ? lanes : LaneMask<Real>{};
    }

    /// Whether all of `lanes` are certain to be close to it after 0 to 8 moves to one side, 1 or -1. The
    /// squared product is convex, so it is nowhere larger than in the corners of a triangle around all those
    /// places.
    bool stays_close(double side, double reach, LaneMask<Real> lanes) const {
        const Real zero{}, high = zero + last_height;
        const Real raised = product_.after(zero, high),
                   aside = product_.after(zero + side * farthest_step, high);
        Real most = raised > aside ? raised : aside;
        most = most > product_.here ? most : product_.here;
        const Real limit = near_edge_squared * (1 - 1e-9) * ((r1_ - reach) * (r2_ - reach));
        return !any_lane(most < limit ? LaneMask<Real>{} : lanes);
    }

  private:
    struct Square {
        Real here, by_side, by_height;
        double side, height, both;
        Real after(Real t, Real k) const {
            const Real slope = vector_fma(t, side, vector_fma(k, both, by_side));
            return vector_fma(t, slope, vector_fma(k, vector_fma(k, height, by_height), here));
        }
    };
    Square product_, from_, to_;
    Real r1_, r2_;
};

/// Along the way of an observer that is close to an edge or to the opposite one.
template <class Real>
struct ToAndFro {
    Real t{}, moves{};
    LaneMask<Real> still;  ///< those that have not come to a place where they see the face from
};

/// As long as all moves are from the same edge, no place hangs on the ones before. `side` is 1 where that is
/// the first edge, -1 where it is the opposite one.
template <class Real>
ANOMALIS_INLINE void move_to_one_side(const EdgeOnWay<Real>& first, const EdgeOnWay<Real>& opposite,
                                      double side, ToAndFro<Real>& way) {
    LaneMask<Real> close = way.still;
    for (int k = 0; k < most_attempts - 1; ++k) {
        const Real t = Real{} + side * k * (k + 1) / 2.0, moves = Real{} + k;
        const LaneMask<Real> away = first.close(t, moves, close);
        close = side > 0 ? away : opposite.close(t, moves, close & ~away);
        way.moves += close != 0 ? Real{} + 1.0 : Real{};
    }
    way.t = side * 0.5 * way.moves * (way.moves + 1.0);
}

/// The rest of the way, move by move.
template <class Real>
ANOMALIS_INLINE void move_on(const EdgeOnWay<Real>& first, const EdgeOnWay<Real>& opposite,
                             ToAndFro<Real>& way) {
    constexpr double all = most_attempts - 1;
    LaneMask<Real> under_way = way.moves < all ? way.still : LaneMask<Real>{};
    while (any_lane(under_way)) {
        const LaneMask<Real> away = first.close(way.t, way.moves, under_way);
        const LaneMask<Real> back = opposite.close(way.t, way.moves, under_way & ~away);
        const LaneMask<Real> moved_on = away | back;
        const Real next = way.moves + 1.0;
        way.t = away != 0 ? way.t + next : (back != 0 ? way.t - next : way.t);
        way.moves = moved_on != 0 ? next : way.moves;
        way.still &= ~under_way | moved_on;
        under_way = way.moves < all ? under_way & moved_on : LaneMask<Real>{};
    }
}

/// Whether all moves of all lanes are certain to be from the same edge.
template <class Real>
ANOMALIS_INLINE bool move_to_the_end(const CloseStations<Real>& at, int first, int side, double aside,
                                     LaneMask<Real> lanes) {
    const EdgeOnWay<Real> edge(at, side > 0 ? first : first + 2, first);
    return edge.stays_close(side, aside + last_height, lanes) &&
           (side > 0 || !any_lane(may_come_close(at, first, lanes, aside)));
}

/// The moves of `lanes`, whose first is away from edge `first` of the face or from the one opposite, as long
/// as it is these two that they move away from. Told are those that may come close to another one, and those
/// so near that their distances on the way are lost in rounding.
template <class Real>
ANOMALIS_INLINE LaneMask<Real> move_to_and_fro(const CloseStations<Real>& at, int first, LaneMask<Real> lanes,
                                               Moves<Real>& moves) {
    const PrismFaces::Face& face = at.face;
    const double* step = face.step[first];
    const double size = __builtin_sqrt(step[0] * step[0] + step[1] * step[1]);
    const double aside = farthest_step * size;
    LaneMask<Real> beside{};
    for (int c = 0; c < 4; ++c)
        beside |= at.sight.distance[face.corner[c]] < 4 * (aside + last_height) ? lanes : LaneMask<Real>{};
    lanes &= ~beside;
    if (!any_lane(lanes)) return beside;
    LaneMask<Real> other{};
    for (int i = 1 - first; i < 4; i += 2) other |= may_come_close(at, i, lanes, aside);
    const LaneMask<Real> bit = at.sight.close & (std::uint64_t{1} << face.edge[first]);
    const LaneMask<Real> at_first = bit != 0 ? lanes : LaneMask<Real>{};
    // 0 where neighbours begin differently.
    const int side = !any_lane(lanes & ~at_first) ? 1 : (any_lane(at_first) ? 0 : -1);
    ToAndFro<Real> way{Real{}, Real{}, lanes};
    if (side != 0 && move_to_the_end(at, first, side, aside, lanes)) {
        way.moves = Real{} + (most_attempts - 1.0);
        way.t = side * 0.5 * way.moves * (way.moves + 1.0);
    } else {
        const EdgeOnWay<Real> edge(at, first, first), opposite(at, first + 2, first);
        if (side != 0) move_to_one_side(edge, opposite, side, way);
        move_on(edge, opposite, way);
    }
    moves.by.north = lanes != 0 ? way.t * step[0] : moves.by.north;
    moves.by.east = lanes != 0 ? way.t * step[1] : moves.by.east;
    moves.by.down = lanes != 0 ? -way.moves : moves.by.down;
    moves.at_last |= way.still;
    return (other & lanes) | beside;
}

/// All attempts but the last, one by one.
template <class Real>
ANOMALIS_INLINE void go_through_attempts(const CloseStations<Real>& at, LaneMask<Real> active,
                                         Moves<Real>& moves) {
    moves.by = {active != 0 ? Real{} : moves.by.north, active != 0 ? Real{} : moves.by.east,
                active != 0 ? Real{} : moves.by.down};
    moves.at_last &= ~active;
    for (int attempt = 1; attempt < most_attempts && any_lane(active); ++attempt) {
        const NedLanes<Real> observer = moved(at.observer, moves.by);
        LaneMask<Real> unmoved = active;
        for (int i = 0; i < 4 && any_lane(unmoved); ++i) {
            const LaneMask<Real> here = close_to_edge(at, i, observer, unmoved);
            move_from_edge(at.face, i, attempt, here, moves.by);
            unmoved &= ~here;
        }
        active &= ~unmoved;
    }
    moves.at_last |= active;
}

/// Where a face moves its observers to before their last attempt.
template <class Real>
ANOMALIS_INLINE Moves<Real> moves_of(const CloseStations<Real>& at) {
    Moves<Real> moves{{Real{}, Real{}, Real{}}, LaneMask<Real>{}};
    LaneMask<Real> other{};
    for (int first = 0; first < 2; ++first) {
        const std::uint64_t pair =
            (std::uint64_t{1} << at.face.edge[first]) | (std::uint64_t{1} << at.face.edge[first + 2]);
        const LaneMask<Real> bits = at.sight.close & pair;
        const LaneMask<Real> lanes = bits != 0 ? ~LaneMask<Real>{} : LaneMask<Real>{};
        // Close to edges of both pairs: the second finds it out again.
        if (any_lane(lanes)) other |= move_to_and_fro(at, first, lanes, moves);
    }
    if (any_lane(other)) go_through_attempts(at, other, moves);
    return moves;
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
