#include "forward/polyhedron/polyhedron_kernel.h"

#include "vector/vector_math.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

namespace {

/// Added where a logarithm's argument may vanish on an edge; far below any unit coordinate.
constexpr double tiny = 1e-290;
/// Below this r1 + r2 - e, as a part of r1 + r2 + e, the difference has lost too many digits.
constexpr double least_edge_margin = 1e-6;
/// Likewise for the solid angle, whose two terms vanish together on an edge.
constexpr double least_face_margin = 1e-4;

struct Place {
    Lanes x, y, z;
};

ANOMALIS_INLINE Lanes smaller(Lanes a, Lanes b) {
    return a < b ? a : b;
}

ANOMALIS_INLINE void measure_distances(const PolyhedronTerms& terms, const Place& at, double* distances) {
    const double* vertex = terms.vertices;
    for (std::size_t v = 0; v < terms.vertex_count; ++v, vertex += 3) {
        const Lanes dx = vertex[0] - at.x, dy = vertex[1] - at.y, dz = vertex[2] - at.z;
        store_lanes(distances + v * lane_count, vector_sqrt(vector_fma(dx, dx, vector_fma(dy, dy, dz * dz))));
    }
}

ANOMALIS_INLINE Place from_station(const PolyhedronTerms& terms, std::int32_t vertex, const Place& at) {
    const double* p = terms.vertices + 3 * static_cast<std::size_t>(vertex);
    return {p[0] - at.x, p[1] - at.y, p[2] - at.z};
}

ANOMALIS_INLINE Lanes dot(const Place& a, const Place& b) {
    return vector_fma(a.x, b.x, vector_fma(a.y, b.y, a.z * b.z));
}

/// level - direction . at
ANOMALIS_INLINE Lanes height(double level, const double* direction, const Place& at) {
    return vector_fma(-direction[0], at.x,
                      vector_fma(-direction[1], at.y, vector_fma(-direction[2], at.z, level)));
}

/// log((r1 + r2 + e) / (r1 + r2 - e)) where r1 + r2 - e cancels. Between the ends of the edge
/// (r1 + r2)^2 - e^2 = 2 (r1 r2 + r1 . r2) = 2 |r1 x r2|^2 / (r1 r2 - r1 . r2), which has no difference of
/// like numbers left.
ANOMALIS_INLINE Lanes logarithm_near_edge(const PolyhedronTerms& terms, const std::int32_t* ends, double e,
                                          const Place& at, Lanes r1, Lanes r2) {
    const double* p = terms.vertices + 3 * static_cast<std::size_t>(ends[0]);
    const double* q = terms.vertices + 3 * static_cast<std::size_t>(ends[1]);
    const double ex = q[0] - p[0], ey = q[1] - p[1], ez = q[2] - p[2];
    const Place a = from_station(terms, ends[0], at), b = from_station(terms, ends[1], at);
    const Place c{a.y * ez - a.z * ey, a.z * ex - a.x * ez, a.x * ey - a.y * ex};
    const Lanes product = dot(a, b), sum = r1 + r2, n = sum + e;
    const Lanes between = vector_log_quotient(n * n * (r1 * r2 - product), 2.0 * dot(c, c) + tiny);
    const Lanes beyond = vector_log_quotient(n, sum - e + tiny, Lanes{} + 2 * e);
    return product < 0.0 ? between : beyond;
}

template <int Tensors, bool Gravity, bool NearEdges>
ANOMALIS_INLINE Lanes add_edges(const PolyhedronTerms& terms, const Place& at, const double* distances,
                                Lanes* sum, Lanes margin) {
    constexpr std::size_t size = edge_term_base + Tensors + (Gravity ? 4 : 0);
    const double* term = terms.edge_terms;
    const std::int32_t* ends = terms.edge_ends;
    for (std::size_t edge = 0; edge < terms.edge_count; ++edge, term += size, ends += 2) {
        const Lanes r1 = load_lanes(distances + static_cast<std::size_t>(ends[0]) * lane_count);
        const Lanes r2 = load_lanes(distances + static_cast<std::size_t>(ends[1]) * lane_count);
        const double e = term[0];
        Lanes logarithm;
        if constexpr (NearEdges) {
            logarithm = logarithm_near_edge(terms, ends, e, at, r1, r2);
        } else {
            const Lanes both = r1 + r2, n = both + e, d = both - e + tiny;
            margin = smaller(margin, vector_fma(-least_edge_margin, n, d));
            logarithm = vector_log_quotient(n, d, Lanes{} + 2 * e);
        }
        const double* factor = term + edge_term_base;
        for (int i = 0; i < Tensors; ++i) sum[i] = vector_fma(factor[i], logarithm, sum[i]);
        if constexpr (Gravity) {
            const double* g = factor + Tensors;
            sum[Tensors] = vector_fma(height(g[3], g, at), logarithm, sum[Tensors]);
        }
    }
    return margin;
}

/// Both parts of tan(omega / 2), doubled: the triple product from the nearest corner, the lower part with
/// every term as small as that corner is near.
struct FaceParts {
    Lanes triple, lower;
};

ANOMALIS_INLINE FaceParts face_parts_near_edge(const PolyhedronTerms& terms, const double* term,
                                               const std::int32_t* corner, const Place& at, Lanes r1,
                                               Lanes r2, Lanes r3) {
    const Place a = from_station(terms, corner[0], at), b = from_station(terms, corner[1], at),
                c = from_station(terms, corner[2], at);
    const double size = __builtin_sqrt(term[0] * term[0] + term[1] * term[1] + term[2] * term[2]);
    Lanes nearest = r1 < r2 ? r1 : r2;
    Place from{r1 < r2 ? a.x : b.x, r1 < r2 ? a.y : b.y, r1 < r2 ? a.z : b.z};
    from = {r3 < nearest ? c.x : from.x, r3 < nearest ? c.y : from.y, r3 < nearest ? c.z : from.z};
    nearest = r3 < nearest ? r3 : nearest;
    const Lanes triple = vector_fma(term[0], from.x, vector_fma(term[1], from.y, term[2] * from.z));
    const Lanes lower =
        vector_fma(vector_fma(r1, r2, dot(a, b)), r3, vector_fma(dot(b, c), r1, dot(c, a) * r2));
    return {triple - (plane_shift * size) * nearest, lower + lower};
}

/// The plane of a face is moved over a station that stands below it by no more than the tolerance; `lower`
/// tells that the station is under the face and not beside it.
ANOMALIS_INLINE Lanes seen_from_outside(Lanes triple, Lanes lower, double tolerance) {
    const Lanes moved = lower < 0.0 ? triple - tolerance : triple;
    return triple > 0.0 ? (triple < tolerance ? moved : triple) : triple;
}

template <int Tensors, bool Gravity, bool NearEdges>
ANOMALIS_INLINE Lanes add_faces(const PolyhedronTerms& terms, const Place& at, const double* distances,
                                Lanes* sum, Lanes margin) {
    constexpr std::size_t size = face_term_base + Tensors + (Gravity ? 1 : 0);
    const double* term = terms.face_terms;
    const std::int32_t* corner = terms.face_corners;
    for (std::size_t face = 0; face < terms.face_count; ++face, term += size, corner += 3) {
        const Lanes r1 = load_lanes(distances + static_cast<std::size_t>(corner[0]) * lane_count);
        const Lanes r2 = load_lanes(distances + static_cast<std::size_t>(corner[1]) * lane_count);
        const Lanes r3 = load_lanes(distances + static_cast<std::size_t>(corner[2]) * lane_count);
        // tan(omega / 2) = r1 . (r2 x r3) / (r1 r2 r3 + r1 . r2 r3 + ...), both parts doubled.
        Lanes triple, lower;
        if constexpr (NearEdges) {
            const FaceParts parts = face_parts_near_edge(terms, term, corner, at, r1, r2, r3);
            triple = parts.triple;
            lower = parts.lower;
        } else {
            const Lanes product = (r1 + r2) * (r2 + r3) * (r3 + r1);
            triple = height(term[3], term, at);
            // The doubled sum in distances alone.
            lower = vector_fma(-term[4], r1, vector_fma(-term[5], r2, vector_fma(-term[6], r3, product)));
            const Lanes up = vector_abs(triple), down = vector_abs(lower);
            margin = smaller(margin, vector_fma(-least_face_margin, product, up > down ? up : down));
        }
        triple = seen_from_outside(triple, lower, term[7]);
        const Lanes half_angle = vector_atan2(triple, lower);
        const double* factor = term + face_term_base;
        for (int i = 0; i < Tensors; ++i) sum[i] = vector_fma(factor[i], half_angle, sum[i]);
        if constexpr (Gravity) sum[Tensors] = vector_fma(factor[Tensors] * triple, half_angle, sum[Tensors]);
    }
    return margin;
}

template <int Tensors, bool Gravity, bool NearEdges>
void add_all(const PolyhedronTerms& terms, double* distances, StationBlock& block) {
    constexpr int sums = Tensors + (Gravity ? 1 : 0);
    for (std::size_t i = 0; i < block.count; i += lane_count) {
        const Place at{load_lanes(block.x + i), load_lanes(block.y + i), load_lanes(block.z + i)};
        measure_distances(terms, at, distances);
        Lanes sum[sums];
        for (int k = 0; k < sums; ++k) sum[k] = load_lanes(block.sum[k] + i);
        Lanes margin = load_lanes(block.margin + i);
        margin = add_edges<Tensors, Gravity, NearEdges>(terms, at, distances, sum, margin);
        margin = add_faces<Tensors, Gravity, NearEdges>(terms, at, distances, sum, margin);
        for (int k = 0; k < sums; ++k) store_lanes(block.sum[k] + i, sum[k]);
        if constexpr (!NearEdges) store_lanes(block.margin + i, margin);
    }
}

template <bool NearEdges>
void add_kind(const PolyhedronTerms& terms, double* distances, StationBlock& block) {
    switch (terms.kind) {
        case FieldKind::total_field:
            return add_all<1, false, NearEdges>(terms, distances, block);
        case FieldKind::gravity:
            return add_all<0, true, NearEdges>(terms, distances, block);
        case FieldKind::total_field_and_gravity:
            return add_all<1, true, NearEdges>(terms, distances, block);
        case FieldKind::magnetic_components:
            return add_all<3, false, NearEdges>(terms, distances, block);
        case FieldKind::gradient:
            return add_all<6, false, NearEdges>(terms, distances, block);
    }
}

}  // namespace

void polyhedron_sums(const PolyhedronTerms& terms, double* distances, StationBlock& block) {
    add_kind<false>(terms, distances, block);
}

void polyhedron_sums_near_edges(const PolyhedronTerms& terms, double* distances, StationBlock& block) {
    add_kind<true>(terms, distances, block);
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
