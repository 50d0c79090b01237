#pragma once

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// A legend on screen stays in its corner until another is much better; one in a picture hangs on the picture
/// alone.
enum class LegendPlace { of_screen, of_picture };

/// Draws the legend, where it is wanted, and the key of colours over the chart on the open canvas: each in
/// the corner of the plot where it covers least. Series without a name or a value are left out; what has no
/// room is not drawn.
void paint_legend(GrapherState& state, LegendPlace place);

}  // namespace anomalis::chart
