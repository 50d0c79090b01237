#include "chart/qt/painter_device.h"

#include <cmath>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace anomalis::chart {

namespace {

/// A paint device of exactly 96 dots an inch: metrics must not follow the desktop's text scaling.
const QImage& reference_device() {
    static const QImage image = [] {
        QImage made(1, 1, QImage::Format_ARGB32_Premultiplied);
        const int dots_per_metre = static_cast<int>(std::lround(screen_dots_per_inch / 0.0254));
        made.setDotsPerMeterX(dots_per_metre);
        made.setDotsPerMeterY(dots_per_metre);
        return made;
    }();
    return image;
}

QString qt_text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

Qt::PenStyle pen_style(LineStyle style) {
    switch (style) {
        case LineStyle::solid:
            return Qt::SolidLine;
        case LineStyle::dash:
            return Qt::DashLine;
        case LineStyle::dot:
            return Qt::DotLine;
        case LineStyle::dash_dot:
            return Qt::DashDotLine;
        case LineStyle::dash_dot_dot:
            return Qt::DashDotDotLine;
    }
    return Qt::SolidLine;
}

/// The chart font for a target of so many dots an inch: the same shape on all of them, since hinting is off.
QFont made_font(const Font& font, double dots_per_inch) {
    QFont made(QString::fromStdString(font.name));
    made.setPointSizeF(font.drawn_size() * screen_dots_per_inch / dots_per_inch);
    made.setBold(font.bold);
    made.setItalic(font.italic);
    made.setHintingPreference(QFont::PreferNoHinting);
    return made;
}

}  // namespace

const PainterDevice::Typeface& PainterDevice::typeface(const Font& font, double dots_per_inch) const {
    for (const Typeface& known : typefaces_)
        if (known.font == font && known.dots_per_inch == dots_per_inch) return known;
    const QFont made = made_font(font, dots_per_inch);
    return typefaces_.emplace_back(
        Typeface{font, dots_per_inch, made, QFontMetricsF(made, &reference_device())});
}

TextExtent PainterDevice::measure(std::string_view text, const Font& font) const {
    const QFontMetricsF& metrics = typeface(font, screen_dots_per_inch).metrics;
    return {metrics.horizontalAdvance(qt_text(text)) * units_per_screen_pixel,
            metrics.ascent() * units_per_screen_pixel, metrics.descent() * units_per_screen_pixel};
}

PainterDevice::PainterDevice(double width, double height, QPainter* painter)
    : width_(width), height_(height), painter_(nullptr), mapping_(screen_mapping(height)) {
    set_painter(painter);
}

void PainterDevice::set_painter(QPainter* painter) {
    painter_ = painter;
    if (painter_) painter_->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
}

void PainterDevice::set_size(double width, double height) {
    width_ = width;
    height_ = height;
}

Colour PainterDevice::system_colour(int entry) const {
    const QPalette palette = QGuiApplication::palette();
    const QColor colour = palette.color(entry == 0x0F ? QPalette::Button : QPalette::ButtonText);
    return colour_of(colour.red(), colour.green(), colour.blue());
}

QColor PainterDevice::painter_colour(Colour colour) const {
    if (colour < 0) colour = system_colour(colour & 0xFF);
    return QColor(red_of(colour), green_of(colour), blue_of(colour));
}

QPen PainterDevice::painter_pen(const Pen& pen) const {
    QPen made(painter_colour(pen.colour), drawn_width(pen.width) * mapping_.pen_factor, pen_style(pen.style));
    made.setCapStyle(Qt::FlatCap);
    made.setJoinStyle(Qt::BevelJoin);
    return made;
}

void PainterDevice::polyline(std::span<const Point> points, const Pen& pen) {
    if (!painter_ || points.size() < 2) return;
    QPolygonF line;
    line.reserve(static_cast<qsizetype>(points.size()));
    for (const Point& point : points) {
        const Point at = mapping_.to_device(point);
        line.append(QPointF(at.x, at.y));
    }
    painter_->setPen(painter_pen(pen));
    painter_->drawPolyline(line);
}

void PainterDevice::polygon_outline(std::span<const Point> points, const Pen& pen) {
    if (!painter_ || points.size() < 2) return;
    QPolygonF outline;
    for (const Point& point : points) {
        const Point at = mapping_.to_device(point);
        outline.append(QPointF(at.x, at.y));
    }
    painter_->setPen(painter_pen(pen));
    painter_->setBrush(Qt::NoBrush);
    painter_->drawPolygon(outline);
}

void PainterDevice::polygon_fill(std::span<const Point> points, Colour colour) {
    if (!painter_ || points.size() < 3) return;
    QPolygonF area;
    for (const Point& point : points) {
        const Point at = mapping_.to_device(point);
        area.append(QPointF(at.x, at.y));
    }
    painter_->setPen(Qt::NoPen);
    painter_->setBrush(painter_colour(colour));
    painter_->drawPolygon(area, Qt::OddEvenFill);
}

void PainterDevice::text(Point anchor, double angle, std::string_view text, const Font& font, Colour colour) {
    if (!painter_ || text.empty()) return;
    const Point at = mapping_.to_device(anchor);
    const double scale = mapping_.device_scale * units_per_screen_pixel;
    const double descent = typeface(font, screen_dots_per_inch).metrics.descent();
    const QTransform before = painter_->transform();
    painter_->translate(at.x, at.y);
    if (const double turn = mapping_.device_angle(angle); turn != 0) painter_->rotate(-turn);
    if (scale != 1.0) painter_->scale(scale, scale);
    painter_->setFont(typeface(font, painter_->device()->logicalDpiY()).made);
    painter_->setPen(painter_colour(colour));
    painter_->drawText(QPointF(0, -descent), qt_text(text));
    painter_->setTransform(before);
}

}  // namespace anomalis::chart
