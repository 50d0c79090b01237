#include "chart/detail/display.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>

#include "chart/detail/axis_painter.h"
#include "chart/detail/equal_scales.h"
#include "chart/detail/legend.h"
#include "chart/detail/zoom.h"

namespace anomalis::chart {

namespace {

constexpr double anchor_tolerance = 0.5;

Point to_surface(const GrapherState& state, double x, double y) {
    return state.layout.to_surface(
        state.x, state.y, {state.properties.x.scale.forward(x), state.properties.y.scale.forward(y)});
}

/// In user units. Equal scales open an axis beyond its limits.
Interval whole_range(const AxisRange& range, const AxisProperties& axis) {
    return {std::min(range.limits.low, axis.scale.inverse(range.full.low)),
            std::max(range.limits.high, axis.scale.inverse(range.full.high))};
}

void draw_line_item(GrapherState& state, const GraphicItem& item) {
    Point from{item.x1, item.y1};
    Point to{item.x2, item.y2};
    if (item.extent == LineExtent::full_y) {
        const Interval all = whole_range(state.y, state.properties.y);
        from.y = all.low;
        to.y = all.high;
    } else if (item.extent == LineExtent::full_x) {
        const Interval all = whole_range(state.x, state.properties.x);
        from.x = all.low;
        to.x = all.high;
    }
    state.canvas.line(to_surface(state, from.x, from.y), to_surface(state, to.x, to.y),
                      {item.colour, static_cast<double>(item.width), static_cast<LineStyle>(item.reserved)});
}

void draw_polygon_item(GrapherState& state, const GraphicItem& item, std::vector<Point>& points) {
    points.clear();
    for (std::size_t i = 0; i < item.count(); ++i)
        points.push_back(to_surface(state, item.xs[i], item.ys[i]));
    state.canvas.polygon(points, item.pen_colour, item.fill_colour, item.width);
}

void draw_rectangle_item(GrapherState& state, const GraphicItem& item) {
    const Point a = to_surface(state, item.x1, item.y1);
    const Point b = to_surface(state, item.x2, item.y2);
    state.canvas.rectangle({std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)},
                           item.pen_colour, item.fill_colour, item.width);
}

void draw_item(GrapherState& state, const GraphicItem& item, std::vector<Point>& points) {
    Canvas& canvas = state.canvas;
    const Point at = to_surface(state, item.x1, item.y1);
    switch (item.kind) {
        case ItemKind::window:
            canvas.set_window({item.x1, item.x2, item.y1, item.y2});
            break;
        case ItemKind::line:
            draw_line_item(state, item);
            break;
        case ItemKind::marker:
            if (canvas.window().contains(at, anchor_tolerance))
                canvas.markers(item.marker, item.marker_size, item.colour, item.width, {&at, 1});
            break;
        case ItemKind::polygon:
            draw_polygon_item(state, item, points);
            break;
        case ItemKind::rectangle:
            draw_rectangle_item(state, item);
            break;
        case ItemKind::text:
            if (canvas.window().contains(at, anchor_tolerance))
                canvas.text(at, item.angle, 0.0, 0.0, item.text, item.font, state.properties.fore_colour);
            break;
        case ItemKind::polyline:
            // Recorded and numbered, never replayed: GraphicsList.polylines_are_numbered_but_not_replayed.
            break;
    }
}

/// Runs `work` on the surface; whatever it throws is noted and gives -1.
template <class Work>
int on_surface(GrapherState& state, Work&& work) {
    int status = -1;
    try {
        const Busy busy(state.busy_refresh);
        state.surface->set_mapping(screen_mapping(state.surface->height()));
        status = work();
    } catch (const std::exception& failure) {
        state.notes.add(failure.what());
        status = -1;
    }
    return status;
}

/// Bands, light grid, tracks, dots, axes, title and the series below the others; the canvas is cut to the
/// plot from then on. Frame and ticks lie on the bands.
void draw_lower(GrapherState& state) {
    const ChartLayout& layout = state.layout;
    if (!state.bands.bands().empty() || !state.tracks.empty() || !state.dots.empty() ||
        state.properties.light_grid) {
        state.canvas.set_window(layout.plot);
        state.band_painter.paint(state.bands, state.frame(), state.canvas);
        paint_light_grid(state.properties, layout, state.x, state.y, state.canvas);
        state.track_painter.paint(state.tracks, state.frame(), state.canvas);
        state.dot_painter.paint(state.dots, state.frame(), state.canvas);
    }
    state.canvas.set_window({0.0, layout.width, 0.0, layout.height});
    paint_axes(state.properties, layout, state.x, state.y, state.canvas);
    state.canvas.set_window(layout.plot);
    state.painter.plot_lowest(state.series, state.frame(), state.canvas);
}

void draw_upper(GrapherState& state) {
    state.painter.plot_others(state.series, state.frame(), state.canvas);
    state.displayed = true;
}

void open_on_screen(GrapherState& state) {
    state.canvas.open(*state.surface, state.fonts(), state.palette);
}

void open_base(GrapherState& state) {
    DrawingDevice& surface = *state.surface;
    surface.select_layer(DrawingDevice::Layer::base);
    open_on_screen(state);
    surface.clear(state.canvas.shown(state.properties.back_colour), state.properties.back_style);
}

/// The chart with its lower part taken from the last picture where that is as it was: while a body is moved
/// the observed curve, which costs as much as the calculated one, is not drawn again.
void draw_chart_on_base(GrapherState& state) {
    DrawingDevice& surface = *state.surface;
    if (state.lower.is_of(state) && surface.take_lower()) {
        open_on_screen(state);
        state.canvas.set_window(state.layout.plot);
    } else {
        open_base(state);
        draw_lower(state);
        if (!state.series.empty()) frame_on_top(state);
        state.lower.keep(state);
    }
    draw_upper(state);
    // What is above has covered the frame of the kept picture.
    if (state.series.series_count() > 1) frame_on_top(state);
}

/// The base picture anew: background, then the chart where there is room for one.
int draw_base(GrapherState& state, int status, bool with_chart) {
    state.shown.forget();
    state.surface->set_border_style(state.properties.border_style);
    if (status == 0 && with_chart && !state.layout.valid) status = -1;
    if (status == 0 && with_chart)
        draw_chart_on_base(state);
    else
        open_base(state);
    state.base_kept = status == 0;
    return status;
}

/// Shapes of the overlay may lie across the frame; without any, that of the base picture is on top.
void overlay_on_screen(GrapherState& state) {
    replay_overlay(state);
    if (!state.overlay.items().empty() && state.layout.valid && !state.gesture.overlay_suspended)
        frame_on_top(state);
}

void show_surface(GrapherState& state, int status) {
    state.shown.forget();
    DrawingDevice& surface = *state.surface;
    surface.copy_base_to_surface();
    surface.select_layer(DrawingDevice::Layer::surface);
    open_on_screen(state);
    if (status == 0) {
        overlay_on_screen(state);
        if (state.displayed) paint_legend(state, LegendPlace::of_screen);
    }
    surface.present();
}

/// Data, or axes that have been shown without any.
bool has_content(const GrapherState& state) {
    return !state.series.empty() || state.displayed;
}

/// Numbers of another width leave another plot, which wants other ranges; they settle at once or hardly at
/// all, and the scales are equal on the plot that the last layout gives.
void share_scale(GrapherState& state, const PlotRanges& seen, const DrawingDevice& measure) {
    constexpr int most_layouts = 3;
    const PlotRanges own{state.x, state.y};
    ChartLayout& layout = state.layout;
    PlotRanges shown;
    for (int i = 0; i < most_layouts && layout.valid; ++i) {
        shown = with_equal_scales(own, seen, layout.plot);
        const Rect before = layout.plot;
        layout = lay_out(state.properties, shown.x, shown.y, layout.width, layout.height, measure);
        if (layout.plot == before) break;
    }
    if (!layout.valid) return;
    shown = with_equal_scales(own, seen, layout.plot);
    state.x = shown.x;
    state.y = shown.y;
    take_scales(layout, state.x, state.y);
}

int update_on_surface(GrapherState& state, bool take_limits) {
    return update_layout(state, *state.surface, state.surface->width(), state.surface->height(), take_limits);
}

}  // namespace

