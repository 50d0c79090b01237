#pragma once

#include "chart/detail/view_state.h"
#include "chart/drawing_types.h"

namespace anomalis::chart {

/// The windows of two axes on one plot.
struct PlotRanges {
    AxisRange x, y;
};

/// Opens the axis with room to spare about its middle until a unit of X is as long as one of Y on a plot of
/// this size; transformed units. What was `seen` keeps its zoom and its middle, of two zooms the smaller one:
/// a plot that is drawn out and back shows again what it showed.
PlotRanges with_equal_scales(PlotRanges ranges, const PlotRanges& seen, const Rect& plot);

}  // namespace anomalis::chart
