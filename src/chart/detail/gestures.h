#pragma once

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

inline constexpr int left_button = 1;
inline constexpr int right_button = 2;
inline constexpr int middle_button = 4;

/// The chart's own part of a mouse press at a place of the surface (y up): selects a point or a polygon, or
/// begins a gesture. Raises PointSelected or GraphicSelected.
void press(GrapherState& state, int button, int shift, Point at);
/// Carries the running gesture on; ends it when its button is no longer held.
void move(GrapherState& state, int buttons, Point at);
/// Ends the running gesture where the pointer is: a magnifier shows what lies about it.
void release(GrapherState& state, Point at);
/// Ends the running gesture as if it had not been: a magnifier gives its view back.
void cancel_gesture(GrapherState& state);
/// Offers a press to the host; true when it holds it from here on. X and Y as the host takes them.
bool hold(GrapherState& state, int button, int shift, float x, float y);
bool is_held(const GrapherState& state);
/// Ends a press that the host holds, and tells it.
void end_hold(GrapherState& state, bool given_up);
/// The polygon that a press at a place would select, 0 for none.
int polygon_under(const GrapherState& state, Point at);
/// Draws the selection, magnifier, measuring box and crosshair on the open canvas.
void paint_top_layer(GrapherState& state, Canvas& canvas);

}  // namespace anomalis::chart
