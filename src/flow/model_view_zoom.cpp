// Zoom list, pan bar and the bars beside each chart.

#include "chart/ax_grapher.h"
#include "core/session.h"
#include "edit/workbench.h"
#include "edit/zoom.h"
#include "flow/model_view.h"

namespace anomalis::flow {

edit::ShownWindow ModelView::shown_window() {
    return edit::shown_window(workbench_.view, charts_.hand_zoom());
}

void ModelView::choose_zoom_factor(int list_index) {
    Session& session = workbench_.session;
    // What stood in the middle by hand stays there.
    const edit::HandZoom hand = charts_.hand_zoom();
    edit::ViewState& view = workbench_.view;
    if (hand.factor > 1) view.window_centre += static_cast<float>((hand.centre - 0.5) * view.window_span);
    edit::choose_zoom(session.workspace, workbench_.view,
                      zoom_factors.at(static_cast<std::size_t>(list_index)), session.prompts);
    update_graph_display();
    host_.show_window(shown_window());
}

void ModelView::pan_to(int pan) {
    const edit::HandZoom hand = charts_.hand_zoom();
    if (hand.factor > 1) {
        pan_by_hand(hand, pan);
    } else {
        edit::pan_window(workbench_.view, pan);
        update_graph_display();
    }
    host_.show_window(shown_window());
}

void ModelView::redraw_after_step(int chart) {
    chart::AX_Grapher& stepped = charts_.chart(chart);
    const chart::ZoomValues zoom = stepped.CurrentZoom();
    stepped.SetZoomValues(zoom.zoom_x, zoom.centre_x, 1, 0.5);
    display_maginv_model(chart);
}

void ModelView::step_zoom(int chart, int direction) {
    if (!edit::line_loaded(workbench_.session.workspace)) return;
    edit::step_vertical_zoom(workbench_.view, chart, direction);
    redraw_after_step(chart);
}

void ModelView::step_pan(int chart, int direction) {
    if (!edit::line_loaded(workbench_.session.workspace)) return;
    edit::step_vertical_pan(workbench_.view, chart, direction);
    redraw_after_step(chart);
}

void ModelView::reset_graph_scale() {
    Session& session = workbench_.session;
    edit::reset_view(session.workspace, workbench_.view, session.prompts);
    for (int i = 0; i < edit::model_chart_count; ++i) charts_.chart(i).clear_zoom_values();
    charts_.plan().clear_zoom_values();
    display_model();
    host_.show_window(shown_window());
}

}  // namespace anomalis::flow
