#pragma once

#include "chart/detail/canvas.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/layout.h"
#include "chart/detail/view_state.h"

namespace anomalis::chart {

/// Draws frame, title, axis labels, ticks and numbers in the order of a redraw; the plot is not touched.
void paint_axes(const ChartProperties& properties, const ChartLayout& layout, const AxisRange& x,
                const AxisRange& y, Canvas& canvas);

}  // namespace anomalis::chart
