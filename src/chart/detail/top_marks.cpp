#include "chart/detail/top_marks.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace anomalis::chart {

namespace {

constexpr int circle_corners = 24;

Point on_surface(const GrapherState& state, const TopPlace& place) {
    const ChartProperties& p = state.properties;
    const Point at = state.layout.to_surface(
        state.x, state.y, {p.x.scale.forward(place.user.x), p.y.scale.forward(place.user.y)});
    return {at.x + place.shift.x, at.y + place.shift.y};
}

void paint_mark(Canvas& canvas, const TopMark& mark, Point at) {
    const double r = std::min(mark.radius, largest_marker);
    std::vector<Point> corners;
    if (mark.shape == MarkShape::square) {
        corners = {{-r, -r}, {r, -r}, {r, r}, {-r, r}};
    } else if (mark.shape == MarkShape::diamond) {
        corners = {{-r, 0.0}, {0.0, r}, {r, 0.0}, {0.0, -r}};
    } else {
        for (int i = 0; i < circle_corners; ++i) {
            const double angle = 2 * std::numbers::pi * i / circle_corners;
            corners.push_back({r * std::cos(angle), r * std::sin(angle)});
        }
    }
    MarkerShape shape;
    shape.radius = r;
    shape.outline = corners;
    shape.filled = mark.fill != no_colour;
    shape.fill = mark.fill;
    shape.pen = {mark.pen, mark.width, LineStyle::solid};
    canvas.mark(shape, at);
}

/// The low end of a box of a size beside `at`: after it, before it where that leaves the plot.
double beside(double at, double gap, double size, double low, double high) {
    const double wanted = at + gap + size <= high ? at + gap : at - gap - size;
    return std::clamp(wanted, low, std::max(low, high - size));
}

}  // namespace

void paint_note(const GrapherState& state, Canvas& canvas, Point at, const TopNote& note) {
    const Rect& plot = state.layout.plot;
    double width = 0, line = 0;
    for (const std::string& words : note.lines) {
        const TextExtent extent = canvas.measure(words, FontRole::chart);
        width = std::max(width, extent.width);
        line = std::max(line, extent.height());
    }
    const double edge = state.layout.text_height / 2;
    const double across = width + 2 * edge;
    const double up = line * static_cast<double>(note.lines.size()) + edge;
    const double left = beside(at.x, note.gap, across, plot.x_low, plot.x_high);
    const double bottom = beside(at.y, note.gap, up, plot.y_low, plot.y_high);
    canvas.rectangle({left, left + across, bottom, bottom + up}, note.pen, note.ground, 1);
    double y = bottom + up - edge / 2;
    for (const std::string& words : note.lines) {
        y -= line;
        canvas.placed_text({left + edge, y}, 0, words, FontRole::chart, note.ink);
    }
}

void paint_top_marks(const GrapherState& state, Canvas& canvas) {
    const TopMarks& top = state.top_marks;
    const Rect& plot = state.layout.plot;
    canvas.set_window(plot);
    for (const TopLine& line : top.lines)
        canvas.line(on_surface(state, line.from), on_surface(state, line.to), line.pen);
    for (const TopMark& mark : top.marks) {
        const Point at = on_surface(state, mark.at);
        if (plot.contains(at, 0.5)) paint_mark(canvas, mark, at);
    }
    if (top.note && !top.note->lines.empty())
        paint_note(state, canvas, on_surface(state, top.note->at), *top.note);
}

}  // namespace anomalis::chart
