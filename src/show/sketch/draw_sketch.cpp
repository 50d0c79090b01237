#include "show/sketch/draw_sketch.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "chart/drawing_device.h"

namespace anomalis::show {

namespace {

constexpr double sketch_pixel = 15;  // surface units
constexpr double head_length = 7 * sketch_pixel, head_half = 2.6 * sketch_pixel;
constexpr double reference_radius = 3 * sketch_pixel;

class SketchPainter {
  public:
    SketchPainter(const ParameterSketch& sketch, const SketchColours& colours, chart::DrawingDevice& device)
        : sketch_(sketch), colours_(colours), device_(device) {
        font_.bold = false;
        scale_ = std::min(device.width() / sketch.frame.width(), device.height() / sketch.frame.height());
        left_ = (device.width() - scale_ * sketch.frame.width()) / 2;
        bottom_ = (device.height() - scale_ * sketch.frame.height()) / 2;
    }

    void paint() {
        for (const SketchPoints& outline : sketch_.bodies)
            device_.polygon_fill(placed(outline), colours_.body);
        for (const SketchPoints& outline : sketch_.bodies)
            device_.polygon_outline(placed(outline), {colours_.ink, 1});
        for (const SketchPoints& outline : sketch_.grown)
            device_.polyline(placed(outline), pen_of(SketchLine::Role::grown));
        for (const SketchLine& line : sketch_.lines) paint(line);
        if (sketch_.reference) paint_reference(place(*sketch_.reference));
        for (const SketchText& text : sketch_.texts) paint(text);
    }

  private:
    chart::Point place(chart::Point at) const {
        return {left_ + scale_ * (at.x - sketch_.frame.x_low),
                bottom_ + scale_ * (at.y - sketch_.frame.y_low)};
    }

    SketchPoints placed(const SketchPoints& points) const {
        SketchPoints result;
        for (const chart::Point& point : points) result.push_back(place(point));
        return result;
    }

    chart::Pen pen_of(SketchLine::Role role) const {
        switch (role) {
            case SketchLine::Role::grown:
                return {colours_.accent, 1, chart::LineStyle::dash};
            case SketchLine::Role::measure:
                return {colours_.accent, 2};
            case SketchLine::Role::lead:
                return {colours_.quiet, 1};
            case SketchLine::Role::ground:
                return {colours_.ground, 2};
            case SketchLine::Role::line:
                return {colours_.quiet, 1, chart::LineStyle::dash_dot};
        }
        return {};
    }

    void paint(const SketchLine& line) {
        const chart::Pen pen = pen_of(line.role);
        SketchPoints points = placed(line.points);
        const std::size_t last = points.size() - 1;
        // The line ends inside its head, lest its flat end shows beyond the tip.
        const chart::Point first_tip = points.front(), last_tip = points[last];
        if (line.arrow_at_first) shorten(points.front(), points[1]);
        if (line.arrow_at_last) shorten(points[last], points[last - 1]);
        device_.polyline(points, pen);
        if (line.arrow_at_first) paint_head(first_tip, tail_of(points, first_tip, true), pen.colour);
        if (line.arrow_at_last) paint_head(last_tip, tail_of(points, last_tip, false), pen.colour);
    }

    static void shorten(chart::Point& end, chart::Point before) {
        const double length = std::hypot(end.x - before.x, end.y - before.y);
        const double take = std::min(head_length * 0.6, length * 0.9);
        if (length <= 0) return;
        end = {end.x + (before.x - end.x) * take / length, end.y + (before.y - end.y) * take / length};
    }

    /// The nearest point of the line that stands a head's length off its tip: where an arc comes from.
    static chart::Point tail_of(const SketchPoints& points, chart::Point tip, bool from_first) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const chart::Point at = points[from_first ? i : points.size() - 1 - i];
            if (std::hypot(at.x - tip.x, at.y - tip.y) >= head_length) return at;
        }
        return from_first ? points.back() : points.front();
    }

    void paint_head(chart::Point tip, chart::Point from, chart::Colour colour) {
        const double length = std::hypot(tip.x - from.x, tip.y - from.y);
        if (length <= 0) return;
        const double x = (tip.x - from.x) / length, y = (tip.y - from.y) / length;
        const chart::Point base{tip.x - head_length * x, tip.y - head_length * y};
        const std::array<chart::Point, 3> head{tip,
                                               {base.x - head_half * y, base.y + head_half * x},
                                               {base.x + head_half * y, base.y - head_half * x}};
        device_.polygon_fill(head, colour);
    }

    void paint_reference(chart::Point at) {
        SketchPoints dot;
        constexpr int corners = 16;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2 * 3.14159265358979 * i / corners;
            dot.push_back(
                {at.x + reference_radius * std::cos(angle), at.y + reference_radius * std::sin(angle)});
        }
        device_.polygon_fill(dot, colours_.ink);
    }

    void paint(const SketchText& text) {
        const chart::TextExtent extent = device_.measure(text.text, font_);
        chart::Point at = place(text.at);
        if (text.side == SketchText::Side::left) at.x -= extent.width;
        if (text.side == SketchText::Side::middle) at.x -= extent.width / 2;
        at.x = std::clamp(at.x, sketch_pixel,
                          std::max(sketch_pixel, device_.width() - sketch_pixel - extent.width));
        at.y -= extent.height() / 2;
        device_.text(at, 0, text.text, font_, text.quiet ? colours_.quiet : colours_.ink);
    }

    const ParameterSketch& sketch_;
    const SketchColours& colours_;
    chart::DrawingDevice& device_;
    chart::Font font_;
    double scale_ = 1, left_ = 0, bottom_ = 0;
};

}  // namespace

void draw_sketch(const ParameterSketch& sketch, const SketchColours& colours, chart::DrawingDevice& device) {
    SketchPainter(sketch, colours, device).paint();
}

}  // namespace anomalis::show
