#include "chart/surface_mapping.h"

#include <algorithm>
#include <cmath>

namespace anomalis::chart {

namespace {

// The metafile's frame is reckoned at 567 units a centimetre, as the surface's unit is a twentieth of a
// point.
constexpr double units_per_centimetre = 567.0;
constexpr double hundredths_of_mm_per_centimetre = 1000.0;
constexpr double hundredths_of_mm_per_inch = 2540.0;
constexpr double metafile_dots_per_inch = 300.0;
// The metafile library knows one reference device: 1024 x 768 pixels on 320 x 240 mm.
constexpr double reference_pixels_per_mm = 1024.0 / 320.0;
constexpr double sheet_margin = 100.0;
constexpr double smallest_print_pen = 2.0;

int rounded(double value) {
    return static_cast<int>(std::lround(value));
}

}  // namespace

SurfaceMapping screen_mapping(double surface_height, double output_scale, double units_per_pixel) {
    SurfaceMapping mapping;
    mapping.device_scale = output_scale / units_per_pixel;
    mapping.device_offset_y = mapping.device_scale * surface_height;
    mapping.pen_factor = output_scale;
    return mapping;
}

SurfaceMapping print_mapping(double surface_width, double surface_height, double printable_width,
                             double printable_height, double dots_per_inch) {
    const double fit = std::min((printable_width - 2.0 * sheet_margin) / surface_width,
                                (printable_height - 2.0 * sheet_margin) / surface_height);
    const double dots_per_unit = dots_per_inch / units_per_inch;
    SurfaceMapping mapping;
    mapping.device_scale = fit * dots_per_unit;
    mapping.device_offset_x = sheet_margin * dots_per_unit;
    mapping.device_offset_y = (sheet_margin + fit * surface_height) * dots_per_unit;
    mapping.pen_factor = std::max(smallest_print_pen, dots_per_inch / screen_dots_per_inch);
    return mapping;
}

MetafileFrame metafile_frame(double surface_width, double surface_height, int refinement) {
    MetafileFrame frame;
    frame.frame_width = rounded(surface_width / units_per_centimetre * hundredths_of_mm_per_centimetre);
    frame.frame_height = rounded(surface_height / units_per_centimetre * hundredths_of_mm_per_centimetre);
    const double window_per_frame = metafile_dots_per_inch / hundredths_of_mm_per_inch;
    frame.window_width = rounded(frame.frame_width * window_per_frame) * refinement;
    frame.window_height = rounded(frame.frame_height * window_per_frame) * refinement;
    frame.viewport_width = rounded(frame.frame_width / 100.0 * reference_pixels_per_mm);
    frame.viewport_height = rounded(frame.frame_height / 100.0 * reference_pixels_per_mm);
    const double scale = metafile_dots_per_inch / units_per_inch * refinement;
    frame.mapping.device_scale = scale;
    frame.mapping.device_offset_y = scale * surface_height;
    frame.mapping.pen_factor = std::max(1.0, units_per_screen_pixel * scale);
    return frame;
}

}  // namespace anomalis::chart
