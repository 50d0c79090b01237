#pragma once

#include "chart/drawing_types.h"

namespace anomalis::chart {

inline constexpr double units_per_inch = 1440.0;
inline constexpr double screen_dots_per_inch = 96.0;
/// Surface units a screen pixel.
inline constexpr double units_per_screen_pixel = units_per_inch / screen_dots_per_inch;

/// From surface units to device units. Device coordinates are continuous with y downward: the top left
/// corner of the first pixel is (0, 0), its centre (0.5, 0.5).
struct SurfaceMapping {
    double device_scale = 1.0 / units_per_screen_pixel;  ///< device units a surface unit
    double device_offset_x = 0.0;                        ///< device x of the left edge of the surface
    double device_offset_y = 0.0;                        ///< device y of the bottom edge of the surface
    double pen_factor = 1.0;                             ///< device units a screen pixel of pen width
    bool landscape = false;                              ///< exchange x and y first
    double page_width = 0.0;                             ///< surface units; used in landscape only

    Point to_device(Point surface) const {
        if (landscape) surface = {surface.y, page_width - surface.x};
        return {device_scale * surface.x + device_offset_x, device_offset_y - device_scale * surface.y};
    }
    /// The angle of a text or of a marker on the device, degrees counter-clockwise.
    double device_angle(double angle) const { return landscape ? angle - 90.0 : angle; }
    bool operator==(const SurfaceMapping&) const = default;
};

/// The mapping of a screen surface of the given height at an output scale (1.0 on screen).
SurfaceMapping screen_mapping(double surface_height, double output_scale = 1.0,
                              double units_per_pixel = units_per_screen_pixel);

/// The mapping onto a sheet: the largest scale that fits, 100 units in from the left and top printable edge.
/// `printable_width`, `printable_height` in surface units; `dots_per_inch` of the printer, device units are
/// its dots. Pens are widened by printer dots over screen dots, at least 2.
SurfaceMapping print_mapping(double surface_width, double surface_height, double printable_width,
                             double printable_height, double dots_per_inch);

/// An enhanced metafile: its frame in 0.01 mm and its window in units of 1/300 inch times `refinement`.
struct MetafileFrame {
    int frame_width = 0;
    int frame_height = 0;
    int window_width = 0;
    int window_height = 0;
    int viewport_width = 0;
    int viewport_height = 0;
    SurfaceMapping mapping;
};

MetafileFrame metafile_frame(double surface_width, double surface_height, int refinement = 1);

}  // namespace anomalis::chart
