#include "chart/detail/series_painter.h"

#include <algorithm>
#include <cmath>

#include "chart/detail/clip.h"
#include "chart/detail/series_line.h"

namespace anomalis::chart {

namespace {

// The last station may miss the frame by rounding; its marker belongs to the picture.
constexpr double marker_tolerance = 0.5;

bool missing(const SeriesGroup& group, const SeriesData& data, std::size_t i) {
    return is_null(data.y[i]) || is_null(group.x[i]);
}

double bar_base(const PlotFrame& frame, double y, double zero) {
    if (y > 0.0) return frame.y.view.low >= 0.0 ? frame.layout.plot.y_low : zero;
    return frame.y.view.high > 0.0 ? zero : frame.layout.plot.y_high;
}

Rect intersection(const Rect& a, const Rect& b) {
    return {std::max(a.x_low, b.x_low), std::min(a.x_high, b.x_high), std::max(a.y_low, b.y_low),
            std::min(a.y_high, b.y_high)};
}

}  // namespace

Projection projection_of(const PlotFrame& frame) {
    return {frame.x.view.low, frame.y.view.low, frame.layout.x_scale, frame.layout.y_scale,
            frame.layout.plot};
}

void SeriesPainter::plot_lowest(const SeriesTable& table, const PlotFrame& frame, Canvas& canvas) {
    if (!table.empty()) plot_series(table, table.group_count(), table.lowest(), frame, canvas);
}

void SeriesPainter::plot_others(const SeriesTable& table, const PlotFrame& frame, Canvas& canvas) {
    for (int g = table.group_count(); g >= 1; --g)
        for (int s = table.group(g).first; s <= table.group(g).last; ++s)
            if (s != table.lowest()) plot_series(table, g, s, frame, canvas);
}

void SeriesPainter::plot_series(const SeriesTable& table, int number, int series, const PlotFrame& frame,
                                Canvas& canvas) {
    const SeriesGroup& group = table.group(number);
    const SeriesData& data = table.series(series);
    const SeriesOptions& options = table.options(series);
    const SeriesStyle style =
        series_style(data.code, frame.properties.chart_type, frame.properties.plot_points);
    if (style.bars) plot_bars(group, data, options, frame, canvas);
    if (style.line) plot_lines(group, data, options, frame, canvas);
    if (style.markers) plot_markers(group, data, options, frame, canvas);
}

void SeriesPainter::plot_lines(const SeriesGroup& group, const SeriesData& data, const SeriesOptions& options,
                               const PlotFrame& frame, Canvas& canvas) {
    const Projection project = projection_of(frame);
    const double column = canvas.thins() ? canvas.device().pixel_size() : 0.0;
    const SeriesPoints points{group.x, data.y, group.ascending ? &data.extremes : nullptr};
    for (std::size_t i = 0; i < data.y.size(); ++i) {
        if (missing(group, data, i)) continue;
        i = collect_run(points, i, project, column, run_);
        draw_run(options, frame.properties.back_colour, canvas);
    }
}

void SeriesPainter::draw_run(const SeriesOptions& options, Colour ground, Canvas& canvas) {
    if (run_.size() == 1) {
        // A point between two gaps would vanish: it is a dot that is seen, three times as wide as the pen.
        const double half = 1.5 * std::max(options.width, 1) * units_per_screen_pixel;
        const Point p = run_.front();
        if (canvas.window().contains(p, marker_tolerance))
            canvas.rectangle({p.x - half, p.x + half, p.y - half, p.y + half}, no_colour, options.colour,
                             1.0);
        return;
    }
    if (run_.size() > 1) draw_series_line(canvas, run_, options, ground);
}

/// A bar spans from the previous point to this one, so there is none at the first point or after a gap. Bars
/// that share a pixel column of a raster are drawn as one that covers them all.
void SeriesPainter::plot_bars(const SeriesGroup& group, const SeriesData& data, const SeriesOptions& options,
                              const PlotFrame& frame, Canvas& canvas) {
    const Projection project = projection_of(frame);
    const double zero = project(0.0, 0.0).y;
    const double pixel = canvas.thins() ? canvas.device().pixel_size() : 0.0;
    const auto draw = [&](const Rect& bar) {
        const Rect seen = intersection(bar, canvas.window());
        if (seen.x_low <= seen.x_high && seen.y_low <= seen.y_high)
            canvas.rectangle(bar, options.colour, options.colour, options.width);
    };
    bool pending = false;
    Rect waiting;
    for (std::size_t i = 1; i < data.y.size(); ++i) {
        if (missing(group, data, i) || missing(group, data, i - 1)) continue;
        const Point p = project(group.x[i], data.y[i]);
        const double before = project(group.x[i - 1], 0.0).x;
        const double base = bar_base(frame, data.y[i], zero);
        const Rect bar{std::min(before, p.x), std::max(before, p.x), std::min(base, p.y),
                       std::max(base, p.y)};
        if (pending && pixel > 0.0 && std::floor(bar.x_low / pixel) == std::floor(waiting.x_low / pixel) &&
            std::floor(bar.x_high / pixel) == std::floor(waiting.x_low / pixel)) {
            waiting = {std::min(waiting.x_low, bar.x_low), std::max(waiting.x_high, bar.x_high),
                       std::min(waiting.y_low, bar.y_low), std::max(waiting.y_high, bar.y_high)};
            continue;
        }
        if (pending) draw(waiting);
        waiting = bar;
        pending = true;
    }
    if (pending) draw(waiting);
}

void SeriesPainter::plot_markers(const SeriesGroup& group, const SeriesData& data,
                                 const SeriesOptions& options, const PlotFrame& frame, Canvas& canvas) {
    const Projection project = projection_of(frame);
    const double radius = frame.properties.marker_size;
    const bool thinned = canvas.thins();
    if (thinned) marked_.begin(canvas.window(), canvas.device().pixel_size());
    int style = options.marker;
    Colour colour = options.colour;
    anchors_.clear();
    const auto flush = [&] {
        canvas.markers(style, radius, colour, options.width, anchors_);
        anchors_.clear();
    };
    for (std::size_t i = 0; i < data.y.size(); ++i) {
        if (missing(group, data, i)) continue;
        const Point p = project(group.x[i], data.y[i]);
        if (!canvas.window().contains(p, marker_tolerance)) continue;
        const int own_style = data.markers.empty() || data.markers[i] == 0 ? options.marker : data.markers[i];
        const Colour own_colour =
            data.colours.empty() || data.colours[i] < 0 ? options.colour : data.colours[i];
        if (own_style == 0) continue;
        if (own_style != style || own_colour != colour) {
            flush();
            style = own_style;
            colour = own_colour;
            if (thinned) marked_.clear();
        }
        if (thinned && !marked_.insert(p)) continue;
        anchors_.push_back(p);
    }
    flush();
}

}  // namespace anomalis::chart
