#include "chart/qt/screen_device.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <numbers>
#include <utility>

namespace anomalis::chart {

namespace {

QImage blank(QSize size, double ratio, const QColor& colour) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(colour);
    return image;
}

/// Pictures of one size and format: a plain copy, without a detach or a blend.
void copy_tiles(const QImage& from, QImage& to, const TileSet& tiles) {
    constexpr std::size_t pixel = sizeof(std::uint32_t);
    tiles.for_each_run([&](PixelRect run) {
        const auto length = static_cast<std::size_t>(run.right - run.left) * pixel;
        for (int y = run.top; y < run.bottom; ++y)
            std::memcpy(to.scanLine(y) + static_cast<std::size_t>(run.left) * pixel,
                        from.constScanLine(y) + static_cast<std::size_t>(run.left) * pixel, length);
    });
}

/// A picture without its scale: a view of the same pixels.
QImage plain_view(const QImage& image) {
    return QImage(image.constBits(), image.width(), image.height(), image.bytesPerLine(), image.format());
}

PixelRect bounds_of(std::span<const Point> pixels) {
    PixelRect bounds{INT_MAX, INT_MAX, INT_MIN, INT_MIN};
    const auto whole = [](double at) { return static_cast<int>(std::clamp(at, -1e6, 1e6)); };
    for (const Point& p : pixels) {
        bounds.left = std::min(bounds.left, whole(std::floor(p.x)) - 1);
        bounds.right = std::max(bounds.right, whole(std::ceil(p.x)) + 1);
        bounds.top = std::min(bounds.top, whole(std::floor(p.y)) - 1);
        bounds.bottom = std::max(bounds.bottom, whole(std::ceil(p.y)) + 1);
    }
    return bounds;
}

PixelRect with_room(PixelRect rect, int room) {
    return {rect.left - room, rect.top - room, rect.right + room, rect.bottom + room};
}

bool is_box(std::span<const Point> corners) {
    if (corners.size() != 4 || !SharpPainter::is_along_axes(corners)) return false;
    return corners[0].x == corners[3].x || corners[0].y == corners[3].y;
}

}  // namespace

ScreenDevice::ScreenDevice(std::function<void()> on_present)
    : PainterDevice(0, 0), on_present_(std::move(on_present)) {}

void ScreenDevice::resize(QSize logical_size, double device_pixel_ratio) {
    if (logical_size == size_ && device_pixel_ratio == ratio_) return;
    settle();
    size_ = logical_size;
    ratio_ = device_pixel_ratio;
    const QSize pixels(static_cast<int>(std::ceil(size_.width() * ratio_)),
                       static_cast<int>(std::ceil(size_.height() * ratio_)));
    for (Sheet& sheet : sheets_) {
        sheet.image = blank(pixels, ratio_, Qt::white);
        sheet.differs.resize(pixels.width(), pixels.height());
        sheet.as_below = false;
    }
    top_ = {};
    top_drawn_.resize(pixels.width(), pixels.height());
    lower_kept_ = as_presented_ = false;
    stamps_.clear();
    set_size(size_.width() * units_per_screen_pixel, size_.height() * units_per_screen_pixel);
}

const QImage& ScreenDevice::content(std::size_t level) const {
    while (level > 0 && sheets_[level].as_below) --level;
    return sheets_[level].image;
}

/// What was drawn since the sheet was made ready is where it, and the one above, now differ from below.
void ScreenDevice::settle() {
    release_painter();
    if (on_top_) {
        top_drawn_.add(sharp_.drawn());
    } else {
        sheets_[current_].differs.add(sharp_.drawn());
        if (current_ + 1 < levels) sheets_[current_ + 1].differs.add(sharp_.drawn());
    }
    sharp_.drawn().clear();
}

void ScreenDevice::release_painter() {
    set_painter(nullptr);
    if (active_.isActive()) active_.end();
}

void ScreenDevice::begin_as_below(std::size_t level) {
    settle();
    as_presented_ = false;
    Sheet& sheet = sheets_[level];
    if (!sheet.as_below && level + 1 < levels) sheets_[level + 1].differs.add(sheet.differs);
    sheet.as_below = true;
}

