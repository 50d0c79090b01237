#include "workbench/plan_chart.h"

#include <array>

#include "chart/ax_grapher.h"
#include "chart/tick_rule.h"
#include "core/workspace.h"
#include "forward/plan_outline.h"
#include "workbench/section_chart.h"
#include "workbench/view_state.h"

namespace anomalis {

namespace {

constexpr int station_size = 25;   // surface units
constexpr int station_marker = 2;  // a filled square

void open_to(double& low, double& high, double span) {
    const double more = (span - (high - low)) / 2;
    low -= more;
    high += more;
}

double plot_aspect(const AX_Grapher& chart) {
    const Rect plot = chart.PlotRect();
    return plot.width() > 0 && plot.height() > 0 ? plot.height() / plot.width() : 1.0;
}

void set_limits(AX_Grapher& chart, const Workspace& workspace, double aspect) {
    const Rect limits = plan_limits(workspace, aspect);
    chart.XAxisMin(limits.x_low);
    chart.XAxisMax(limits.x_high);
    chart.XTickInterval(tick_interval(limits.x_low, limits.x_high));
    chart.YAxisMin(limits.y_low);
    chart.YAxisMax(limits.y_high);
    chart.YTickInterval(tick_interval(limits.y_low, limits.y_high));
}

}  // namespace

Rect plan_limits(const Workspace& w, double aspect) {
    const TickLimits east = outward_tick_limits(w.x_min, w.x_max);
    const TickLimits north = outward_tick_limits(w.y_min, w.y_max);
    Rect limits{east.low, east.high, north.low, north.high};
    if (!(limits.width() > 0)) open_to(limits.x_low, limits.x_high, 1.0);
    if (limits.width() * aspect > limits.height()) {
        open_to(limits.y_low, limits.y_high, limits.width() * aspect);
    } else {
        open_to(limits.x_low, limits.x_high, limits.height() / aspect);
    }
    return limits;
}

void set_up_plan(AX_Grapher& chart, const Workspace& workspace) {
    chart.ChartType(1);
    chart.MarkerSize(station_size);
    chart.PlotPoints(true);
    const std::array rows{ChartRow{x_row, workspace.stations.column(column_east)},
                          ChartRow{chart_type_series, workspace.stations.column(column_north)}};
    chart.RegisterData(rows);
    chart.SetSeriesOptions(1, 1, black, "Stations", station_marker, -1, 1);
    // The margins hang on the numbers, the limits on the plot that the margins leave.
    set_limits(chart, workspace, plot_aspect(chart));
    chart.Layout();
    set_limits(chart, workspace, plot_aspect(chart));
    chart.Layout();
}

void record_plan(AX_Grapher& chart, const Workspace& workspace, const ViewState& view, PolygonTable& polygons,
                 Prompts& prompts) {
    polygons.clear();
    const ClipBox box{chart.XAxisMin(), chart.XAxisMax(), chart.YAxisMin(), chart.YAxisMax()};
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        PlanOutline outline;
        if (calculate_plan_outline(workspace, box, body, outline, prompts) > 0) {
            const std::vector<double> east(outline.east.begin(), outline.east.end());
            const std::vector<double> north(outline.north.begin(), outline.north.end());
            record_body_outline(chart, number, east, north, black, body_fill(body, number, view), 1,
                                polygons);
        }
        chart.DrawMarker(body.east, body.north, reference_marker,
                         is_highlighted(number, view) ? magenta : sphere_green, 1);
    }
}

}  // namespace anomalis
