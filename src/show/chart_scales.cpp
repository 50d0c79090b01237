#include "show/chart_scales.h"

#include <algorithm>

#include "chart/tick_rule.h"
#include "core/workspace.h"

namespace anomalis::show {

namespace {

constexpr double padding = 1.0 / 20;
constexpr double headroom = 2.5;   // m above the sensors
constexpr double long_line = 100;  // m

double section_top(const Workspace& w) {
    double highest = 0;
    if (w.definition.z_column > 0) {
        const auto sensors = w.stations.column(column_sensor);
        highest = *std::max_element(sensors.begin(), sensors.end());
    } else {
        highest = w.definition.dtm_column > 0 ? w.dtm_max : w.z_max;
    }
    return std::max(highest + w.sensor_offset, 0.0) + headroom;
}

/// How far below 0 the section must reach: twice the lowest top, or a little without bodies.
double depth_wanted(const Workspace& w, double aspect, double length) {
    if (w.body_count <= 0) return (length >= long_line ? -100.0 : -10.0) * aspect;
    double lowest = w.body(1).top.value;
    for (int i = 2; i <= w.body_count; ++i) lowest = std::min<double>(lowest, w.body(i).top.value);
    return 2 * lowest;
}

/// A line over a pipe keeps the pipe's axis in the window, whatever its depth.
void keep_pipe_in_view(const ModelBody& first, double height, double& bottom, double& top) {
    bottom = top - height;
    if (top < first.top.value) {
        top = first.top.value + 1.0;
        bottom = top - height;
    }
    if (bottom > first.top.value) {
        bottom = static_cast<double>(first.top.value) - first.width.value - 1.0;
        top = bottom + height;
    }
}

}  // namespace

AxisScale profile_scale(double low, double high) {
    const double range = high > low ? high - low : 1.0;
    const chart::TickLimits rounded =
        chart::nearest_tick_limits(low - range * padding, high + range * padding);
    AxisScale scale{rounded.low, rounded.high, rounded.interval};
    if (scale.low > low) scale.low -= scale.interval;
    if (scale.high < high) scale.high += scale.interval;
    return scale;
}

AxisScale section_scale(const Workspace& workspace, double aspect, double span) {
    const double length = workspace.distances.last();
    const double visible = aspect * length;
    double top = section_top(workspace);
    const double wanted = depth_wanted(workspace, aspect, length);
    double bottom = visible < -wanted ? top - visible + wanted : top - visible;
    if (workspace.body_count > 0 && workspace.body(1).type == pipe)
        keep_pipe_in_view(workspace.body(1), aspect * span, bottom, top);
    if (!(bottom < top)) {
        bottom -= 1.0;
        top += 1.0;
    }
    return {bottom, top, chart::tick_interval(bottom, top)};
}

double window_interval(double span) {
    return chart::tick_interval(0, span);
}

}  // namespace anomalis::show
