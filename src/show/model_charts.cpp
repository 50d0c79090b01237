#include "show/model_charts.h"

#include <algorithm>

#include "chart/ax_grapher.h"
#include "core/workspace.h"
#include "edit/settings_boxes.h"
#include "edit/zoom.h"
#include "filter/gradient_unit.h"
#include "show/body_colour_key.h"
#include "show/broken_line.h"
#include "show/chart_look.h"
#include "show/chart_scales.h"
#include "show/ensemble_shapes.h"
#include "show/plan_chart.h"
#include "show/regional_curve.h"
#include "show/section_chart.h"

namespace anomalis::show {

namespace {

/// Data files mark readings that are not there with it.
constexpr double no_value = -99999.0;
constexpr chart::Colour regional_grey = 0x808080;
constexpr chart::Colour ground_brown = 0x1E4F7A;  // blue in the high byte
const std::vector<float> no_curve;
constexpr int numbers_below = 0;   // where the distances stand
constexpr int no_numbers = 3;      // neither below nor above
constexpr float right_room = 270;  // surface units: half of the last number
constexpr double frame_room = 90;  // surface units below a frame without numbers

struct ChartTexts {
    const char* title;
    const char* y_label;
};
constexpr std::array<ChartTexts, edit::model_chart_count> chart_texts{{{"Residual Magnetic Field", "nT"},
                                                                       {"", ""},
                                                                       {"Residual Gravity", "mGal"},
                                                                       {"", ""},
                                                                       {"Model Section", "Elevation (m)"}}};

void set_up_common(chart::AX_Grapher& chart) {
    take_chart_look(chart);
    chart.DataNull(no_value);
}

double plot_aspect(const chart::AX_Grapher& chart) {
    const chart::Rect plot = chart.PlotRect();
    return plot.width() > 0 && plot.height() > 0 ? plot.height() / plot.width() : 0.5;
}

void take_window(edit::ChartWindow& window, const AxisScale& scale) {
    window.chart_min = static_cast<float>(scale.low);
    window.chart_max = static_cast<float>(scale.high);
    if (!edit::scales_itself(window)) return;
    window.chart_zoom_index = 1;
    window.chart_span = static_cast<float>(scale.high - scale.low);
    window.chart_centre = static_cast<float>((scale.high + scale.low) / 2);
}

}  // namespace

ModelCharts::ModelCharts(const std::array<chart::AX_Grapher*, edit::model_chart_count>& charts,
                         chart::AX_Grapher& plan)
    : charts_(charts), plan_(&plan) {}

void ModelCharts::set_up(bool display_axes) {
    for (int i = 0; i < edit::model_chart_count; ++i) {
        const ChartTexts& texts = chart_texts.at(static_cast<std::size_t>(i));
        set_up_common(chart(i));
        chart(i).Title(texts.title);
        chart(i).YAxisLabel(texts.y_label);
        const bool curves = i != edit::chart_section;
        chart(i).PictureLegend(curves);
        chart(i).ReadOutUnits("m", curves ? texts.y_label : "m");
    }
    set_up_common(plan());
    plan().XAxisRightMargin(right_room);
    plan().Title("Plan");
    plan().XAxisLabel("East (m)");
    plan().YAxisLabel("North (m)");
    plan().ReadOutUnits("m", "m");
    set_gradient_texts(false, 1);
    set_display_axes(display_axes);
}

void ModelCharts::set_gradient_texts(bool total, std::int32_t tap_step) {
    const edit::GradientCaptions captions = edit::gradient_captions(total);
    const auto set = [&](int index, std::string_view title, std::string_view data_unit) {
        const std::string unit = filter::gradient_unit(data_unit, tap_step);
        chart(index).Title(std::string(title));
        chart(index).YAxisLabel(unit);
        chart(index).ReadOutUnits("m", unit);
    };
    set(edit::chart_mag_gradient, captions.mag_title, "nT");
    set(edit::chart_grav_gradient, captions.grav_title, "mGal");
}

void ModelCharts::take_preferences(const Preferences& preferences) {
    observed_ = preferences.observed;
    calculated_ = preferences.calculated;
    susceptibility_unit_ = preferences.susceptibility_unit;
    for (int i = 0; i < edit::profile_chart_count; ++i) chart(i).DisplayLegend(preferences.legend);
    for (chart::AX_Grapher* chart : charts_) chart->LightGrid(preferences.grid);
    plan().LightGrid(preferences.grid);
}

void ModelCharts::set_display_axes(bool on) {
    for (chart::AX_Grapher* chart : charts_) chart->DisplayAxes(on);
}

std::vector<chart::AX_Grapher*> ModelCharts::shown_charts() {
    std::vector<chart::AX_Grapher*> shown;
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (is_shown(i)) shown.push_back(&chart(i));
    return shown;
}

void ModelCharts::register_series(int index, const Workspace& workspace, const edit::ViewState& view) {
    chart::AX_Grapher& target = chart(index);
    if (index == edit::chart_section) {
        const BrokenLine line = BrokenLine::gaps_of_stations(workspace);
        const auto ground = workspace.stations.column(column_ground);
        const std::vector<double> drawn = line.whole() ? std::vector<double>() : line.curve(ground);
        const std::array rows{
            chart::ChartRow{chart::x_row, line.whole() ? workspace.distances.span() : line.distances()},
            chart::ChartRow{chart::line_series, line.whole() ? chart::Cells(ground) : chart::Cells(drawn)}};
        target.RegisterData(rows);
        target.SetSeriesOptions(1, 1, ground_brown, "Ground", 0, -1, 1);
        return;
    }
    const BrokenLine line = BrokenLine::gaps_of_channel(workspace, channel_of_chart(index));
    std::array<std::vector<float>, 2> drawn;
    const auto curve = [&](Stage stage) {
        const std::span<const float> row = chart_curve(workspace, index, stage);
        if (line.whole()) return chart::ChartRow{chart::line_series, row};
        std::vector<float>& broken = drawn.at(stage == stage_observed ? 0 : 1);
        broken = line.curve(row);
        return chart::ChartRow{chart::line_series, std::span<const float>(broken)};
    };
    std::vector<float> regional = view.show_regional ? regional_curve(workspace, index) : no_curve;
    if (!line.whole()) regional = line.curve(std::span<const float>(regional));
    std::vector rows{
        chart::ChartRow{chart::x_row, line.whole() ? workspace.distances.span() : line.distances()},
        curve(stage_observed), curve(stage_calculated)};
    if (!regional.empty()) rows.push_back({chart::line_series, std::span<const float>(regional)});
    target.RegisterData(rows);
    const FanBands fan = ensemble_ ? fan_bands(workspace, *ensemble_, index) : FanBands();
    target.RegisterBands(fan.bands);
    target.SetSeriesOptions(1, 1, observed_.colour, "Observed", 0, -1, observed_.width);
    target.SetSeriesOptions(1, 2, calculated_.colour, "Calculated", 0, -1, calculated_.width);
    for (const int series : {1, 2}) target.SetSeriesCasing(1, series, true);
    if (regional.empty()) return;
    target.SetSeriesOptions(1, 3, regional_grey, "Regional", 0, -1, 1);
    target.SetSeriesLineStyle(1, 3, chart::LineStyle::dash);
}

void ModelCharts::scale_vertically(int index, const Workspace& workspace, const GraphRanges& ranges,
                                   edit::ViewState& view) {
    // A window that followed a body in the hand would move it away from the pointer.
    if (index == edit::chart_section && view.body_held) return;
    edit::ChartWindow& window = view.charts.at(static_cast<std::size_t>(index));
    const auto i = static_cast<std::size_t>(index);
    take_window(window, index == edit::chart_section
                            ? section_scale(workspace, plot_aspect(chart(index)), view.window_span)
                            : profile_scale(ranges.low.at(i), ranges.high.at(i)));
}

void ModelCharts::set_limits(int index, const Workspace& workspace, edit::ViewState& view) {
    chart::AX_Grapher& target = chart(index);
    edit::ChartWindow& window = view.charts.at(static_cast<std::size_t>(index));
    const double half = view.window_span / 2.0;
    target.XAxisMin(view.window_centre - half);
    target.XAxisMax(view.window_centre + half);
    target.XTickInterval(window_interval(view.window_span));
    if (!(window.chart_span > 0)) return;
    double low = window.chart_centre - window.chart_span / 2.0;
    double high = window.chart_centre + window.chart_span / 2.0;
    if (index == edit::chart_section && workspace.display.maintain_aspect_ratio == 1 &&
        edit::scales_itself(window)) {
        high = window.chart_max;
        low = high - view.window_span * plot_aspect(target);
        window.chart_span = static_cast<float>(high - low);
        window.chart_centre = static_cast<float>((high + low) / 2);
    }
    target.YAxisMin(low);
    target.YAxisMax(high);
    target.YTickInterval(window_interval(high - low));
}

/// Distances are written under the lowest chart alone.
void ModelCharts::place_distances() {
    bool lowest = true;
    for (int i = edit::model_chart_count - 1; i >= 0; --i) {
        if (!is_shown(i)) continue;
        chart(i).XAxisLabellingPosition(lowest ? numbers_below : no_numbers);
        chart(i).XAxisLabel(lowest ? "Distance (m)" : "");
        // Half of the lowest number of the other axis stands below the frame.
        const double room = std::max(frame_room, chart(i).TextHeight() / 2);
        chart(i).YAxisBottomMargin(lowest ? 0 : static_cast<float>(room));
        lowest = false;
    }
}

/// The plan below curves shows what they show, as far as its line allows.
void ModelCharts::set_up_plan_below(const Workspace& workspace, const edit::ViewState& view) {
    const bool curves =
        std::any_of(shown_.begin(), shown_.begin() + edit::profile_chart_count, [](bool is) { return is; });
    std::optional<DistanceWindow> window;
    if (curves)
        window = {view.window_centre - view.window_span / 2.0, view.window_centre + view.window_span / 2.0};
    plan_in_line_ = set_up_plan(plan(), workspace, window);
}

void ModelCharts::align(const edit::ViewState& view) {
    std::vector<chart::AX_Grapher*> shown = shown_charts();
    if (view.show_plan) shown.push_back(&plan());
    chart::align_plots(shown);
    for (chart::AX_Grapher* chart : shown) {
        chart->XAxisRightMargin(chart->XAxisRightMargin() + right_room);
        chart->Layout();
    }
}

/// Limits first, then margins, then the section again: its scale hangs on the plot that the margins leave.
void ModelCharts::lay_out(const Workspace& workspace, const GraphRanges* ranges, edit::ViewState& view) {
    place_distances();
    for (int i = 0; i < edit::model_chart_count; ++i) {
        if (!is_shown(i)) continue;
        if (ranges) scale_vertically(i, workspace, *ranges, view);
        set_limits(i, workspace, view);
    }
    if (view.show_plan) set_up_plan_below(workspace, view);
    align(view);
    // Whether its line fits below the curves hangs on the plot that the margins leave.
    if (view.show_plan) set_up_plan_below(workspace, view);
    if (!is_shown(edit::chart_section)) return;
    if (ranges) scale_vertically(edit::chart_section, workspace, *ranges, view);
    set_limits(edit::chart_section, workspace, view);
    align(view);
}

bool ModelCharts::in_line() {
    const std::vector<chart::AX_Grapher*> shown = shown_charts();
    return std::all_of(shown.begin(), shown.end(), [&](const chart::AX_Grapher* chart) {
        return chart->PlotRect().x_low == shown.front()->PlotRect().x_low;
    });
}

void ModelCharts::show(int index, const Workspace& workspace, const edit::ViewState& view) {
    chart::AX_Grapher& target = chart(index);
    target.ClearSavedGraphics();
    if (index == edit::chart_section) record_section_overlay(workspace, view);
    target.DisplayChart();
}

void ModelCharts::record_section_overlay(const Workspace& workspace, const edit::ViewState& view) {
    chart::AX_Grapher& section = chart(edit::chart_section);
    section.ClearSavedGraphics();
    section.ShowColourKey(body_colour_key(workspace, view.coloured_by, susceptibility_unit_));
    if (ensemble_) record_section_ghosts(section, workspace, view, *ensemble_);
    record_section(section, workspace, view, section_polygons_);
}

void ModelCharts::draw(const Workspace& workspace, const GraphRanges& ranges, edit::ViewState& view) {
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (is_shown(i)) register_series(i, workspace, view);
    lay_out(workspace, &ranges, view);
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (is_shown(i)) show(i, workspace, view);
}

void ModelCharts::draw_one(int index, const Workspace& workspace, const GraphRanges& ranges,
                           edit::ViewState& view) {
    if (!is_shown(index)) return;
    register_series(index, workspace, view);
    scale_vertically(index, workspace, ranges, view);
    set_limits(index, workspace, view);
    chart(index).Layout();
    if (in_line()) return show(index, workspace, view);
    // Its numbers have become wider than the room that all of them have.
    align(view);
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (is_shown(i)) show(i, workspace, view);
}

void ModelCharts::apply_windows(const Workspace& workspace, edit::ViewState& view) {
    for (chart::AX_Grapher* shown : shown_charts()) shown->clear_zoom_values();
    if (plan_in_line_) plan().clear_zoom_values();
    lay_out(workspace, nullptr, view);
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (is_shown(i)) show(i, workspace, view);
}

void ModelCharts::draw_plan(const Workspace& workspace, const edit::ViewState& view, Faults& faults) {
    plan().ClearSavedGraphics();
    plan().ShowColourKey(body_colour_key(workspace, view.coloured_by, susceptibility_unit_));
    set_up_plan_below(workspace, view);
    plan().DisplayChart();
    refresh_plan(workspace, view, faults);
}

void ModelCharts::refresh_plan(const Workspace& workspace, const edit::ViewState& view, Faults& faults) {
    plan().ClearSavedGraphics();
    if (ensemble_) record_plan_ghosts(plan(), workspace, *ensemble_);
    // The bodies lie over the numbers: they are what the plan is looked at for.
    record_distances(plan(), workspace, window_interval(view.window_span));
    record_plan(plan(), workspace, view, plan_polygons_, faults);
    plan().RefreshGraph(1);
}

void ModelCharts::refresh_section(const Workspace& workspace, const edit::ViewState& view) {
    record_section_overlay(workspace, view);
    chart(edit::chart_section).RefreshGraph(1);
}

void ModelCharts::clear() {
    for (chart::AX_Grapher* chart : charts_) chart->Clear();
    plan().Clear();
    section_polygons_.clear();
    plan_polygons_.clear();
}

}  // namespace anomalis::show
