#include "forward/shape/prism_kernel.h"

#include "forward/shape/moved_observer.h"
#include "forward/shape/prism_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

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
        const Real product = sight.product[k] = squared_cross(sight.to[edge.from], sight.to[edge.to]);
        const Real limit = near_edge_squared * (sight.distance[edge.from] * sight.distance[edge.to]);
        sight.close |= product <= limit ? LaneMask<Real>{} + (std::uint64_t{1} << k) : LaneMask<Real>{};
    }
}

/// Takes note of what the faces need that no station is close to: their edges once each.
template <class Real>
ANOMALIS_INLINE void see_far_faces(const PrismFaces& prism, std::uint64_t any_close, const Sight<Real>& sight,
                                   FaceTermLanes<Real>& terms) {
    int logarithm[12] = {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1};
    for (int f = 0; f < 6; ++f) {
        const PrismFaces::Face& face = prism.face[f];
        if (!face.used || (face.edges & any_close) != 0) continue;
        const int* c = face.corner;
        span_face(face, sight.to[c[0]], sight.to[c[1]], sight.to[c[2]], sight.to[c[3]], sight.distance[c[0]],
                  sight.distance[c[1]], sight.distance[c[2]], sight.distance[c[3]], terms.face[f]);
        for (int i = 0; i < 4; ++i) {
            const int k = face.edge[i];
            if ((face.logarithms >> k & 1U) == 0) continue;
            const PrismFaces::Edge& edge = prism.edge[k];
            if (logarithm[k] < 0)
                logarithm[k] =
                    terms.add_edge(sight.distance[edge.from], sight.distance[edge.to], edge.length);
            terms.face[f].logarithm[i] = logarithm[k];
        }
    }
}

template <class Real>
ANOMALIS_INLINE void see_close_faces(const PrismFaces& prism, std::uint64_t any_close,
                                     const NedLanes<Real>& observer, const Sight<Real>& sight,
                                     FaceTermLanes<Real>& terms) {
    for (int f = 0; f < 6; ++f) {
        const PrismFaces::Face& face = prism.face[f];
        if (face.used && (face.edges & any_close) != 0)
            see_moved(CloseStations<Real>{prism, face, observer, sight}, terms.face[f], terms);
    }
}

template <class Real>
ANOMALIS_INLINE void take_logarithms_and_angles(const PrismFaces& prism, FaceTermLanes<Real>& terms) {
    for (int k = 0; k < terms.count; ++k) {
        const auto& argument = terms.argument[k];
        terms.logarithm[k] = vector_log_quotient(argument.n, argument.d, argument.difference);
    }
    for (int f = 0; f < 6; ++f) {
        if (!prism.face[f].used) continue;
        const auto& face = terms.face[f];
        const Real angle = 2.0 * vector_abs(vector_atan2(face.across, face.along));
        terms.angle[f] = face.plane < 0.0 ? angle : (face.plane > 0.0 ? -angle : face.plane);
    }
}

/// One component of the field of a face of unit pole density.
template <class Real>
ANOMALIS_INLINE Real face_field(const PrismFaces::Face& face, int axis, int f,
                                const FaceTermLanes<Real>& terms) {
    Real field = face.normal[axis] * terms.angle[f];
    for (int i = 0; i < 4; ++i)
        if ((face.logarithms >> face.edge[i] & 1U) != 0)
            field = vector_fma(face.turned[i][axis], terms.logarithm[terms.face[f].logarithm[i]], field);
    return field;
}

template <bool Magnetic, class Real>
ANOMALIS_INLINE void add_faces(const PrismFaces& prism, const FaceTermLanes<Real>& terms,
                               const PrismSums& out, std::size_t i) {
    NedLanes<Real> field{};
    Real gravity{};
    for (int f = 0; f < 6; ++f) {
        const PrismFaces::Face& face = prism.face[f];
        if (!face.used) continue;
        if constexpr (Magnetic) {
            field.north = vector_fma(face_field(face, 0, f, terms), face.pole, field.north);
            field.east = vector_fma(face_field(face, 1, f, terms), face.pole, field.east);
            field.down = vector_fma(face_field(face, 2, f, terms), face.pole, field.down);
        } else {
            gravity = vector_fma(-face_field(face, 2, f, terms), terms.face[f].plane, gravity);
        }
    }
    if constexpr (Magnetic) {
        add_to(out.north + i, field.north);
        add_to(out.east + i, field.east);
        add_to(out.down + i, field.down);
    } else {
        add_to(out.gravity + i, gravity);
    }
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
            FaceTermLanes<Real> terms;
            see_far_faces(prism, any_close, sight, terms);
            if (any_close != 0) see_close_faces(prism, any_close, observer, sight, terms);
            take_logarithms_and_angles(prism, terms);
            add_faces<Magnetic>(prism, terms, out, i);
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
