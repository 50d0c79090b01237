#pragma once

// The inner loops of the polyhedron, compiled once for every vector level. Everything is in the unit
// coordinates of PolyhedronMesh, and whatever depends on magnetisation, direction and density is folded into
// the terms before.

#include <cstddef>
#include <cstdint>

#include "vector/vector_levels.h"

namespace anomalis::forward {

/// What is summed for a station. Tensor sums come first, then the attraction.
enum class FieldKind { total_field, gravity, total_field_and_gravity, magnetic_components, gradient };

constexpr int tensor_sums(FieldKind kind) {
    switch (kind) {
        case FieldKind::gravity:
            return 0;
        case FieldKind::magnetic_components:
            return 3;
        case FieldKind::gradient:
            return 6;
        default:
            return 1;
    }
}
constexpr bool has_attraction(FieldKind kind) {
    return kind == FieldKind::gravity || kind == FieldKind::total_field_and_gravity;
}
constexpr int sum_count(FieldKind kind) {
    return tensor_sums(kind) + (has_attraction(kind) ? 1 : 0);
}

inline constexpr int most_sums = 6;

/// A block of stations, filled up to a multiple of `padding` by repeating the last.
struct StationBlock {
    static constexpr std::size_t capacity = 64;
    static constexpr std::size_t padding = 8;
    std::size_t count;
    double x[capacity];
    double y[capacity];
    double z[capacity];
    double sum[most_sums][capacity];
    double margin[capacity];  ///< negative where a station stands too close to an edge for the plain sum
};

/// A term of an edge is its length, then a coefficient for each tensor sum, then for an attraction gx, gy, gz
/// and g0: (g0 - gx x - gy y - gz z) multiplies the logarithm. A term of a face is px, py, pz and p0, which
/// give twice the triple product p0 - px x - py y - pz z, then the three squared sides opposite to its
/// corners, the triple product up to which a station counts as outside, a coefficient for each tensor sum and
/// one for the attraction, all of twice the half solid angle.
inline constexpr std::size_t edge_term_base = 1;
inline constexpr std::size_t face_term_base = 8;
constexpr std::size_t edge_term_size(FieldKind kind) {
    return edge_term_base + static_cast<std::size_t>(tensor_sums(kind)) + (has_attraction(kind) ? 4 : 0);
}
constexpr std::size_t face_term_size(FieldKind kind) {
    return face_term_base + static_cast<std::size_t>(sum_count(kind));
}

/// Planes of faces are moved inward by this part of the body (near an edge: of the distance to the nearest
/// corner), so that a station on a face is outside whatever the rounding.
inline constexpr double plane_shift = 1e-14;

struct PolyhedronTerms {
    FieldKind kind;
    const double* vertices;  ///< x, y, z of each
    std::size_t vertex_count;
    const std::int32_t* edge_ends;  ///< 2 of each
    const double* edge_terms;
    std::size_t edge_count;
    const std::int32_t* face_corners;  ///< 3 of each
    const double* face_terms;
    std::size_t face_count;
};

/// Adds to the sums of the block and lowers its margins. `distances` is scratch for StationBlock::padding
/// numbers a vertex.
ANOMALIS_VECTOR_KERNEL(void, polyhedron_sums,
                       (const PolyhedronTerms& terms, double* distances, StationBlock& block))

/// The same for stations that had no margin: the logarithm of an edge from the distance to its line, the
/// solid angle of a face from the directions of its corners. They keep their digits as close to an edge as
/// the coordinates themselves do. Margin stays as it is.
ANOMALIS_VECTOR_KERNEL(void, polyhedron_sums_near_edges,
                       (const PolyhedronTerms& terms, double* distances, StationBlock& block))

}  // namespace anomalis::forward
