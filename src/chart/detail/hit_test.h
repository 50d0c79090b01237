#pragma once

#include <optional>

#include "chart/ax_grapher.h"
#include "chart/detail/graphics_list.h"
#include "chart/detail/series_painter.h"
#include "chart/detail/series_table.h"

namespace anomalis::chart {

/// Half the side of the square about a press in which a point is hit; surface units.
inline constexpr double hit_radius = 50.0;

/// The nearest visible point to a press (surface units), if it lies within the hit square. The nearest
/// decides: one farther away inside the square does not stand in for it. Ties go to the first found, groups
/// ascending, series from the last to the first.
std::optional<SelectedPoint> hit_point(const SeriesTable& table, const PlotFrame& frame, Point press);

/// The number of the first retained polygon that holds the press, else of the one whose outline is nearest
/// within the hit radius; 0 for none.
int hit_polygon(const GraphicsList& graphics, const PlotFrame& frame, Point press);

/// Inside by the even-odd rule, or within `tolerance` of an edge; all in one unit.
bool inside_polygon(const std::vector<double>& xs, const std::vector<double>& ys, Point p, double tolerance);

}  // namespace anomalis::chart
