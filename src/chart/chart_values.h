#pragma once

// The small records that a chart and its hosts exchange.
namespace anomalis::chart {

/// Where an output goes: 0 and 1 a screen picture, 3 a vector file, 4 a printer.
enum class OutputTarget : int { screen = 0, screen_copy = 1, metafile = 3, printer = 4 };

/// Zoom factors (1 = the whole chart) and centres as fractions of the full range.
struct ZoomValues {
    double zoom_x = 1.0;
    double centre_x = 0.5;
    double zoom_y = 1.0;
    double centre_y = 0.5;
    bool operator==(const ZoomValues&) const = default;
};

/// Surface units.
struct SurfaceSize {
    double width = 0.0;
    double height = 0.0;
};

struct SelectedPoint {
    int group = 0;
    int series = 0;  ///< counted within the group
    int point = 0;
};

/// The width at the left and right of a plot that numbers and titles take, without the margins the host adds.
struct NaturalMargins {
    double left = 0.0;
    double right = 0.0;
};

}  // namespace anomalis::chart
