#pragma once

#include "forward/shape/observer_moves.h"

// A face from where its observers are moved to. To be included by files that are compiled once a vector
// level.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

/// The argument of the logarithm as one takes it at the last attempt close to the line of an edge from a to
/// b: along a to the edge's end, or along b with the distance of a where b is the nearer one.
template <class Real>
struct LastQuotient {
    Real n, d;
};
template <class Real>
ANOMALIS_INLINE LastQuotient<Real> last_quotient(const NedLanes<double>& edge, double length,
                                                 const NedLanes<Real>& a, const NedLanes<Real>& b, Real r1,
                                                 Real r2) {
    const auto along_edge = [&](const NedLanes<Real>& v) {
        return v.north * edge.north + v.east * edge.east + v.down * edge.down;
    };
    Real along = r1 > r2 ? along_edge(b) : along_edge(a);
    Real t = along / length;
    const Real ahead = r1 + t;
    // Below 0 by rounding alone: the observer stands on the edge itself, which counts the other way then.
    along = ahead > 0.0 ? along : -along;
    t = ahead > 0.0 ? t : -t;
    const Real squared = length * length + 2.0 * along + r1 * r1;
    const Real n = vector_sqrt(squared > 0.0 ? squared : Real{}) + length + t, d = r1 + t;
    return {ahead > 0.0 ? n : (d > 0.0 ? d : Real{} + 1.0), ahead > 0.0 ? d : (d > 0.0 ? n : Real{} + 1.0)};
}

/// Below this r1 + r2 - length, as a part of r1 + r2 + length, its last bits count.
inline constexpr double least_margin = 1e-6;

/// One end of an edge from the observer.
template <class Real>
struct EdgeEnd {
    NedLanes<Real> to;
    Real distance;
};

template <class Real>
ANOMALIS_INLINE EdgeEnd<Real> end_from(const PrismFaces& prism, int corner, const NedLanes<Real>& observer) {
    const NedLanes<Real> to = corner_from(prism, corner, observer);
    return {to, vector_sqrt(dot(to, to))};
}

/// Takes note of the logarithm of edge i; `close` are the lanes that are at their last attempt and close to
/// it.
template <class Real>
ANOMALIS_INLINE int add_edge_at_last(const CloseStations<Real>& at, int i, LaneMask<Real> close,
                                     const EdgeEnd<Real>& a, const EdgeEnd<Real>& b,
                                     FaceTermLanes<Real>& terms) {
    const double length = at.prism.edge[at.face.edge[i]].length;
    const Real r1 = a.distance, r2 = b.distance, sum = r1 + r2;
    const Real n = sum + length, d = sum - length, difference = Real{} + 2 * length;
    const LaneMask<Real> nearer_end = r1 > r2 ? close : LaneMask<Real>{};
    const LaneMask<Real> own = nearer_end | (d < least_margin * n ? close : LaneMask<Real>{});
    if (!any_lane(own)) return terms.add(n, d, difference);
    const NedLanes<double> edge =
        corner_from(at.prism, at.face.corner[(i + 1) & 3], corner_place(at.prism, at.face.corner[i]));
    const LastQuotient<Real> last = last_quotient(edge, length, a.to, b.to, r1, r2);
    return terms.add(own != 0 ? last.n : n, own != 0 ? last.d : d, own != 0 ? last.n - last.d : difference);
}

/// The edges of a face at the last attempt: who is still close to an edge moves on after it, and all edges
/// that follow are seen from there.
template <class Real>
ANOMALIS_INLINE void add_edges_at_last(const CloseStations<Real>& at, LaneMask<Real> at_last,
                                       NedLanes<Real> observer, const EdgeEnd<Real>* end,
                                       FaceTermLanes<Real>& terms, int* logarithm) {
    const PrismFaces::Face& face = at.face;
    EdgeEnd<Real> a = end[0];
    bool moved_on = false;
    for (int i = 0; i < 4; ++i) {
        const int next = (i + 1) & 3;
        const EdgeEnd<Real> b = moved_on ? end_from(at.prism, face.corner[next], observer) : end[next];
        LaneMask<Real> close{};
        if (at.prism.edge[face.edge[i]].length > 0) {
            const Real limit = near_edge_squared * (a.distance * b.distance);
            close = squared_cross(a.to, b.to) <= limit ? at_last : LaneMask<Real>{};
            if ((face.logarithms >> face.edge[i] & 1U) != 0)
                logarithm[i] = add_edge_at_last(at, i, close, a, b, terms);
        }
        a = b;
        if (!any_lane(close) || i == 3) continue;
        move_from_edge(face, i, most_attempts, close, observer);
        moved_on = true;
        a = end_from(at.prism, face.corner[next], observer);
    }
}

/// Takes note of the terms of a face from where its observers are moved to. Lanes that are not close to it
/// see it as they stand, with the same bits as by the common route.
template <class Real>
[[gnu::noinline]] void see_moved(const CloseStations<Real>& at, typename FaceTermLanes<Real>::Face& to,
                                 FaceTermLanes<Real>& terms) {
    const PrismFaces::Face& face = at.face;
    const Moves<Real> moves = moves_of(at);
    const NedLanes<Real> observer = moved(at.observer, moves.by);
    EdgeEnd<Real> end[4];
    for (int i = 0; i < 4; ++i) end[i] = end_from(at.prism, face.corner[i], observer);
    span_face(face, end[0].to, end[1].to, end[2].to, end[3].to, end[0].distance, end[1].distance,
              end[2].distance, end[3].distance, to);
    if (face.logarithms == 0) return;
    if (any_lane(moves.at_last))
        return add_edges_at_last(at, moves.at_last, observer, end, terms, to.logarithm);
    for (int i = 0; i < 4; ++i)
        if ((face.logarithms >> face.edge[i] & 1U) != 0)
            to.logarithm[i] = terms.add_edge(end[i].distance, end[(i + 1) & 3].distance,
                                             at.prism.edge[face.edge[i]].length);
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
