#pragma once

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// Draws what the host shows above the picture on the open canvas.
void paint_top_marks(const GrapherState& state, Canvas& canvas);
/// Draws lines of text in a box beside a place of the surface, on the side where the plot has room; the
/// note's own place is not asked.
void paint_note(const GrapherState& state, Canvas& canvas, Point at, const TopNote& note);

}  // namespace anomalis::chart
