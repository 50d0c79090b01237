#include "chart/qt/stamps.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QPainter>

namespace anomalis::chart {

namespace {

constexpr auto pixel_size = static_cast<qsizetype>(sizeof(std::uint32_t));

QColor colour_on_paper(Colour colour) {
    return QColor(red_of(colour), green_of(colour), blue_of(colour));
}

double reach_of(const MarkerShape& shape) {
    double reach = 0.0;
    const auto take = [&](Point p) { reach = std::max({reach, std::abs(p.x), std::abs(p.y)}); };
    for (const MarkerShape::Stroke& stroke : shape.strokes) {
        take(stroke.from);
        take(stroke.to);
    }
    for (const Point& corner : shape.outline) take(corner);
    return reach;
}

void fill_polygon(QImage& image, std::span<const Point> corners, const QColor& colour) {
    QPolygonF area;
    for (const Point& p : corners) area.append(QPointF(p.x, p.y));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(area, Qt::OddEvenFill);
}

}  // namespace

Raster raster_of(QImage& image) {
    return {reinterpret_cast<std::uint32_t*>(image.bits()), image.width(), image.height(),
            image.bytesPerLine() / pixel_size};
}

Stamp::Stamp(const MarkerShape& shape, double scale, double width, SharpPainter& painter)
    : strokes_(shape.strokes.begin(), shape.strokes.end()),
      outline_(shape.outline.begin(), shape.outline.end()),
      filled_(shape.filled),
      fill_(shape.fill),
      pen_(shape.pen),
      width_(width),
      even_(SharpPainter::whole_width(width) % 2 == 0) {
    draw(shape, scale, painter);
}

bool Stamp::is_of(const MarkerShape& shape, double width) const {
    return pen_ == shape.pen && width_ == width && filled_ == shape.filled && fill_ == shape.fill &&
           std::equal(outline_.begin(), outline_.end(), shape.outline.begin(), shape.outline.end()) &&
           std::equal(strokes_.begin(), strokes_.end(), shape.strokes.begin(), shape.strokes.end());
}

void Stamp::draw(const MarkerShape& shape, double scale, SharpPainter& painter) {
    middle_ = static_cast<int>(std::ceil(reach_of(shape) * scale + width_)) + 2;
    const int side = 2 * middle_ + 1;
    const double middle = middle_ + (even_ ? 0.0 : 0.5);
    const auto place = [&](Point p, bool whole) {
        const double x = p.x * scale, y = -p.y * scale;
        return whole ? Point{middle + std::round(x), middle + std::round(y)} : Point{middle + x, middle + y};
    };
    image_ = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
    image_.fill(Qt::transparent);
    const bool whole = SharpPainter::is_along_axes(shape.outline);
    std::vector<Point> corners;
    for (const Point& p : shape.outline) corners.push_back(place(p, whole));
    if (shape.filled && corners.size() > 2)
        fill_polygon(image_, corners,
                     colour_on_paper(shape.fill == no_colour ? shape.pen.colour : shape.fill));
    painter.open(raster_of(image_));
    for (const MarkerShape::Stroke& stroke : shape.strokes) {
        const std::array<Point, 2> ends{stroke.from, stroke.to};
        const bool straight = SharpPainter::is_along_axes(ends);
        const std::array<Point, 2> line{place(stroke.from, straight), place(stroke.to, straight)};
        painter.line(line, false, width_, shape.pen.style, shape.pen.colour);
    }
    if (corners.size() > 1 && shape.pen.colour != no_colour)
        painter.line(corners, true, width_, shape.pen.style, shape.pen.colour);
}

Raster Stamp::raster() const {
    auto* pixels = reinterpret_cast<const std::uint32_t*>(image_.constBits());
    return {const_cast<std::uint32_t*>(pixels), image_.width(), image_.height(),
            image_.bytesPerLine() / pixel_size};
}

std::pair<int, int> Stamp::first_pixel(Point anchor) const {
    const auto pixel = [&](double at) {
        constexpr double farthest = 1e6;
        return static_cast<int>(std::clamp(std::floor(even_ ? at + 0.5 : at), -farthest, farthest)) - middle_;
    };
    return {pixel(anchor.x), pixel(anchor.y)};
}

const Stamp& Stamps::of(const MarkerShape& shape, double scale, double width) {
    constexpr std::size_t most_stamps = 256;
    if (scale != scale_ || stamps_.size() >= most_stamps) stamps_.clear();
    scale_ = scale;
    for (const Stamp& stamp : stamps_)
        if (stamp.is_of(shape, width)) return stamp;
    return stamps_.emplace_back(shape, scale, width, painter_);
}

}  // namespace anomalis::chart
