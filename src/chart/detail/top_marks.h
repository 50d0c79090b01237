#pragma once

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// Draws what the host shows above the picture on the open canvas.
void paint_top_marks(const GrapherState& state, Canvas& canvas);

}  // namespace anomalis::chart
