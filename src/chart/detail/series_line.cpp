#include "chart/detail/series_line.h"

#include <algorithm>

#include "chart/colour_contrast.h"

namespace anomalis::chart {

namespace {

/// What a casing shows on each side of its line, screen pixels.
constexpr double casing_edge = 1.0;
/// More than the least, since a smoothed edge of one pixel is paler than its colour.
constexpr double casing_contrast = 1.5 * least_contrast;

}  // namespace

Colour casing_colour(Colour colour, Colour ground) {
    if (contrast(colour, ground) >= least_contrast) return no_colour;
    return seen_on(ground, colour, luminance(ground) > 0.18 ? black : white, casing_contrast);
}

void draw_series_line(Canvas& canvas, std::span<const Point> points, const SeriesOptions& options,
                      Colour ground) {
    const double width = std::max(options.width, 1);
    // On a dark screen every colour has been made one that is seen.
    if (options.cased && !canvas.wears_palette()) {
        const Colour edge = casing_colour(options.colour, canvas.shown(ground));
        if (edge != no_colour) canvas.polyline(points, {edge, width + 2.0 * casing_edge, options.style});
    }
    canvas.polyline(points, {options.colour, width, options.style});
}

}  // namespace anomalis::chart
