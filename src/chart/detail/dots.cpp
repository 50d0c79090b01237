#include "chart/detail/dots.h"

#include <array>
#include <cmath>
#include <numbers>

namespace anomalis::chart {

namespace {

constexpr double small_dot = 4 * units_per_screen_pixel;

bool same_look(const ChartDot& a, const ChartDot& b) {
    return a.radius == b.radius && a.fill == b.fill && a.edge == b.edge && a.hole == b.hole &&
           a.shape == b.shape;
}

void circle(double radius, std::vector<Point>& outline) {
    const int corners = radius < small_dot ? 16 : 24;
    outline.clear();
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        outline.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
}

/// As large to the eye as the circle of this radius.
void square(double radius, std::vector<Point>& outline) {
    const double half = radius * std::sqrt(std::numbers::pi) / 2;
    outline = {{-half, -half}, {half, -half}, {half, half}, {-half, half}};
}

}  // namespace

void DotTable::register_dots(std::span<const ChartDot> dots, const ChartProperties& properties) {
    std::vector<ChartDot> given;
    given.reserve(dots.size());
    for (ChartDot dot : dots) {
        dot.x = forward_or_null(properties.x.scale, dot.x, null_value);
        dot.y = forward_or_null(properties.y.scale, dot.y, null_value);
        if (!is_null(dot.x) && !is_null(dot.y) && dot.radius > 0) given.push_back(dot);
    }
    dots_ = std::move(given);
    ++revision_;
}

void DotTable::clear() {
    if (dots_.empty()) return;
    dots_.clear();
    ++revision_;
}

void DotPainter::paint(const DotTable& table, const PlotFrame& frame, Canvas& canvas) {
    const Projection project = projection_of(frame);
    const ChartDot* look = nullptr;
    run_.clear();
    for (const ChartDot& dot : table.dots()) {
        const Point at = project(dot.x, dot.y);
        if (!canvas.window().contains(at)) continue;
        // A hole belongs to its own dot: one that lies on another shows nothing of it.
        if (look && (dot.hole > 0 || !same_look(*look, dot))) flush(*look, canvas);
        look = &dot;
        run_.push_back(at);
    }
    if (look) flush(*look, canvas);
}

void DotPainter::flush(const ChartDot& look, Canvas& canvas) {
    if (run_.empty()) return;
    MarkerShape shape;
    shape.radius = look.radius;
    shape.pen = {look.edge, 1.0};
    if (look.shape == DotShape::cross) {
        const double r = look.radius * std::numbers::sqrt2 / 2;
        const std::array strokes{MarkerShape::Stroke{{-r, -r}, {r, r}},
                                 MarkerShape::Stroke{{-r, r}, {r, -r}}};
        shape.strokes = strokes;
        shape.pen = {look.fill, 2.0};
        canvas.marks(shape, run_);
        return run_.clear();
    }
    const auto draw = [&](double radius, Colour fill) {
        look.shape == DotShape::square ? square(radius, outline_) : circle(radius, outline_);
        shape.radius = radius;
        shape.outline = outline_;
        shape.filled = true;
        shape.fill = fill;
        canvas.marks(shape, run_);
    };
    draw(look.radius, look.fill);
    shape.pen.colour = no_colour;
    if (look.hole > 0) draw(look.hole * look.radius, white);
    run_.clear();
}

}  // namespace anomalis::chart
