#pragma once

#include "forward/station_view.h"
#include "vector/vector_levels.h"

namespace anomalis::forward {

/// A prism of six parallelograms for the loop over stations, in north, east, down from station 1. Corners,
/// edges and faces as `prepare_prism` numbers them.
struct PrismFaces {
    struct Edge {
        int from, to;
        double length;  ///< 0 for two corners in one place
    };
    struct Face {
        int corner[4];
        int edge[4];
        double along[4][3];  ///< the four edge vectors in the sense of the face
        double normal[3];
        double area;  ///< of the whole face
        double pole;  ///< magnetisation along the normal
        bool used;    ///< has an area, and a pole where the magnetic field is wanted
    };
    double corner[8][3];
    Edge edge[12];
    Face face[6];
};

/// Sums at one stretch of stations. `close` holds the bits of those faces that have an edge close to the
/// station (bit f for face f): they are left out of the sums.
struct PrismSums {
    double *north, *east, *down;  ///< field components, nT
    double* gravity;              ///< before density and constant
    double* close;
};

ANOMALIS_VECTOR_KERNEL(void, prism_stations,
                       (const StationView& stations, const double* first_station, const PrismFaces& prism,
                        double near_edge, const PrismSums& sums))

}  // namespace anomalis::forward
