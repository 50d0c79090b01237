#pragma once

#include "forward/columns/weighted_columns.h"
#include "forward/station_view.h"
#include "vector/vector_levels.h"

namespace anomalis::forward {

/// A parallelepiped, or one without lower end, for the derivatives of its field. x across strike, y along it,
/// z up, m. Its anomaly and its attraction are the sum over edges of their weight times the integral of 1 / R
/// along them, less the sum over faces of theirs times the solid angle. A weight is `constant` + `gradient` .
/// (place - station), the place being the edge's or the face's first corner.
struct SolidSection {
    static constexpr int most_corners = 8, most_edges = 12, most_faces = 6;
    struct Weight {
        double constant = 0;
        double gradient[3] = {};
    };
    struct Edge {
        int from = 0, to = 0;  ///< `to` of an endless edge: -1
        int left = 0,
            right = 0;  ///< the face that it goes round anticlockwise, seen from outside, and the other one
        double length = 0;
        double along[3] = {};  ///< unit vector
        Weight weight = {};
    };
    struct Face {
        int corner[4] = {};  ///< anticlockwise from outside; of a strip the edge of the top, then -1
        double normal[3] = {};
        double spread = 0;  ///< area of the parallelogram; of a strip |edge x along|
        Weight weight = {};
    };
    int corners, edges, faces;
    bool gradients;  ///< false: all gradients are 0
    double corner[most_corners][3];
    Edge edge[most_edges];
    Face face[most_faces];
};

/// What the columns of a solid are sums of, one after the other: the integral of each edge and the solid
/// angle of each face, with gradients each times 1 and the three coordinates of the station; the derivatives
/// by the three coordinates of each corner at fixed weights; those by the direction of the endless edges; the
/// derivative by a turn about the vertical, a radian of strike.
inline constexpr int most_solid_terms =
    4 * (SolidSection::most_edges + SolidSection::most_faces) + 3 * SolidSection::most_corners + 4;
struct SolidTerms {
    int edges, faces, corners, direction, turn, count;
};
ANOMALIS_VECTOR_KERNEL(void, solid_columns,
                       (const StationView& stations, const BodyFrame& frame, const SolidSection& solid,
                        const WeightedColumns& columns))

}  // namespace anomalis::forward
