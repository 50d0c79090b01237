#include "chart/detail/equal_scales.h"

#include <algorithm>

namespace anomalis::chart {

namespace {

void open_to(AxisRange& axis, double span) {
    const double room = (span - axis.full.span()) / 2.0;
    axis.full = {axis.full.low - room, axis.full.high + room};
}

void show(AxisRange& axis, double zoom, const AxisRange& seen) {
    const double middle = (seen.view.low + seen.view.high) / 2.0;
    axis.clear_zoom();
    if (zoom > 1.0) axis.set_zoom(zoom, (middle - axis.full.low) / axis.full.span());
}

}  // namespace

PlotRanges with_equal_scales(PlotRanges ranges, const PlotRanges& seen, const Rect& plot) {
    auto& [x, y] = ranges;
    const double unit = std::max(x.full.span() / plot.width(), y.full.span() / plot.height());
    open_to(x, unit * plot.width());
    open_to(y, unit * plot.height());
    const double zoom = std::min(seen.x.zoom, seen.y.zoom);
    show(x, zoom, seen.x);
    show(y, zoom, seen.y);
    return ranges;
}

}  // namespace anomalis::chart
