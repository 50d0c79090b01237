#include "show/section_chart.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "chart/ax_grapher.h"
#include "core/numbers.h"
#include "core/shown_text.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "show/handles/handle.h"

namespace anomalis::show {

namespace {

constexpr chart::Colour sensor_blue = 16711680;
constexpr int most_sensors = 128;
constexpr int sensor_size = 10;                  // surface units
constexpr int reference_size = 15;               // surface units
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

/// Two lines beside the selected body: on its left when it lies in the right half of the window.
void record_label(chart::AX_Grapher& chart, const ModelBody& body, const SectionShape& shape) {
    const chart::Rect view = chart.ViewLimits();
    const double left = shape.left();
    const double right = shape.right();
    const bool in_view = right >= view.x_low && left <= view.x_high && shape.highest() >= view.y_low &&
                         shape.lowest() <= view.y_high;
    if (!in_view || !(chart.XAxisScale() > 0)) return;
    const std::string name = shown_text(body.name);
    const std::string depth = "Burial depth: " + format_number(body.top_elevation, "0.00");
    const double height = chart.TextHeight() / chart.YAxisScale();
    const double margin = chart.TextHeight() / 2 / chart.XAxisScale();
    const double gap = label_gap / chart.XAxisScale();
    const double width = std::max(chart.TextWidth(name), chart.TextWidth(depth)) / chart.XAxisScale();
    const bool on_left = shape.distance > (view.x_low + view.x_high) / 2;
    const double wanted =
        on_left ? std::max(left, view.x_low) - gap - width : std::min(right, view.x_high) + gap;
    const double x =
        std::clamp(wanted, view.x_low + margin, std::max(view.x_low + margin, view.x_high - margin - width));
    // Both lines stay inside the window when the body's top lies outside it.
    const double lowest = view.y_low + 2.5 * height;
    const double y = std::clamp(shape.top - height, lowest, std::max(lowest, view.y_high - height * 1.25));
    chart.DrawText(0, x, y, name);
    chart.DrawText(0, x, y - 2 * height, depth);
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
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        const SectionShape shape = section_shape(workspace, body, window);
        if (!shape.visible) continue;
        const bool highlighted = is_highlighted(number, view);
        if (!shape.xs.empty())
            record_body_outline(chart, number, shape.xs, shape.ys, shape.outline,
                                body_fill(body, number, view), shape.width, polygons);
        chart.DrawMarker(shape.distance, shape.top, reference_marker, marker_colour(body, highlighted), 1);
        // In a hand the body has a note of its own.
        if (number == view.current_body && workspace.display.show_body_label == 1 && !view.body_held)
            record_label(chart, body, shape);
    }
}

}  // namespace anomalis::show
