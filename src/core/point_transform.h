#pragma once

namespace anomalis {

/// A plane rotation, scale and shift plus a linear elevation change between two coordinate systems.
struct PointTransform {
    bool active = false;
    double rotation = 0;  ///< degrees
    double cos_rotation = 1;
    double sin_rotation = 0;
    double x_scale = 1;
    double y_scale = 1;
    double x_origin = 0;  ///< origin in the old system (first original point)
    double y_origin = 0;
    double x_offset = 0;  ///< origin in the new system (first new point)
    double y_offset = 0;
    bool two_point_defined = false;
    double original_x2 = 1;
    double original_y2 = 1;
    double new_x2 = 1;
    double new_y2 = 1;
    double elevation_shift = 0;  ///< added first
    double elevation_scale = 1;  ///< then multiplied

    bool operator==(const PointTransform&) const = default;
};

}  // namespace anomalis