/// Before anything is drawn. False when there is nothing to draw on.
bool ScreenDevice::make_ready() {
    if (active_.isActive()) return true;
    if (target().isNull()) return false;
    as_presented_ = as_presented_ && on_top_;
    Sheet& sheet = sheets_[current_];
    if (!on_top_ && sheet.as_below) {
        copy_tiles(content(current_ - 1), sheet.image, sheet.differs);
        sheet.differs.clear();
        sheet.as_below = false;
    }
    sharp_.open(raster_of(target()));
    active_.begin(&target());
    set_painter(&active_);
    return true;
}

void ScreenDevice::select_layer(Layer layer) {
    const std::size_t level = layer == Layer::base ? base_level : surface_level;
    if (level == current_ && !on_top_) return;
    settle();
    on_top_ = false;
    current_ = level;
}

void ScreenDevice::clear(Colour colour, int back_style) {
    if (on_top_) return;
    settle();
    as_presented_ = false;
    Sheet& sheet = sheets_[current_];
    sheet.as_below = false;
    if (!make_ready()) return;
    const QColor fill = back_style == 0 ? QColor(Qt::transparent) : painter_colour(colour);
    active_.setCompositionMode(QPainter::CompositionMode_Source);
    // The last row and column of a fractional scale reach beyond the logical size.
    const QPaintDevice& picture = *active_.device();
    active_.fillRect(QRectF(0, 0, picture.width() / ratio_, picture.height() / ratio_), fill);
    active_.setCompositionMode(QPainter::CompositionMode_SourceOver);
    sharp_.drawn().add_all();
}

/// The base becomes the lower picture, and is as below from then on.
void ScreenDevice::keep_lower() {
    settle();
    as_presented_ = false;
    Sheet& lower = sheets_[lower_level];
    Sheet& base = sheets_[base_level];
    if (base.image.isNull()) return;
    if (!base.as_below) {
        lower.image.swap(base.image);
        base.differs.add_all();
        base.as_below = true;
    }
    lower_kept_ = true;
    current_ = base_level;
}

bool ScreenDevice::take_lower() {
    if (!lower_kept_) return false;
    begin_as_below(base_level);
    current_ = base_level;
    return true;
}

void ScreenDevice::copy_base_to_surface() {
    begin_as_below(surface_level);
    current_ = surface_level;
}

void ScreenDevice::present() {
    settle();
    as_presented_ = true;
    if (on_present_) on_present_();
}

void ScreenDevice::begin_top() {
    settle();
    if (top_.isNull() && !sheets_[base_level].image.isNull())
        top_ = blank(sheets_[base_level].image.size(), ratio_, Qt::transparent);
    top_drawn_.for_each_run([&](PixelRect run) {
        for (int y = run.top; y < run.bottom; ++y)
            std::memset(top_.scanLine(y) + run.left * qsizetype{4}, 0,
                        static_cast<std::size_t>(run.right - run.left) * 4);
    });
    top_drawn_.clear();
    on_top_ = true;
}

void ScreenDevice::end_top() {
    settle();
    on_top_ = false;
}

void ScreenDevice::show(QPainter& painter, QPointF origin) const {
    if (content(surface_level).isNull()) return;
    painter.save();
    painter.translate(origin);
    painter.scale(1 / ratio_, 1 / ratio_);
    painter.drawImage(QPoint(0, 0), plain_view(content(surface_level)));
    const QImage top = plain_view(top_);
    top_drawn_.for_each_run([&](PixelRect run) {
        painter.drawImage(QPoint(run.left, run.top), top,
                          QRect(run.left, run.top, run.right - run.left, run.bottom - run.top));
    });
    painter.restore();
}

Point ScreenDevice::to_pixels(Point point) const {
    const Point at = mapping().to_device(point);
    return {at.x * ratio_, at.y * ratio_};
}

std::span<const Point> ScreenDevice::pixels_of(std::span<const Point> points) {
    pixels_.clear();
    for (const Point& point : points) pixels_.push_back(to_pixels(point));
    return pixels_;
}

