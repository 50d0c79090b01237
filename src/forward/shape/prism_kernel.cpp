#include "forward/shape/prism_kernel.h"

#include "forward/shape/moved_observer.h"
#include "forward/shape/prism_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

/// Corners and edges as one vector of stations sees them.
template <class Real>
struct Sight {
    NedLanes<Real> to[8];
    Real distance[8];
    Real integral[12];     ///< of 1 / r along the edge
    LaneMask<Real> close;  ///< bit k where edge k is close
};

template <class Real>
ANOMALIS_INLINE void see_corners(const PrismFaces& prism, const NedLanes<Real>& observer,
                                 Sight<Real>& sight) {
    for (int c = 0; c < 8; ++c) {
        sight.to[c] = corner_from(prism, c, observer);
        sight.distance[c] = vector_sqrt(dot(sight.to[c], sight.to[c]));
    }
}

template <class Real>
ANOMALIS_INLINE void find_close_edges(const PrismFaces& prism, Sight<Real>& sight) {
    sight.close = LaneMask<Real>{};
    for (int k = 0; k < 12; ++k) {
        const PrismFaces::Edge& edge = prism.edge[k];
        if (edge.length == 0) continue;
        const Real product = squared_cross(sight.to[edge.from], sight.to[edge.to]);
        const Real limit = near_edge_squared * (sight.distance[edge.from] * sight.distance[edge.to]);
        sight.close |= product <= limit ? LaneMask<Real>{} + (std::uint64_t{1} << k) : LaneMask<Real>{};
    }
}

/// The integrals of all edges that faces without a close station need.
template <class Real>
ANOMALIS_INLINE void integrate_edges(const PrismFaces& prism, std::uint64_t any_close, Sight<Real>& sight) {
    std::uint32_t needed = 0;
    for (const PrismFaces::Face& face : prism.face)
        if (face.used && (face.edges & any_close) == 0) needed |= face.integrals;
    for (int k = 0; k < 12; ++k) {
        if ((needed >> k & 1U) == 0) continue;
        const PrismFaces::Edge& edge = prism.edge[k];
        sight.integral[k] = edge_integral(sight.distance[edge.from], sight.distance[edge.to], edge.length);
    }
}

template <bool Magnetic, class Real>
ANOMALIS_INLINE void see_face(const PrismFaces::Face& face, const Sight<Real>& sight, FaceLanes<Real>& seen) {
    const int* c = face.corner;
    const NedLanes<Real>& a = sight.to[c[0]];
    seen.plane = a.north * face.normal[0] + a.east * face.normal[1] + a.down * face.normal[2];
    begin_face<Magnetic>(
        face,
        solid_angle(face.area, seen.plane, a, sight.to[c[1]], sight.to[c[2]], sight.to[c[3]],
                    sight.distance[c[0]], sight.distance[c[1]], sight.distance[c[2]], sight.distance[c[3]]),
        seen);
    for (int i = 0; i < 4; ++i)
        if ((face.integrals >> face.edge[i] & 1U) != 0)
            add_edge<Magnetic>(face, i, sight.integral[face.edge[i]], seen);
}

template <bool Magnetic>
ANOMALIS_INLINE void add_stations(const StationView& stations, const double* first_station,
                                  const PrismFaces& prism, const PrismSums& out) {
    for_stations(
        stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const NedLanes<Real> observer{load<Real>(stations.north + i) - first_station[0],
                                          load<Real>(stations.east + i) - first_station[1],
                                          -(load<Real>(stations.sensor + i) - first_station[2])};
            Sight<Real> sight;
            see_corners(prism, observer, sight);
            find_close_edges(prism, sight);
            const std::uint64_t any_close = any_bits(sight.close);
            integrate_edges(prism, any_close, sight);
            NedLanes<Real> field{};
            Real gravity{};
            for (const PrismFaces::Face& face : prism.face) {
                if (!face.used) continue;
                FaceLanes<Real> seen;
                if ((face.edges & any_close) == 0) {
                    see_face<Magnetic>(face, sight, seen);
                } else {
                    see_moved<Magnetic>(CloseStations<Real>{prism, face, observer, sight.close}, seen);
                }
                if constexpr (Magnetic) {
                    field.north += seen.field.north * face.pole;
                    field.east += seen.field.east * face.pole;
                    field.down += seen.field.down * face.pole;
                } else {
                    gravity -= seen.field.down * seen.plane;
                }
            }
            if constexpr (Magnetic) {
                add_to(out.north + i, field.north);
                add_to(out.east + i, field.east);
                add_to(out.down + i, field.down);
            } else {
                add_to(out.gravity + i, gravity);
            }
        });
}

}  // namespace

void prism_stations(const StationView& stations, const double* first_station, const PrismFaces& prism,
                    const PrismSums& sums) {
    if (sums.gravity == nullptr) {
        add_stations<true>(stations, first_station, prism, sums);
    } else {
        add_stations<false>(stations, first_station, prism, sums);
    }
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
