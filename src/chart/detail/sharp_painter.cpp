#include "chart/detail/sharp_painter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "chart/detail/dashes.h"

namespace anomalis::chart {

namespace {

constexpr std::uint32_t two_channels = 0x00FF00FF;
constexpr std::uint32_t opaque = 0xFF000000;

/// Two channels of a pixel times a share of 255, rounded.
std::uint32_t scaled(std::uint32_t channels, std::uint32_t share) {
    const std::uint32_t product = (channels & two_channels) * share + 0x00800080;
    return ((product + ((product >> 8) & two_channels)) >> 8) & two_channels;
}

std::uint32_t scaled_pixel(std::uint32_t pixel, std::uint32_t share) {
    return scaled(pixel, share) | scaled(pixel >> 8, share) << 8;
}

/// `upper` laid on `lower`, both premultiplied.
std::uint32_t laid_on(std::uint32_t upper, std::uint32_t lower) {
    return upper + scaled_pixel(lower, 255 - (upper >> 24));
}

/// Most stretches of a mask are empty: eight pixels are passed at once.
void blend_row(std::uint32_t* pixels, std::span<const std::uint8_t> cover, std::uint32_t pixel) {
    constexpr std::size_t word = sizeof(std::uint64_t);
    for (std::size_t i = 0; i < cover.size();) {
        std::uint64_t eight = 0;
        if (i + word <= cover.size()) {
            std::memcpy(&eight, cover.data() + i, word);
            if (eight == 0) {
                i += word;
                continue;
            }
        }
        for (const std::size_t end = std::min(i + word, cover.size()); i < end; ++i) {
            if (cover[i] == 255)
                pixels[i] = pixel;
            else if (cover[i] != 0)
                pixels[i] = laid_on(scaled_pixel(pixel, cover[i]), pixels[i]);
        }
    }
}

/// The pixel that holds a place, moved into the picture.
int pixel_of(double at, int extent) {
    return static_cast<int>(std::clamp(std::floor(at), 0.0, std::max(extent - 1.0, 0.0)));
}

}  // namespace

std::uint32_t opaque_pixel(Colour colour) {
    const auto byte = [](int value) { return static_cast<std::uint32_t>(value); };
    return opaque | byte(red_of(colour)) << 16 | byte(green_of(colour)) << 8 | byte(blue_of(colour));
}

void SharpPainter::open(const Raster& raster) {
    if (raster.width != raster_.width || raster.height != raster_.height) {
        drawn_.resize(raster.width, raster.height);
        mask_.resize(raster.width, raster.height);
    }
    drawn_.clear();
    raster_ = raster;
}

bool SharpPainter::is_along_axes(std::span<const Point> points) {
    for (std::size_t i = 1; i < points.size(); ++i)
        if (points[i].x != points[i - 1].x && points[i].y != points[i - 1].y) return false;
    return true;
}

int SharpPainter::whole_width(double width) {
    return std::max(1, static_cast<int>(std::lround(width)));
}

void SharpPainter::line(std::span<const Point> points, bool closed, double width, LineStyle style,
                        Colour colour) {
    if (raster_.pixels == nullptr || points.size() < 2) return;
    const std::uint32_t pixel = opaque_pixel(colour);
    line_.assign(points.begin(), points.end());
    if (closed) line_.push_back(points.front());
    if (is_along_axes(line_)) return line_along_axes(whole_width(width), style, pixel);
    if (style == LineStyle::solid)
        mask_.add(line_, width);
    else
        DashCutter(style, width, width / 2.0).cut(line_, [&](std::span<const Point> dash) {
            mask_.add(dash, width);
        });
    blend_mask(pixel);
}

void SharpPainter::blend_mask(std::uint32_t pixel) {
    drawn_.add(mask_.tiles());
    mask_.take([&](int left, int y, std::span<const std::uint8_t> cover) {
        blend_row(raster_.row(y) + left, cover, pixel);
    });
}

/// The pixels of a line of so many pixels between two places that share a row or a column.
PixelRect SharpPainter::cells(Point a, Point b, int pen) const {
    const auto first = [&](double at, int extent) { return std::max(pixel_of(at, extent) - pen / 2, 0); };
    const auto [left, right] = std::minmax({first(a.x, raster_.width), first(b.x, raster_.width)});
    const auto [top, bottom] = std::minmax({first(a.y, raster_.height), first(b.y, raster_.height)});
    return {left, top, right + pen, bottom + pen};
}

void SharpPainter::fill(PixelRect pixels, std::uint32_t pixel) {
    pixels = {std::max(pixels.left, 0), std::max(pixels.top, 0), std::min(pixels.right, raster_.width),
              std::min(pixels.bottom, raster_.height)};
    if (pixels.empty()) return;
    drawn_.add(pixels);
    for (int y = pixels.top; y < pixels.bottom; ++y)
        std::fill(raster_.row(y) + pixels.left, raster_.row(y) + pixels.right, pixel);
}

void SharpPainter::line_along_axes(int pen, LineStyle style, std::uint32_t pixel) {
    if (style != LineStyle::solid) return dashes_along_axes(pen, style, pixel);
    for (std::size_t i = 1; i < line_.size(); ++i) fill(cells(line_[i - 1], line_[i], pen), pixel);
}

/// Dashes and gaps of whole pixels, all alike.
void SharpPainter::dashes_along_axes(int pen, LineStyle style, std::uint32_t pixel) {
    for (Point& p : line_) {
        const PixelRect cell = cells(p, p, pen);
        p = {static_cast<double>(cell.left), static_cast<double>(cell.top)};
    }
    DashCutter(style, pen, 0.0).cut(line_, [&](std::span<const Point> dash) {
        for (std::size_t i = 1; i < dash.size(); ++i) {
            const Point a = dash[i - 1], b = dash[i];
            const bool level = a.y == b.y;
            const auto [low, high] = std::minmax({level ? a.x : a.y, level ? b.x : b.y});
            const int from = static_cast<int>(std::lround(low)), to = static_cast<int>(std::lround(high));
            const int side = static_cast<int>(std::lround(level ? a.y : a.x));
            fill(level ? PixelRect{from, side, to, side + pen} : PixelRect{side, from, side + pen, to},
                 pixel);
        }
    });
}

void SharpPainter::fill_box(Point a, Point b, Colour colour) {
    if (raster_.pixels == nullptr) return;
    const auto [left, right] = std::minmax({a.x, b.x});
    const auto [top, bottom] = std::minmax({a.y, b.y});
    const auto edge = [](double at, int extent) {
        return static_cast<int>(std::clamp(std::floor(at), 0.0, static_cast<double>(extent)));
    };
    const PixelRect first{pixel_of(left, raster_.width), pixel_of(top, raster_.height), 0, 0};
    fill({first.left, first.top, std::max(edge(right, raster_.width), first.left + 1),
          std::max(edge(bottom, raster_.height), first.top + 1)},
         opaque_pixel(colour));
}

void SharpPainter::stamp(const Raster& picture, int left, int top) {
    const PixelRect pixels{std::max(left, 0), std::max(top, 0), std::min(left + picture.width, raster_.width),
                           std::min(top + picture.height, raster_.height)};
    if (pixels.empty()) return;
    drawn_.add(pixels);
    for (int y = pixels.top; y < pixels.bottom; ++y) {
        const std::uint32_t* from = picture.row(y - top) + (pixels.left - left);
        std::uint32_t* to = raster_.row(y) + pixels.left;
        for (int x = pixels.left; x < pixels.right; ++x, ++from, ++to) *to = laid_on(*from, *to);
    }
}

}  // namespace anomalis::chart
