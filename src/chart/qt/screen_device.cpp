#include "chart/qt/screen_device.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace anomalis::chart {

namespace {

/// A path of so many pieces is drawn at once; longer ones make the rasteriser sort all of them.
constexpr std::size_t pieces_a_call = 512;

/// Of a wide line, so many points are stroked at once.
constexpr std::size_t points_a_stroke = 64;

/// Where the points of a wide line are nearer than so many pixels, its pieces are drawn by themselves, which
/// is cheaper. Farther apart the pieces would show as beads: their smoothed ends darken each other.
constexpr double densest_stroke = 2.0;

QImage blank(QSize size, double ratio) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

/// Pictures of one size and format: a plain copy, without a detach or a blend.
void copy_pixels(const QImage& from, QImage& to) {
    std::memcpy(to.bits(), from.bits(), static_cast<std::size_t>(from.sizeInBytes()));
}

}  // namespace

ScreenDevice::ScreenDevice(std::function<void()> on_present)
    : PainterDevice(0, 0), on_present_(std::move(on_present)) {}

void ScreenDevice::resize(QSize logical_size, double device_pixel_ratio) {
    if (logical_size == size_ && device_pixel_ratio == ratio_) return;
    release_painter();
    size_ = logical_size;
    ratio_ = device_pixel_ratio;
    const QSize pixels(static_cast<int>(std::ceil(size_.width() * ratio_)),
                       static_cast<int>(std::ceil(size_.height() * ratio_)));
    base_ = blank(pixels, ratio_);
    surface_ = blank(pixels, ratio_);
    lower_ = {};
    touch();
    set_size(size_.width() * units_per_screen_pixel, size_.height() * units_per_screen_pixel);
}

void ScreenDevice::release_painter() {
    set_painter(nullptr);
    if (active_.isActive()) active_.end();
}

void ScreenDevice::select_layer(Layer layer) {
    QImage& target = image(layer);
    if (active_.isActive() && active_.device() == &target) return;
    release_painter();
    if (target.isNull()) return;
    active_.begin(&target);
    set_painter(&active_);
}

