#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "chart/drawing_types.h"
#include "core/preferences.h"
#include "edit/view_state.h"
#include "edit/zoom.h"
#include "show/graph_ranges.h"
#include "show/polygon_table.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis {
class Faults;
struct Ensemble;
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The five charts of a line and its plan, as drawing: what each one shows of a workspace and through which
/// window. The charts themselves belong to whoever shows them.
class ModelCharts {
  public:
    ModelCharts(const std::array<chart::AX_Grapher*, edit::model_chart_count>& charts,
                chart::AX_Grapher& plan);

    chart::AX_Grapher& chart(int index) { return *charts_.at(static_cast<std::size_t>(index)); }
    chart::AX_Grapher& plan() { return *plan_; }

    /// Fonts, colours, titles and axis labels; once, before the first drawing.
    void set_up(bool display_axes);
    /// Colours and widths of the curves, legend, grid and units; from the next drawing on.
    void take_preferences(const Preferences& preferences);
    /// Titles and units of the gradient charts; taps are `tap_step` stations apart.
    void set_gradient_texts(bool total, std::int32_t tap_step);
    /// Axes of the five charts on or off; the plan keeps its own.
    void set_display_axes(bool on);

    /// Which charts have room on the page; only these are drawn.
    void set_shown(const std::array<bool, edit::model_chart_count>& shown) { shown_ = shown; }
    bool is_shown(int index) const { return shown_.at(static_cast<std::size_t>(index)); }

    /// Whose ghosts and fan go with the next drawings; null for none.
    void set_ensemble(std::shared_ptr<const Ensemble> ensemble) { ensemble_ = std::move(ensemble); }

    /// Series, limits and overlay of the charts shown, through the windows of `view`; a chart that scales
    /// itself gets its vertical window here. The plots of all charts come to stand under each other.
    void draw(const Workspace& workspace, const GraphRanges& ranges, edit::ViewState& view);
    /// Draws one chart anew without touching the others.
    void draw_one(int index, const Workspace& workspace, const GraphRanges& ranges, edit::ViewState& view);
    /// The windows of `view` without new data.
    void apply_windows(const Workspace& workspace, edit::ViewState& view);
    void draw_plan(const Workspace& workspace, const edit::ViewState& view, Faults& faults);
    /// Records the plan's overlay anew for its present view.
    void refresh_plan(const Workspace& workspace, const edit::ViewState& view, Faults& faults);

    /// The view of one chart was changed by hand: the others follow along the distance. The plan's number is
    /// `model_chart_count`; it leads and follows while its line stands below the curves.
    void follow_view(int leader, const Workspace& workspace, const edit::ViewState& view);
    /// The crosshair of the charts shown while the pointer is over `leader` at a place in user units.
    void show_crosshair(int leader, const Workspace& workspace, chart::Point at);
    void hide_crosshair();
    bool plan_in_line() const { return plan_in_line_; }
    /// How far the charts shown are zoomed by hand.
    edit::HandZoom hand_zoom();
    /// The window of `view`, and a zoom by hand inside it; what was zoomed vertically stays as it is.
    void pan_by_hand(const edit::HandZoom& hand, const Workspace& workspace, edit::ViewState& view);
    /// Records the section's overlay anew for its present view.
    void refresh_section(const Workspace& workspace, const edit::ViewState& view);

    void clear();

    /// The body a polygon of the section, or of the plan, belongs to; 0 for none.
    int section_body(int polygon) const { return section_polygons_.body(polygon); }
    int plan_body(int polygon) const { return plan_polygons_.body(polygon); }

  private:
    void register_series(int index, const Workspace& workspace, const edit::ViewState& view);
    void scale_vertically(int index, const Workspace& workspace, const GraphRanges& ranges,
                          edit::ViewState& view);
    void set_limits(int index, const Workspace& workspace, edit::ViewState& view);
    void place_distances();
    void set_up_plan_below(const Workspace& workspace, const edit::ViewState& view);
    void align(const edit::ViewState& view);
    bool in_line();
    void lead_plan(double zoom, double centre, const Workspace& workspace);
    void lay_out(const Workspace& workspace, const GraphRanges* ranges, edit::ViewState& view);
    void show(int index, const Workspace& workspace, const edit::ViewState& view);
    void record_section_overlay(const Workspace& workspace, const edit::ViewState& view);
    std::vector<chart::AX_Grapher*> shown_charts();

    std::array<chart::AX_Grapher*, edit::model_chart_count> charts_;
    chart::AX_Grapher* plan_;
    std::array<bool, edit::model_chart_count> shown_{true, true, true, true, true};
    std::shared_ptr<const Ensemble> ensemble_;
    CurveLook observed_ = Preferences().observed;
    CurveLook calculated_ = Preferences().calculated;
    SusceptibilityUnit susceptibility_unit_ = SusceptibilityUnit::micro_si;
    PolygonTable section_polygons_;
    PolygonTable plan_polygons_;
    bool plan_in_line_ = false;  ///< its stations stand below their places on the curves
};

}  // namespace anomalis::show