void ScreenDevice::polyline(std::span<const Point> points, const Pen& pen) {
    if (points.size() < 2 || !make_ready()) return;
    sharp_.line(pixels_of(points), false, pen_pixels(pen), pen.style, pen.colour);
}

void ScreenDevice::polygon_outline(std::span<const Point> points, const Pen& pen) {
    if (points.size() < 2 || !make_ready()) return;
    sharp_.line(pixels_of(points), true, pen_pixels(pen), pen.style, pen.colour);
}

/// Hundreds of thousands of them are a map: unsmoothed lines of one pixel cost a twentieth of smoothed ones,
/// and a wider one is several side by side.
void ScreenDevice::strokes(std::span<const MarkerShape::Stroke> pieces, const Pen& pen) {
    if (pieces.empty() || !make_ready()) return;
    const int wide = SharpPainter::whole_width(pen.width * ratio_);
    active_.save();
    active_.setRenderHint(QPainter::Antialiasing, false);
    active_.setPen(QPen(painter_colour(pen.colour), 0));
    const int middle = wide / 2;
    for (int i = 0; i < wide; ++i) {
        const double shift = (i - middle) / ratio_;
        pieces_.clear();
        for (const MarkerShape::Stroke& piece : pieces) {
            const Point from = mapping().to_device(piece.from), to = mapping().to_device(piece.to);
            const bool along = std::abs(to.x - from.x) > std::abs(to.y - from.y);
            const QPointF aside = along ? QPointF(0, shift) : QPointF(shift, 0);
            pieces_.emplace_back(QPointF(from.x, from.y) + aside, QPointF(to.x, to.y) + aside);
        }
        active_.drawLines(pieces_.data(), static_cast<int>(pieces_.size()));
    }
    active_.restore();
    for (const MarkerShape::Stroke& piece : pieces) {
        const std::array<Point, 2> ends{to_pixels(piece.from), to_pixels(piece.to)};
        sharp_.drawn().add(with_room(bounds_of(ends), wide));
    }
}

void ScreenDevice::polygon_fill(std::span<const Point> points, Colour colour) {
    if (points.size() < 3 || !make_ready()) return;
    const std::span<const Point> corners = pixels_of(points);
    if (is_box(corners)) return sharp_.fill_box(corners[0], corners[2], colour);
    PainterDevice::polygon_fill(points, colour);
    sharp_.drawn().add(bounds_of(corners));
}

void ScreenDevice::text(Point anchor, double angle, std::string_view words, const Font& font, Colour colour) {
    if (words.empty() || !make_ready()) return;
    PainterDevice::text(anchor, angle, words, font, colour);
    // Slanted and accented letters leave the box that is measured, by less than its height.
    const TextExtent extent = measure(words, font);
    const double scale = mapping().device_scale * ratio_;
    const double radians = mapping().device_angle(angle) * std::numbers::pi / 180.0;
    const Point at = to_pixels(anchor);
    const auto corner = [&](double along, double up) {
        const double c = std::cos(radians) * scale, s = std::sin(radians) * scale;
        return Point{at.x + along * c - up * s, at.y - along * s - up * c};
    };
    const std::array<Point, 4> box{corner(0, 0), corner(extent.width, 0),
                                   corner(extent.width, extent.height()), corner(0, extent.height())};
    sharp_.drawn().add(with_room(bounds_of(box), static_cast<int>(std::ceil(extent.height() * scale))));
}

/// Thousands of small smoothed shapes would cost far more than their stamps.
void ScreenDevice::markers(const MarkerShape& shape, std::span<const Point> anchors) {
    if (anchors.empty() || !make_ready()) return;
    const Stamp& stamp = stamps_.of(shape, mapping().device_scale * ratio_, pen_pixels(shape.pen));
    for (const Point& anchor : anchors) {
        const auto [left, top] = stamp.first_pixel(to_pixels(anchor));
        sharp_.stamp(stamp.raster(), left, top);
    }
}

}  // namespace anomalis::chart
