#pragma once

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// Where a place of the surface lies in the world of the chart.
struct WorldPosition {
    bool outside = true;
    Point transformed;
    Point user;
};
WorldPosition world_at(const GrapherState& state, Point surface);

/// Puts the view at a middle (transformed units) with its spans times a factor each; a locked axis keeps
/// still while the factor is not 1. Without ZoomEnabled the zoom is cleared.
void set_centre(GrapherState& state, double span_factor, Point middle);
/// One step about an anchor (transformed units): direction above 0 zooms out, below 0 in.
void zoom_step(GrapherState& state, int direction, Point anchor);
/// The span times a factor about an anchor that stays where it is.
void zoom_by(GrapherState& state, double span_factor, Point anchor);
void pan_by(GrapherState& state, double dx, double dy);

void clear_zoom(GrapherState& state);
ZoomValues current_zoom(const GrapherState& state);
/// Sets both zooms without a repaint. -1 for values that are not numbers.
int apply_zoom(GrapherState& state, const ZoomValues& values);
/// The middle of the view, transformed units.
Point view_middle(const GrapherState& state);

}  // namespace anomalis::chart
