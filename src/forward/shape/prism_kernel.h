#pragma once

#include <cstdint>

#include "forward/station_view.h"
#include "vector/vector_levels.h"

namespace anomalis::forward {

/// A prism of six parallelograms for the loop over stations, in north, east, down from station 1.
struct PrismFaces {
    struct Edge {
        int from, to;
        double length;  ///< 0 for two corners in one place
    };
    struct Face {
        int corner[4];
        int edge[4];
        double turned[4][3];  ///< the direction of the edge in the sense of the face, times the normal
        double normal[3];
        double area;               ///< of the whole face
        double pole;               ///< magnetisation along the normal
        bool used;                 ///< has an area, and a pole where the magnetic field is wanted
        double step[4][2];         ///< north and east of the first move away from an edge
        double level[4];           ///< level part of the edge's length
        std::uint32_t edges;       ///< bit k for edge k
        std::uint32_t logarithms;  ///< those whose logarithm counts in what is wanted
    };
    double corner[8][3];
    Edge edge[12];
    Face face[6];
};

/// Columns of the response that the loop adds to, rounded once a station. The one that is null is not wanted.
struct PrismSums {
    float *north, *east, *down;  ///< field components, nT; all or none
    float* gravity;              ///< before density and constant
};

/// A face that has an edge close to a station is seen from where the station is moved to, as `facet_terms`
/// does it, in the same vectors as all others.
ANOMALIS_VECTOR_KERNEL(void, prism_stations,
                       (const StationView& stations, const double* first_station, const PrismFaces& prism,
                        const PrismSums& sums))

}  // namespace anomalis::forward
