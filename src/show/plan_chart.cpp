#include "show/plan_chart.h"

#include <array>

#include "chart/ax_grapher.h"
#include "chart/tick_rule.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "forward/shape/plan_outline.h"
#include "show/section_chart.h"

namespace anomalis::show {

namespace {

constexpr int station_size = 25;   // surface units
constexpr int station_marker = 2;  // a filled square

void open_to(double& low, double& high, double span) {
    const double more = (span - (high - low)) / 2;
    low -= more;
    high += more;
}

void set_ticks(chart::AX_Grapher& chart) {
    const chart::Rect shown = chart.FullRange();
    chart.XTickInterval(chart::tick_interval(shown.x_low, shown.x_high));
    chart.YTickInterval(chart::tick_interval(shown.y_low, shown.y_high));
}

}  // namespace

chart::Rect survey_limits(const Workspace& w) {
    const chart::TickLimits east = chart::outward_tick_limits(w.x_min, w.x_max);
    const chart::TickLimits north = chart::outward_tick_limits(w.y_min, w.y_max);
    chart::Rect limits{east.low, east.high, north.low, north.high};
    if (!(limits.width() > 0)) open_to(limits.x_low, limits.x_high, 1.0);
    if (!(limits.height() > 0)) open_to(limits.y_low, limits.y_high, 1.0);
    return limits;
}

void set_up_plan(chart::AX_Grapher& chart, const Workspace& workspace) {
    chart.ChartType(1);
    chart.MarkerSize(station_size);
    chart.PlotPoints(true);
    const std::array rows{chart::ChartRow{chart::x_row, workspace.stations.column(column_east)},
                          chart::ChartRow{chart::chart_type_series, workspace.stations.column(column_north)}};
    chart.RegisterData(rows);
    chart.SetSeriesOptions(1, 1, chart::black, "Stations", station_marker, -1, 1);
    const chart::Rect survey = survey_limits(workspace);
    chart.XAxisMin(survey.x_low);
    chart.XAxisMax(survey.x_high);
    chart.YAxisMin(survey.y_low);
    chart.YAxisMax(survey.y_high);
    chart.EqualScales(true);
    // The ticks hang on what is shown, which hangs on the room that their numbers take.
    chart.Layout();
    set_ticks(chart);
    chart.Layout();
}

void record_plan(chart::AX_Grapher& chart, const Workspace& workspace, const edit::ViewState& view,
                 PolygonTable& polygons, Faults& faults) {
    polygons.clear();
    const chart::Rect shown = chart.FullRange();
    const forward::ClipBox box{shown.x_low, shown.x_high, shown.y_low, shown.y_high};
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        forward::PlanOutline outline;
        if (forward::calculate_plan_outline(workspace, box, body, outline, faults) > 0) {
            const std::vector<double> east(outline.east.begin(), outline.east.end());
            const std::vector<double> north(outline.north.begin(), outline.north.end());
            record_body_outline(chart, number, east, north, chart::black, body_fill(body, number, view), 1,
                                polygons);
        }
        chart.DrawMarker(body.east, body.north, reference_marker,
                         is_highlighted(number, view) ? magenta : sphere_green, 1);
    }
}

}  // namespace anomalis::show
