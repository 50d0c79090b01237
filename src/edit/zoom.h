#pragma once

#include "edit/view_state.h"

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// The shared horizontal window of the charts, and the vertical window of each.
namespace anomalis::edit {

/// Brings span, centre, pan and pan limit of the window into line with the zoom factor. Without a line, and
/// at factor 1, the window is the whole profile.
void calculate_zoom_settings(const Workspace& workspace, ViewState& view, Prompts& prompts);

/// Takes a factor of the zoom list; the centre of the window stays where that is possible.
void choose_zoom(const Workspace& workspace, ViewState& view, float factor, Prompts& prompts);

/// Moves the window: `pan` from minus to plus the pan limit, clamped.
void pan_window(ViewState& view, int pan);

/// Everything as after a load: the whole profile, every chart scaled by itself.
void reset_view(const Workspace& workspace, ViewState& view, Prompts& prompts);

/// One step of a chart's vertical zoom, up for a direction above 0. The section keeps its top.
void step_vertical_zoom(ViewState& view, int chart, int direction);

/// Moves a chart's vertical window by a quarter of its span, down for a direction above 0.
void step_vertical_pan(ViewState& view, int chart, int direction);

/// True while the chart scales itself: no vertical zoom, not panned.
bool scales_itself(const ChartWindow& window);

}  // namespace anomalis::edit
