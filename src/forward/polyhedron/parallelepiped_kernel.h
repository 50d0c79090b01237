#pragma once

// The inner loop of a parallelepiped, compiled once for every vector level. In unit coordinates of
// PolyhedronMesh, with what depends on magnetisation, direction and density folded into the terms before.

#include "forward/polyhedron/polyhedron_kernel.h"

namespace anomalis::forward {

/// A body whose opposite faces are equal. Axes go from the shortest side to the longest; corner number c lies
/// on the + side of axis i where bit i of c is set. Of the two other axes of i, the first is the shorter.
///
/// The four edges along an axis have one dyad with the signs of their sides, the two faces across it have one
/// too. So a second derivative of the potential takes of every axis one logarithm, X = sum of the four with
/// the product of their signs, and one angle, the half solid angles of both faces together. The attraction
/// also takes Y and Z, the sums with the sign of the second and of the first other axis alone, and both
/// angles apart.
struct ParallelepipedTerms {
    FieldKind kind;
    double corner[8][3];
    double centre[3];
    double side[3][3];  ///< from the - to the + side
    double length[3];
    double lean[3][3];    ///< side i times half of side j
    double normal[3][3];  ///< outward on the + side, as long as the face is large
    double area[3];
    double half_volume;
    double diagonal[3];  ///< of the face across the axis, from its (-, -) to its (+, +) corner, squared
    double radius;
    double face_tolerance;
    double clearance;                  ///< nearer to an edge than this the margin is negative
    double edge_factor[3][most_sums];  ///< of X
    double face_factor[3][most_sums];  ///< of the sum of both half solid angles
    double edge_weight[3][3];          ///< times the place of the centre from the station: of X
    double first_weight[3];            ///< of Y
    double second_weight[3];           ///< of Z
    double face_weight[3];             ///< times the triple product of each face and its half angle
    bool has_weight[3];                ///< false: the edges of the axis attract nothing
};

/// Sets the sums of the block. Margin is negative where a station stands on an edge or nearly so: its sums
/// are worth nothing.
ANOMALIS_VECTOR_KERNEL(void, parallelepiped_sums, (const ParallelepipedTerms& terms, StationBlock& block))

}  // namespace anomalis::forward
