#pragma once

#include <span>

#include "chart/detail/canvas.h"
#include "chart/detail/series_table.h"

namespace anomalis::chart {

/// The edge of a cased line: a darker shade of its colour that is seen on the ground, or no_colour where the
/// colour is seen as it is.
Colour casing_colour(Colour colour, Colour ground);

/// Draws a stretch of a series in its colour, width and style, over its casing if it has one.
void draw_series_line(Canvas& canvas, std::span<const Point> points, const SeriesOptions& options,
                      Colour ground);

}  // namespace anomalis::chart
