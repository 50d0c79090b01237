#pragma once

#include "chart/detail/canvas.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/layout.h"
#include "chart/detail/view_state.h"

namespace anomalis::chart {

/// Draws frame, title, axis labels, ticks and numbers in the order of a redraw; the plot is not touched.
/// Titles and labels without room for their words end in an ellipsis.
void paint_axes(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                const AxisRange& y, Canvas& canvas);

/// Frame and ticks alone.
void paint_frame(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                 const AxisRange& y, Canvas& canvas);

/// Light lines across the plot at the ticks that have numbers, where the properties ask for them. The canvas
/// is cut to the plot.
void paint_light_grid(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                      const AxisRange& y, Canvas& canvas);

}  // namespace anomalis::chart
