#include "show/plan_chart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "chart/ax_grapher.h"
#include "chart/tick_rule.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "forward/shape/plan_outline.h"
#include "show/section_chart.h"

namespace anomalis::show {

namespace {

constexpr int station_size = 25;   // surface units
constexpr int station_marker = 2;  // a filled square
constexpr double tick_half = 60;   // surface units, of a distance across the line

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

std::optional<StraightLine> straight_line(const Workspace& w) {
    constexpr double straight = 1.0 / 200;
    const int last = w.station_count;
    const double length = last > 1 ? w.distances[last] - w.distances[1] : 0;
    if (!(length > 0)) return std::nullopt;
    const auto place = [&](int i) {
        return chart::Point{w.stations(i, column_east), w.stations(i, column_north)};
    };
    StraightLine line;
    line.step = {(place(last).x - place(1).x) / length, (place(last).y - place(1).y) / length};
    line.start = {place(1).x - w.distances[1] * line.step.x, place(1).y - w.distances[1] * line.step.y};
    for (int i = 1; i <= last; ++i) {
        const chart::Point wanted = line.place(w.distances[i]);
        if (!(std::hypot(place(i).x - wanted.x, place(i).y - wanted.y) <= straight * length))
            return std::nullopt;
    }
    return line;
}

namespace {

constexpr double most_of_the_height = 0.8;

/// Sets the limits under which the line stands below the curves; false, and nothing set, when it cannot.
bool put_below(chart::AX_Grapher& chart, const Workspace& workspace, const DistanceWindow& curves) {
    const auto line = straight_line(workspace);
    const chart::Rect plot = chart.PlotRect();
    if (!line || !(line->step.x > 0) || !(curves.high > curves.low) || !(plot.width() > 0)) return false;
    if (std::abs(line->step.y) / line->step.x > most_of_the_height * plot.height() / plot.width())
        return false;
    const chart::Point from = line->place(curves.low);
    const chart::Point to = line->place(curves.high);
    chart.XAxisMin(from.x);
    chart.XAxisMax(to.x);
    // The axis to the north has room to spare and is opened about the line.
    const double half = std::max(std::abs(to.y - from.y), (to.x - from.x) * 1e-3) / 2;
    chart.YAxisMin((from.y + to.y) / 2 - half);
    chart.YAxisMax((from.y + to.y) / 2 + half);
    return true;
}

}  // namespace

bool set_up_plan(chart::AX_Grapher& chart, const Workspace& workspace,
                 const std::optional<DistanceWindow>& curves) {
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
    const bool below = curves && put_below(chart, workspace, *curves);
    if (below) chart.Layout();
    set_ticks(chart);
    chart.Layout();
    return below;
}

void record_distances(chart::AX_Grapher& chart, const Workspace& workspace, double interval) {
    const auto line = straight_line(workspace);
    const double scale = chart.XAxisScale();
    if (!line || !(interval > 0) || !(scale > 0)) return;
    const double unit = std::hypot(line->step.x, line->step.y);
    const chart::Point along{line->step.x / unit, line->step.y / unit};
    // Above the line, or on the left of one to the north.
    const double sense = along.x < 0 ? -1 : 1;
    const chart::Point aside{-along.y * sense, along.x * sense};
    const double first = workspace.distances[1];
    const double last = workspace.distances.last();
    const double height = chart.TextHeight();
    const auto text_of = [](double distance) { return format_number(distance, "0.###") + " m"; };
    const double widest = std::max(chart.TextWidth(text_of(std::ceil(first / interval) * interval)),
                                   chart.TextWidth(text_of(std::floor(last / interval) * interval)));
    const double room = std::abs(along.x) * widest + std::abs(along.y) * height + height;
    double every = 1;
    while (interval * every * unit * scale < room && interval * every < last - first)
        every = chart::next_multiple(every);
    const double step = interval * every;
    const chart::Rect plot = chart.PlotRect();
    const auto user = [&](chart::Point at, double up, double right) {
        return chart::Point{at.x + right / scale, at.y + up / scale};
    };
    for (double k = std::ceil(first / step - 1e-9); k * step <= last * (1 + 1e-9); k += 1) {
        const chart::Point at = line->place(k * step);
        const chart::Point from = user(at, -aside.y * tick_half, -aside.x * tick_half);
        const chart::Point to = user(at, aside.y * tick_half, aside.x * tick_half);
        chart.DrawLine(from.x, from.y, to.x, to.y, chart::black, 1);
        const std::string text = text_of(k * step);
        const double width = chart.TextWidth(text);
        const double off =
            tick_half + height / 4 + std::abs(aside.x) * width / 2 + std::abs(aside.y) * height / 2;
        const chart::Point corner = user(at, aside.y * off - height / 2, aside.x * off - width / 2);
        // No number is cut at the frame.
        const chart::Point low = chart.UserToSurface(corner);
        if (plot.contains(low) && plot.contains({low.x + width, low.y + height}))
            chart.DrawText(0, corner.x, corner.y, text);
    }
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
