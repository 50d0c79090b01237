#include "chart/ax_grapher.h"
#include "core/workspace.h"
#include "edit/zoom.h"
#include "show/crosshair_lines.h"
#include "show/model_charts.h"
#include "show/plan_chart.h"

// The charts of a line as a person zooms, pans and reads them off by hand.
namespace anomalis::show {

void ModelCharts::follow_view(int leader, const Workspace& workspace, const edit::ViewState& view) {
    const bool led_by_plan = leader == edit::model_chart_count;
    const chart::ZoomValues led = (led_by_plan ? plan() : chart(leader)).CurrentZoom();
    for (int i = 0; i < edit::model_chart_count; ++i) {
        if (!is_shown(i) || i == leader) continue;
        const chart::ZoomValues own = chart(i).CurrentZoom();
        chart(i).SetZoomValues(led.zoom_x, led.centre_x, own.zoom_y, own.centre_y);
    }
    if (!led_by_plan && view.show_plan && plan_in_line_) lead_plan(led.zoom_x, led.centre_x, workspace);
    if (is_shown(edit::chart_section)) refresh_section(workspace, view);
}

/// The plan shows the same distances, with the line in its middle.
void ModelCharts::lead_plan(double zoom, double centre, const Workspace& workspace) {
    const auto line = straight_line(workspace);
    if (!line) return;
    const chart::Rect whole = plan().FullRange();
    const double east = whole.x_low + centre * whole.width();
    const double north = line->start.y + (east - line->start.x) * line->step.y / line->step.x;
    plan().SetZoomValues(zoom, centre, zoom, (north - whole.y_low) / whole.height());
}

edit::HandZoom ModelCharts::hand_zoom() {
    for (const chart::AX_Grapher* shown : shown_charts()) {
        const chart::ZoomValues zoom = shown->CurrentZoom();
        return {zoom.zoom_x, zoom.centre_x};
    }
    return {};
}

void ModelCharts::pan_by_hand(const edit::HandZoom& hand, const Workspace& workspace, edit::ViewState& view) {
    std::array<chart::ZoomValues, edit::model_chart_count> own;
    for (int i = 0; i < edit::model_chart_count; ++i)
        own.at(static_cast<std::size_t>(i)) = chart(i).CurrentZoom();
    lay_out(workspace, nullptr, view);
    for (int i = 0; i < edit::model_chart_count; ++i) {
        const chart::ZoomValues& kept = own.at(static_cast<std::size_t>(i));
        if (is_shown(i)) chart(i).SetZoomValues(hand.factor, hand.centre, kept.zoom_y, kept.centre_y);
    }
    if (view.show_plan && plan_in_line_) lead_plan(hand.factor, hand.centre, workspace);
    if (is_shown(edit::chart_section)) refresh_section(workspace, view);
}

void ModelCharts::show_crosshair(int leader, const Workspace& workspace, chart::Point at) {
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (is_shown(i))
            chart(i).LinkCrosshair(chart::LinkedCrosshair{
                at.x, crosshair_lines(workspace, i, chart(i), at.x, i == leader ? &at : nullptr)});
}

void ModelCharts::hide_crosshair() {
    for (chart::AX_Grapher* chart : charts_) chart->LinkCrosshair({});
}

}  // namespace anomalis::show
