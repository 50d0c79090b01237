#include "chart/detail/canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <numbers>

#include "chart/detail/clip.h"
#include "chart/detail/marker_shapes.h"

namespace anomalis::chart {

namespace {

constexpr Rect unbounded{-100000.0, 100000.0, -100000.0, 100000.0};
constexpr double degree = std::numbers::pi / 180.0;

bool all_inside(const Rect& window, std::span<const Point> points) {
    return std::all_of(points.begin(), points.end(), [&](Point p) { return window.contains(p); });
}

/// How far from the origin anything is drawn: a title may begin beside its surface.
constexpr double reach = 2.0 * largest_surface;

bool in_reach(Point p) {
    return std::abs(p.x) <= reach && std::abs(p.y) <= reach;
}

/// A window as far as drawing reaches; empty when it has no numbers.
Rect within_reach(const Rect& window) {
    const auto low = [](double v) {
        return v > -reach ? std::min(v, reach) : std::isnan(v) ? reach : -reach;
    };
    const auto high = [](double v) {
        return v < reach ? std::max(v, -reach) : std::isnan(v) ? -reach : reach;
    };
    return {low(window.x_low), high(window.x_high), low(window.y_low), high(window.y_high)};
}

/// As much of a text as could be read on the longest surface, cut between characters.
std::string_view readable(std::string_view words) {
    constexpr std::size_t longest_text = 4096;
    if (words.size() <= longest_text) return words;
    std::size_t end = longest_text;
    while (end > 0 && (static_cast<unsigned char>(words[end]) & 0xC0U) == 0x80U) --end;
    return words.substr(0, end);
}

bool same_place(Point a, Point b) {
    return a.x == b.x && a.y == b.y;
}

}  // namespace

template <class Work>
void Canvas::guarded(const char* prefix, Work&& work) {
    try {
        work();
    } catch (const std::exception& failure) {
        notes_.add(std::string(prefix) + failure.what());
    }
}

void Canvas::open(DrawingDevice& device, Fonts fonts, const std::optional<ScreenPalette>& palette) {
    device_ = &device;
    fonts_ = fonts;
    palette_ = palette;
    window_ = unbounded;
}

Colour Canvas::shown(Colour colour) const {
    if (colour < no_colour) return device_->system_colour(colour & 0xFF);
    return palette_ ? shown_ink(*palette_, colour) : colour;
}

/// What has no outline of its own (a bar, a dot, a band) is shown as its pen would be.
Colour Canvas::filled(Colour fill, Colour pen) const {
    if (!palette_ || fill < 0 || pen == fill || pen == no_colour) return shown(fill);
    return shown_fill(*palette_, fill);
}

Pen Canvas::resolved(const Pen& pen) const {
    return {shown(pen.colour), drawn_width(pen.width), pen.style};
}

GraphicItem& Canvas::captured(ItemKind kind) {
    captured_->emplace_back();
    captured_->back().kind = kind;
    return captured_->back();
}

void Canvas::set_window(const Rect& window) {
    window_ = within_reach(window);
    if (!capturing()) return;
    GraphicItem& item = captured(ItemKind::window);
    item.x1 = window.x_low;
    item.y1 = window.y_low;
    item.x2 = window.x_high;
    item.y2 = window.y_high;
}

void Canvas::line(Point a, Point b, const Pen& pen) {
    const std::array<Point, 2> points{a, b};
    polyline(points, pen);
}

void Canvas::polyline(std::span<const Point> points, const Pen& pen) {
    guarded("Line error: ", [&] {
        if (thins()) points = path_.thin(points, window_, device_->pixel_size());
        if (!capturing() && points.size() > 1 && all_inside(window_, points))
            device_->polyline(points, resolved(pen));
        else
            draw_pieces(points, false, pen);
    });
}

/// Cuts segment by segment; what hangs together goes to the device as one piece. A captured line is an item a
/// segment.
void Canvas::draw_pieces(std::span<const Point> points, bool closed, const Pen& pen) {
    piece_.clear();
    const std::size_t segments = closed ? points.size() : points.size() - (points.empty() ? 0 : 1);
    for (std::size_t i = 0; i < segments; ++i) {
        Point a = points[i];
        Point b = points[i + 1 == points.size() ? 0 : i + 1];
        if (!clip_segment(window_, a, b)) {
            flush_piece(pen);
            continue;
        }
        if (piece_.empty() || !same_place(piece_.back(), a)) {
            flush_piece(pen);
            piece_.push_back(a);
        }
        piece_.push_back(b);
    }
    flush_piece(pen);
}

void Canvas::flush_piece(const Pen& pen) {
    if (piece_.size() > 1 && capturing()) {
        for (std::size_t i = 0; i + 1 < piece_.size(); ++i) {
            GraphicItem& item = captured(ItemKind::line);
            item.x1 = piece_[i].x;
            item.y1 = piece_[i].y;
            item.x2 = piece_[i + 1].x;
            item.y2 = piece_[i + 1].y;
            item.colour = pen.colour;
            item.width = static_cast<std::int32_t>(std::lround(pen.width));
            item.reserved = static_cast<std::int32_t>(pen.style);
        }
    } else if (piece_.size() > 1) {
        device_->polyline(piece_, resolved(pen));
    }
    piece_.clear();
}

void Canvas::strokes(std::span<const MarkerShape::Stroke> pieces, const Pen& pen) {
    if (!pieces.empty()) guarded("Line error: ", [&] { device_->strokes(pieces, resolved(pen)); });
}

void Canvas::polygon(std::span<const Point> points, Colour pen, Colour fill, double width) {
    if (capturing()) {
        GraphicItem& item = captured(ItemKind::polygon);
        item.pen_colour = pen;
        item.fill_colour = fill;
        item.width = static_cast<std::int32_t>(std::lround(width));
        for (const Point& p : points) {
            item.xs.push_back(p.x);
            item.ys.push_back(p.y);
        }
        return;
    }
    draw_polygon(points, pen, fill, width);
}

void Canvas::draw_polygon(std::span<const Point> points, Colour pen, Colour fill, double width) {
    if (thins()) points = path_.thin(points, window_, device_->pixel_size());
    guarded("Polygon error: ", [&] {
        if (fill == no_colour) return;
        clip_polygon(window_, points, cut_, scratch_);
        if (!cut_.empty()) device_->polygon_fill(cut_, filled(fill, pen));
    });
    guarded("Polyline error: ", [&] {
        if (pen == no_colour) return;
        const Pen outline = resolved(Pen{pen, width, LineStyle::solid});
        if (points.size() > 2 && all_inside(window_, points))
            device_->polygon_outline(points, outline);
        else
            draw_pieces(points, true, outline);
    });
}

void Canvas::rectangle(const Rect& rect, Colour pen, Colour fill, double width) {
    if (capturing()) {
        GraphicItem& item = captured(ItemKind::rectangle);
        item.x1 = rect.x_low;
        item.y1 = rect.y_low;
        item.x2 = rect.x_high;
        item.y2 = rect.y_high;
        item.pen_colour = pen;
        item.fill_colour = fill;
        item.width = static_cast<std::int32_t>(std::lround(width));
        return;
    }
    const std::array<Point, 4> corners{Point{rect.x_low, rect.y_low}, Point{rect.x_high, rect.y_low},
                                       Point{rect.x_high, rect.y_high}, Point{rect.x_low, rect.y_high}};
    draw_polygon(corners, pen, fill, width);
}

void Canvas::swatch(const Rect& rect, Colour fill) {
    if (capturing() || !palette_) return rectangle(rect, no_colour, fill, 1.0);
    const std::array<Point, 4> corners{Point{rect.x_low, rect.y_low}, Point{rect.x_high, rect.y_low},
                                       Point{rect.x_high, rect.y_high}, Point{rect.x_low, rect.y_high}};
    guarded("Polygon error: ", [&] {
        clip_polygon(window_, corners, cut_, scratch_);
        if (!cut_.empty()) device_->polygon_fill(cut_, shown_fill(*palette_, fill));
    });
}

void Canvas::markers(int style, double radius, Colour colour, double width, std::span<const Point> anchors) {
    if (anchors.empty() || style == 0) return;
    if (capturing()) {
        for (const Point& p : anchors) {
            GraphicItem& item = captured(ItemKind::marker);
            item.x1 = p.x;
            item.y1 = p.y;
            item.colour = colour;
            item.marker = style;
            item.marker_size = static_cast<std::int32_t>(std::lround(radius));
            item.width = static_cast<std::int32_t>(std::lround(width));
        }
        return;
    }
    if (is_letter_marker(style)) {
        const char letter = marker_letter(style);
        radius = std::clamp(radius, 0.0, largest_marker);
        for (const Point& p : anchors)
            placed_text({p.x - 2.0 * radius, p.y + 1.5 * radius}, 0.0, {&letter, 1}, FontRole::chart, colour);
        return;
    }
    if (!std::all_of(anchors.begin(), anchors.end(), in_reach)) return;
    const MarkerGeometry geometry(style, radius, shown(colour), width);
    if (!geometry.empty()) guarded("Line error: ", [&] { device_->markers(geometry.shape(), anchors); });
}

void Canvas::marks(MarkerShape shape, std::span<const Point> places) {
    if (capturing()) {
        for (const Point& at : places) capture_mark(shape, at);
        return;
    }
    if (!std::all_of(places.begin(), places.end(), in_reach)) return;
    const Colour outline = shape.pen.colour;
    shape.pen = resolved(shape.pen);
    shape.fill = filled(shape.fill, outline);
    guarded("Line error: ", [&] { device_->markers(shape, places); });
}

void Canvas::capture_mark(const MarkerShape& shape, Point at) {
    const auto moved = [&](Point p) { return Point{p.x + at.x, p.y + at.y}; };
    if (!shape.outline.empty()) {
        std::vector<Point> corners;
        for (const Point& p : shape.outline) corners.push_back(moved(p));
        polygon(corners, shape.pen.colour, shape.filled ? shape.fill : no_colour, shape.pen.width);
    }
    for (const MarkerShape::Stroke& stroke : shape.strokes)
        line(moved(stroke.from), moved(stroke.to), shape.pen);
}

TextExtent Canvas::measure(std::string_view words, FontRole role) {
    TextExtent extent;
    guarded("Font error: ", [&] { extent = device_->measure(words, font(role)); });
    return extent;
}

void Canvas::text(Point at, double angle, double along, double across, std::string_view words, FontRole role,
                  Colour colour) {
    const std::string clean = clean_text(readable(words));
    if (clean.empty()) return;
    const TextExtent extent = measure(clean, role);
    const double right = along * extent.width;
    const double up = across * extent.height();
    const double c = std::cos(angle * degree);
    const double s = std::sin(angle * degree);
    const bool upright = angle == 0.0;
    Point anchor = upright ? Point{at.x + right, at.y + up}
                           : Point{at.x + right * c - up * s, at.y + right * s + up * c};
    placed_text(anchor, angle, clean, role, colour);
}

void Canvas::placed_text(Point anchor, double angle, std::string_view words, FontRole role, Colour colour) {
    if (capturing()) {
        GraphicItem& item = captured(ItemKind::text);
        item.x1 = anchor.x;
        item.y1 = anchor.y;
        item.angle = static_cast<float>(angle);
        item.text = words;
        item.font = role;
        item.colour = colour;
        return;
    }
    if (!in_reach(anchor) || !std::isfinite(angle)) return;
    guarded(angle == 0.0 ? "Font error: " : "Fone error: ",
            [&] { device_->text(anchor, angle, readable(words), font(role), shown(colour)); });
}

std::string Canvas::clean_text(std::string_view words) {
    std::string clean;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto c = static_cast<unsigned char>(words[i]);
        if (c == '\r' && i + 1 < words.size() && words[i + 1] == '\n') continue;
        clean += c < 0x20 || c == 0x7F ? ' ' : words[i];
    }
    return clean;
}

}  // namespace anomalis::chart
