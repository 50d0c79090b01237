#include "show/section_chart.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "chart/ax_grapher.h"
#include "core/numbers.h"
#include "core/shown_text.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "show/handles/handle.h"
#include "show/label_place.h"

namespace anomalis::show {

namespace {

constexpr chart::Colour sensor_blue = 16711680;
constexpr int most_sensors = 128;
constexpr int sensor_size = 10;     // surface units
constexpr int reference_size = 15;  // surface units
constexpr chart::Colour leader_grey = 0x606060;
constexpr int grid_style = 3;                    // dash and dot
constexpr double label_gap = 30 * handle_pixel;  // beside the body: its handles stand there
constexpr double least_grid_step = 2 * chart::units_per_screen_pixel;

/// Calls `draw` for every multiple of `spacing` between two limits; a grid finer than two pixels is not
/// drawn.
template <class Draw>
void for_each_grid_line(double low, double high, double spacing, double scale, Draw&& draw) {
    if (!(spacing > 0) || !(spacing * scale >= least_grid_step)) return;
    const double first = std::ceil(low / spacing - 1e-9);
    const double last = std::floor(high / spacing + 1e-9);
    for (double k = first; k <= last; ++k) draw(k * spacing);
}

void record_grid(chart::AX_Grapher& chart, const Workspace& workspace, const chart::Rect& view) {
    for_each_grid_line(
        view.x_low, view.x_high, workspace.drawing.profile_grid_spacing, chart.XAxisScale(),
        [&](double x) { chart.DrawLine(x, view.y_low, x, view.y_high, chart::black, 1, grid_style); });
    for_each_grid_line(
        view.y_low, view.y_high, workspace.drawing.depth_grid_spacing, chart.YAxisScale(),
        [&](double y) { chart.DrawLine(view.x_low, y, view.x_high, y, chart::black, 1, grid_style); });
}

void record_sensors(chart::AX_Grapher& chart, const Workspace& workspace) {
    chart.MarkerSize(sensor_size);
    const int stride = sensor_stride(workspace.station_count);
    for (int i = 1; i <= workspace.station_count; i += stride)
        chart.DrawMarker(workspace.distances[i], workspace.stations(i, column_sensor), reference_marker,
                         sensor_blue, 1);
    chart.MarkerSize(reference_size);
}

chart::Colour marker_colour(const ModelBody& body, bool highlighted) {
    if (body.type != sphere) return chart::black;
    return highlighted ? magenta : sphere_green;
}

Outline outline_of(const chart::AX_Grapher& chart, const SectionShape& shape) {
    Outline outline;
    for (std::size_t i = 0; i < shape.xs.size(); ++i)
        outline.push_back(chart.UserToSurface({shape.xs[i], shape.ys[i]}));
    if (outline.empty()) {
        const chart::Point at = chart.UserToSurface({shape.distance, shape.top});
        const double r = reference_size;
        outline = {{at.x - r, at.y - r}, {at.x + r, at.y - r}, {at.x + r, at.y + r}, {at.x - r, at.y + r}};
    }
    return outline;
}

chart::Rect bounds_of(const Outline& outline) {
    chart::Rect box{outline.front().x, outline.front().x, outline.front().y, outline.front().y};
    for (const chart::Point& p : outline)
        box = {std::min(box.x_low, p.x), std::max(box.x_high, p.x), std::min(box.y_low, p.y),
               std::max(box.y_high, p.y)};
    return box;
}

/// Two lines beside the selected body: on its left when it lies in the right half of the window, and over no
/// body.
void record_label(chart::AX_Grapher& chart, const ModelBody& body, const SectionShape& shape,
                  const std::vector<Outline>& bodies) {
    const chart::Rect view = chart.ViewLimits();
    const Outline own = outline_of(chart, shape);
    const chart::Rect plot = chart.PlotRect();
    const chart::Rect whole = bounds_of(own);
    const bool in_view = whole.x_high >= plot.x_low && whole.x_low <= plot.x_high &&
                         whole.y_high >= plot.y_low && whole.y_low <= plot.y_high;
    if (!in_view || !(chart.XAxisScale() > 0)) return;
    const std::string name = shown_text(body.name);
    const std::string depth = "Burial depth: " + format_number(body.top_elevation, "0.00") + " m";
    const double line = chart.TextHeight();
    WantedLabel wanted;
    wanted.window = {plot.x_low + line / 2, plot.x_high - line / 2, plot.y_low + line / 4,
                     plot.y_high - line / 4};
    wanted.width = std::max(chart.TextWidth(name), chart.TextWidth(depth));
    wanted.height = 3 * line;
    wanted.gap = label_gap;
    wanted.body = {std::max(whole.x_low, plot.x_low), std::min(whole.x_high, plot.x_high),
                   std::max(whole.y_low, plot.y_low), std::min(whole.y_high, plot.y_high)};
    // The name stands a line below the body's top; both lines stay inside when that lies outside.
    const double top = chart.UserToSurface({shape.distance, shape.top}).y;
    wanted.bottom = std::clamp(top - 3 * line, wanted.window.y_low,
                               std::max(wanted.window.y_low, wanted.window.y_high - wanted.height));
    wanted.left_side = shape.distance > (view.x_low + view.x_high) / 2;
    const LabelPlace place = place_label(wanted, bodies);
    if (place.leader_from) {
        const chart::Point from = chart.SurfaceToUser(*place.leader_from);
        const chart::Point to = chart.SurfaceToUser(nearest_point(own, *place.leader_from));
        chart.DrawLine(from.x, from.y, to.x, to.y, leader_grey, 1);
    }
    const chart::Point name_at = chart.SurfaceToUser({place.box.x_low, place.box.y_low + 2 * line});
    const chart::Point depth_at = chart.SurfaceToUser({place.box.x_low, place.box.y_low});
    chart.DrawText(0, name_at.x, name_at.y, name);
    chart.DrawText(0, depth_at.x, depth_at.y, depth);
}

}  // namespace

int sensor_stride(int station_count) {
    return std::max(1, (station_count + most_sensors - 1) / most_sensors);
}

bool is_highlighted(int body_number, const edit::ViewState& view) {
    return view.highlight_on && body_number == view.current_body;
}

chart::Colour body_fill(const ModelBody& body, int body_number, const edit::ViewState& view) {
    return is_highlighted(body_number, view) ? magenta : body.colour;
}

void record_body_outline(chart::AX_Grapher& chart, int body_number, const std::vector<double>& xs,
                         const std::vector<double>& ys, chart::Colour outline, chart::Colour fill, int width,
                         PolygonTable& polygons) {
    const int count = static_cast<int>(xs.size());
    if (fill != chart::white)
        polygons.set(chart.DrawPolygon(count, xs.data(), ys.data(), outline, fill, width), body_number);
    polygons.set(chart.DrawPolygon(count, xs.data(), ys.data(), outline, chart::no_colour, width),
                 body_number);
}

void record_section(chart::AX_Grapher& chart, const Workspace& workspace, const edit::ViewState& view,
                    PolygonTable& polygons) {
    polygons.clear();
    const chart::Rect limits = chart.ViewLimits();
    record_grid(chart, workspace, limits);
    record_sensors(chart, workspace);
    const SectionWindow window{chart.YAxisMin(), view.profile_window_max};
    std::optional<SectionShape> labelled;
    std::vector<Outline> outlines;
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        SectionShape shape = section_shape(workspace, body, window);
        if (!shape.visible) continue;
        const bool highlighted = is_highlighted(number, view);
        if (!shape.xs.empty())
            record_body_outline(chart, number, shape.xs, shape.ys, shape.outline,
                                body_fill(body, number, view), shape.width, polygons);
        chart.DrawMarker(shape.distance, shape.top, reference_marker, marker_colour(body, highlighted), 1);
        outlines.push_back(outline_of(chart, shape));
        // In a hand the body has a note of its own.
        if (number == view.current_body && workspace.display.show_body_label == 1 && !view.body_held)
            labelled = std::move(shape);
    }
    if (labelled) record_label(chart, workspace.body(view.current_body), *labelled, outlines);
}

}  // namespace anomalis::show