int update_layout(GrapherState& state, const DrawingDevice& measure, double width, double height,
                  bool take_limits) {
    const ChartProperties& p = state.properties;
    const PlotRanges seen{state.x, state.y};
    if (take_limits) {
        state.x.limits = {p.x.min, p.x.max};
        state.y.limits = {p.y.min, p.y.max};
    }
    state.x.update(p.x, state.series.x_extent(), p.zoom_enabled);
    state.y.update(p.y, state.series.y_extent(), p.zoom_enabled);
    state.layout = lay_out(p, state.x, state.y, width, height, measure);
    if (state.equal_scales && state.layout.valid)
        share_scale(state, p.zoom_enabled ? seen : PlotRanges{state.x, state.y}, measure);
    return state.layout.valid ? 0 : -1;
}

int layout_only(GrapherState& state) {
    if (state.surface == nullptr || state.busy_refresh) return -1;
    const Rect plot = state.layout.plot;
    const std::array<Interval, 2> views{state.x.view, state.y.view};
    const int status = on_surface(state, [&] { return update_on_surface(state, true); });
    const bool same = plot == state.layout.plot && views[0] == state.x.view && views[1] == state.y.view;
    if (!same) state.base_kept = false;
    tell_failures(state);
    return status;
}

int draw_chart(GrapherState& state) {
    if (!state.layout.valid) return -1;
    draw_lower(state);
    draw_upper(state);
    return 0;
}

