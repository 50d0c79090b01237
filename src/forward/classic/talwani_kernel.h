#pragma once

#include "forward/station_view.h"
#include "vector/vector_levels.h"

namespace anomalis::forward {

/// A closed polygon of four corners in the plane across strike, the first repeated at the end. x across
/// strike from the reference point, z up from the top, m.
struct SheetPolygon {
    double x[5];
    double z[5];
};

/// An edge shorter than this across or up is drawn out to it, m.
inline constexpr double least_edge_extent = 0.001;

/// Sum of the four edges at each station. `left_out` holds the bits of those edges (bit j for edge j) whose
/// quotients have no value or no digits: they are left out of the sum.
ANOMALIS_VECTOR_KERNEL(void, talwani_stations,
                       (const StationView& stations, const BodyFrame& frame, const SheetPolygon& polygon,
                        double* sum, double* left_out))

}  // namespace anomalis::forward
