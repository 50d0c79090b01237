#pragma once

#include "forward/station_view.h"
#include "vector/vector_levels.h"

namespace anomalis::forward {

/// A thin sheet in the plane across strike. Shape terms in nT m; lengths in m.
struct ThinSheetSection {
    double p, q;
    double middle;         ///< x of the middle of the top
    double depth_extent;   ///< not above 0: without a lower end
    double bottom_offset;  ///< x of the bottom less x of the top
};

/// A thick sheet in the plane across strike. Shape terms in nT.
struct ThickSheetSection {
    double p, q;
    double first, second;  ///< x of the station less these: the arguments of the two edges of the top
    double depth_extent;
    double bottom_offset;
};

ANOMALIS_VECTOR_KERNEL(void, thin_sheet_stations,
                       (const StationView& stations, const BodyFrame& frame, const ThinSheetSection& sheet,
                        float* response))
ANOMALIS_VECTOR_KERNEL(void, thick_sheet_stations,
                       (const StationView& stations, const BodyFrame& frame, const ThickSheetSection& sheet,
                        float* response))

}  // namespace anomalis::forward