void frame_on_top(GrapherState& state) {
    if (!state.canvas.capturing()) state.canvas.set_window(state.layout.plot);
    paint_frame(state.properties, state.layout, state.x, state.y, state.canvas);
}

void replay_overlay(GrapherState& state) {
    if (!state.layout.valid || state.gesture.overlay_suspended) return;
    // A captured chart has its plot window from the chart itself.
    if (!state.canvas.capturing()) state.canvas.set_window(state.layout.plot);
    std::vector<Point> points;
    for (const GraphicItem& item : state.overlay.items()) draw_item(state, item, points);
}

int display_chart(GrapherState& state) {
    if (state.surface == nullptr || state.busy_refresh) return -1;
    const int status = on_surface(state, [&] {
        const int laid_out = update_on_surface(state, true);
        if (laid_out == 0 && state.shown.is_of(state)) {
            state.base_kept = true;
            return 0;
        }
        const int drawn = draw_base(state, laid_out, true);
        show_surface(state, drawn);
        if (drawn == 0) state.shown.keep(state);
        return drawn;
    });
    tell_failures(state);
    return status;
}

int draw_current(GrapherState& state) {
    if (state.surface == nullptr || state.busy_refresh) return -1;
    const int status = on_surface(state, [&] { return draw_base(state, state.layout.valid ? 0 : -1, true); });
    tell_failures(state);
    return status;
}

int refresh_graph(GrapherState& state, int mode) {
    if (state.surface == nullptr || state.busy_refresh) return -1;
    const int status = on_surface(state, [&] {
        int drawn = 0;
        if (mode < 1 || !state.base_kept)
            drawn = draw_base(state, update_on_surface(state, false), has_content(state));
        show_surface(state, drawn);
        return drawn;
    });
    tell_failures(state);
    return status;
}

void resize(GrapherState& state) {
    state.base_kept = false;
    if (state.surface == nullptr) return;
    if (!has_content(state))
        show_background(state);
    else
        refresh_graph(state, 0);
}

void hold_place(GrapherState& state, Point transformed, Point at) {
    constexpr double nowhere_else = 0.01;
    if (state.surface == nullptr || state.busy_refresh) return;
    if (on_surface(state, [&] { return update_on_surface(state, false); }) != 0) return;
    const Point now = state.layout.to_surface(state.x, state.y, transformed);
    const Point off{now.x - at.x, now.y - at.y};
    if (std::abs(off.x) > nowhere_else || std::abs(off.y) > nowhere_else) pan_by(state, off.x, off.y);
}

void draw_graphics(GrapherState& state) {
    if (state.surface == nullptr || state.busy_refresh || !state.layout.valid ||
        state.overlay.items().empty())
        return;
    on_surface(state, [&] {
        state.shown.forget();
        state.surface->select_layer(DrawingDevice::Layer::surface);
        open_on_screen(state);
        overlay_on_screen(state);
        state.surface->present();
        return 0;
    });
    tell_failures(state);
}

void show_background(GrapherState& state) {
    if (state.surface == nullptr || state.busy_refresh) return;
    on_surface(state, [&] {
        draw_base(state, 0, false);
        state.base_kept = false;
        state.surface->copy_base_to_surface();
        state.surface->present();
        return 0;
    });
    tell_failures(state);
}

}  // namespace anomalis::chart
