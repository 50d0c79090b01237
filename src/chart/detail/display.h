#pragma once

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// Range steps and layout for a size and a text measure. `take_limits`: from the limit properties first.
int update_layout(GrapherState& state, const DrawingDevice& measure, double width, double height,
                  bool take_limits);
/// AX_Grapher::Layout.
int layout_only(GrapherState& state);
/// Axes, title and series through the canvas, which is open on its device. -1 when there is no room.
int draw_chart(GrapherState& state);
/// Frame and ticks once more, over the curves, bars and shapes that were drawn across them. Leaves the
/// canvas cut to the plot.
void frame_on_top(GrapherState& state);
/// The retained items through the canvas.
void replay_overlay(GrapherState& state);
/// AX_Grapher::DisplayChart, display_current_chart, RefreshGraph and Resize.
int display_chart(GrapherState& state);
int draw_current(GrapherState& state);
int refresh_graph(GrapherState& state, int mode);
void resize(GrapherState& state);
/// Lays the present view out, and moves it so far that `transformed` stands at `at` again: numbers of another
/// width have moved the plot. Nothing is drawn.
void hold_place(GrapherState& state, Point transformed, Point at);
/// Draws the overlay alone on the surface.
void draw_graphics(GrapherState& state);
/// The picture on screen becomes background only.
void show_background(GrapherState& state);

}  // namespace anomalis::chart
