#pragma once

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// Draws the crosshair at the pointer, or the upright line of a linked chart's, with what it tells.
void paint_crosshair(const GrapherState& state, Canvas& canvas);
/// Draws the measuring box from the press to its other corner and tells its sides and slope.
void paint_measuring_box(const GrapherState& state, Canvas& canvas);

}  // namespace anomalis::chart