void ScreenDevice::clear(Colour colour, int back_style) {
    if (!active_.isActive()) return;
    touch();
    const QColor fill = back_style == 0 ? QColor(Qt::transparent) : painter_colour(colour);
    active_.setCompositionMode(QPainter::CompositionMode_Source);
    active_.fillRect(QRect(QPoint(0, 0), size_), fill);
    active_.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void ScreenDevice::keep_lower() {
    release_painter();
    if (base_.isNull()) return;
    if (lower_.isNull()) lower_ = QImage(base_.size(), base_.format());
    copy_pixels(base_, lower_);
    select_layer(Layer::base);
}

bool ScreenDevice::take_lower() {
    if (lower_.isNull()) return false;
    release_painter();
    touch();
    copy_pixels(lower_, base_);
    select_layer(Layer::base);
    return true;
}

void ScreenDevice::copy_base_to_surface() {
    release_painter();
    if (base_.isNull()) return;
    if (!surface_is_base_) copy_pixels(base_, surface_);
    surface_is_base_ = true;
    select_layer(Layer::surface);
}

void ScreenDevice::present() {
    release_painter();
    if (on_present_) on_present_();
}

QPointF ScreenDevice::to_pixels(Point point) const {
    const Point at = mapping().to_device(point);
    return {at.x, at.y};
}

void ScreenDevice::draw_line(std::span<const Point> points, bool closed, const Pen& pen) {
    if (!painter() || points.size() < 2) return;
    line_.clear();
    bool along_axes = true;
    const auto add = [&](Point point) {
        const QPointF at = to_pixels(point);
        along_axes =
            along_axes && (line_.empty() || at.x() == line_.back().x() || at.y() == line_.back().y());
        line_.push_back(at);
    };
    for (const Point& point : points) add(point);
    if (closed) add(points.front());
    QPen made = painter_pen(pen);
    if (along_axes) return fill_along_axes(made.widthF(), made.color());
    made.setCapStyle(Qt::RoundCap);
    painter()->setPen(made);
    if (made.widthF() * ratio_ <= 1.0) {
        painter()->drawPolyline(line_.data(), static_cast<int>(line_.size()));
    } else if (mean_step() * ratio_ < densest_stroke) {
        draw_in_pieces();
    } else {
        made.setJoinStyle(Qt::RoundJoin);
        painter()->setPen(made);
        draw_in_strokes();
    }
}

double ScreenDevice::mean_step() const {
    double length = 0.0;
    for (std::size_t i = 1; i < line_.size(); ++i)
        length += std::hypot(line_[i].x() - line_[i - 1].x(), line_[i].y() - line_[i - 1].y());
    return length / static_cast<double>(line_.size() - 1);
}

/// A wide line is stroked a stretch at a time: all at once, the rasteriser would take far too long over it.
void ScreenDevice::draw_in_strokes() {
    for (std::size_t first = 0; first + 1 < line_.size(); first += points_a_stroke - 1) {
        const auto count = static_cast<int>(std::min(points_a_stroke, line_.size() - first));
        painter()->drawPolyline(line_.data() + first, count);
    }
}

/// Lines along an axis cover whole pixels, sharp at every scale, and are far cheaper to fill than to stroke.
/// What falls off by the last edge stays in the last pixel.
void ScreenDevice::fill_along_axes(double width, const QColor& colour) {
    const int pen = std::max(1, static_cast<int>(std::lround(width * ratio_)));
    const QImage& target = active_.device() == &base_ ? base_ : surface_;
    const auto first_pixel = [&](double at, int extent) {
        const int pixel =
            static_cast<int>(std::clamp(std::floor(at * ratio_), 0.0, std::max(extent - 1.0, 0.0)));
        return std::max(pixel - pen / 2, 0);
    };
    active_.save();
    active_.setRenderHint(QPainter::Antialiasing, false);
    active_.scale(1 / ratio_, 1 / ratio_);
    for (std::size_t i = 1; i < line_.size(); ++i) {
        const auto [left, right] = std::minmax(
            {first_pixel(line_[i - 1].x(), target.width()), first_pixel(line_[i].x(), target.width())});
        const auto [top, bottom] = std::minmax(
            {first_pixel(line_[i - 1].y(), target.height()), first_pixel(line_[i].y(), target.height())});
        active_.fillRect(QRect(left, top, right - left + pen, bottom - top + pen), colour);
    }
    active_.restore();
}

void ScreenDevice::draw_in_pieces() {
    pieces_.clear();
    for (std::size_t i = 1; i < line_.size(); ++i) pieces_.emplace_back(line_[i - 1], line_[i]);
    for (std::size_t first = 0; first < pieces_.size(); first += pieces_a_call) {
        const auto count = static_cast<int>(std::min(pieces_a_call, pieces_.size() - first));
        painter()->drawLines(pieces_.data() + first, count);
    }
}

void ScreenDevice::polyline(std::span<const Point> points, const Pen& pen) {
    touch();
    if (pen.style != LineStyle::solid) return PainterDevice::polyline(points, pen);
    draw_line(points, false, pen);
}

/// Hundreds of thousands of them are a map: unsmoothed lines of one pixel cost a twentieth of smoothed ones,
/// and a wider one is several side by side.
void ScreenDevice::strokes(std::span<const MarkerShape::Stroke> pieces, const Pen& pen) {
    touch();
    if (!painter() || pieces.empty()) return;
    const int wide = std::max(1, static_cast<int>(std::lround(pen.width * ratio_)));
    active_.save();
    active_.setRenderHint(QPainter::Antialiasing, false);
    active_.setPen(QPen(painter_colour(pen.colour), 0));
    for (int i = 0; i < wide; ++i) {
        const double shift = (i - wide / 2) / ratio_;
        pieces_.clear();
        for (const MarkerShape::Stroke& piece : pieces) {
            const QPointF from = to_pixels(piece.from), to = to_pixels(piece.to);
            const bool along = std::abs(to.x() - from.x()) > std::abs(to.y() - from.y());
            const QPointF aside = along ? QPointF(0, shift) : QPointF(shift, 0);
            pieces_.emplace_back(from + aside, to + aside);
        }
        active_.drawLines(pieces_.data(), static_cast<int>(pieces_.size()));
    }
    active_.restore();
}

void ScreenDevice::polygon_outline(std::span<const Point> points, const Pen& pen) {
    touch();
    if (pen.style != LineStyle::solid) return PainterDevice::polygon_outline(points, pen);
    draw_line(points, true, pen);
}

void ScreenDevice::polygon_fill(std::span<const Point> points, Colour colour) {
    touch();
    PainterDevice::polygon_fill(points, colour);
}

void ScreenDevice::text(Point anchor, double angle, std::string_view words, const Font& font, Colour colour) {
    touch();
    PainterDevice::text(anchor, angle, words, font, colour);
}

/// One marker is drawn as a picture and stamped: thousands of small antialiased shapes cost far more.
void ScreenDevice::markers(const MarkerShape& shape, std::span<const Point> anchors) {
    constexpr std::size_t worth_a_stamp = 8;
    touch();
    if (!painter() || anchors.size() < worth_a_stamp) return PainterDevice::markers(shape, anchors);

    double reach = shape.radius;
    for (const auto& stroke : shape.strokes)
        reach = std::max({reach, std::abs(stroke.from.x), std::abs(stroke.from.y), std::abs(stroke.to.x),
                          std::abs(stroke.to.y)});
    for (const Point& corner : shape.outline)
        reach = std::max({reach, std::abs(corner.x), std::abs(corner.y)});
    const double half_units = reach + (shape.pen.width + 2) * units_per_screen_pixel;
    const int half = static_cast<int>(std::ceil(half_units / pixel_size()));
    const int side = 2 * half + 1;

    QImage stamp(side, side, QImage::Format_ARGB32_Premultiplied);
    stamp.setDevicePixelRatio(ratio_);
    stamp.fill(Qt::transparent);
    {
        QPainter drawing(&stamp);
        const double side_units = side * pixel_size();
        PainterDevice device(side_units, side_units, &drawing);
        SurfaceMapping centred = mapping();
        centred.device_offset_x = centred.device_offset_y = 0.5 * side / ratio_;
        device.set_mapping(centred);
        const Point centre{0, 0};
        device.markers(shape, {&centre, 1});
    }
    for (const Point& anchor : anchors) {
        const QPointF at = to_pixels(anchor);
        const double left = std::floor(at.x() * ratio_) - half;
        const double top = std::floor(at.y() * ratio_) - half;
        painter()->drawImage(QPointF(left / ratio_, top / ratio_), stamp);
    }
}

}  // namespace anomalis::chart
