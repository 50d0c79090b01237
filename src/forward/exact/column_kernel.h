#pragma once

#include "forward/station_view.h"
#include "vector/vector_levels.h"

namespace anomalis::forward {

/// A parallelepiped without lower end: a top of four corners and four strips that run off along one
/// direction. x across strike, y along it, z up, m. Faces: 0 the top, 1 + k the strip of the top's edge k
/// (from corner k to the next). Edges: 0 to 3 those of the top, 4 + k the endless one from corner k.
///
/// The result is the sum over edges of their weight times the integral of 1 / R along them, less the sum over
/// faces of theirs times the solid angle. A weight is `constant` + `gradient` . (place - station), the place
/// being the edge's or the face's corner of the same number.
struct ColumnBody {
    double corner[4][3];
    double along[3];  ///< unit vector of the endless edges
    double normal[5][3];
    double spread[5];  ///< of a strip |edge x along|; of the top |edge 0 x edge 3|
    double edge_length[4];
    double edge_constant[8];
    double edge_gradient[8][3];
    double face_constant[5];
    double face_gradient[5][3];
    bool gradients;        ///< false: all gradients are 0
    double least_squared;  ///< square of the distance from an edge at which the integrals are held
};

ANOMALIS_VECTOR_KERNEL(void, column_stations,
                       (const StationView& stations, const BodyFrame& frame, const ColumnBody& column,
                        double* values))

}  // namespace anomalis::forward
