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

/// A zoom of the charts inside the window, by wheel or drag: how many times, and where its middle stands as a
/// fraction of the window.
struct HandZoom {
    double factor = 1;
    double centre = 0.5;
};

/// What zoom list and pan bar tell of the charts.
struct ShownWindow {
    double factor = 1;     ///< of the whole profile
    bool by_hand = false;  ///< chosen on a chart, not from the list
    int pan_limit = 0;     ///< 0 while the whole profile is shown
    int pan = 0;           ///< steps from the middle
};
ShownWindow shown_window(const ViewState& view, const HandZoom& hand);

/// Moves what is shown to `pan`, from minus to plus the limit of `shown_window`, with its factor as it is.
/// The window moves as far as it must; the answer is the zoom inside it.
HandZoom pan_hand_zoom(ViewState& view, const HandZoom& hand, int pan);

/// Everything as after a load: the whole profile, every chart scaled by itself.
void reset_view(const Workspace& workspace, ViewState& view, Prompts& prompts);

/// One step of a chart's vertical zoom, up for a direction above 0. The section keeps its top.
void step_vertical_zoom(ViewState& view, int chart, int direction);

/// Moves a chart's vertical window by a quarter of its span, down for a direction above 0.
void step_vertical_pan(ViewState& view, int chart, int direction);

/// True while the chart scales itself: no vertical zoom, not panned.
bool scales_itself(const ChartWindow& window);

}  // namespace anomalis::edit
