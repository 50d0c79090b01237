#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "chart/detail/stroke_mask.h"
#include "chart/detail/tile_set.h"
#include "chart/drawing_types.h"

namespace anomalis::chart {

/// A picture of premultiplied 0xAARRGGBB pixels that somebody else owns.
struct Raster {
    std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;  ///< pixels from one row to the next

    std::uint32_t* row(int y) const { return pixels + y * stride; }
};

/// The opaque pixel of a colour.
std::uint32_t opaque_pixel(Colour colour);

/// Draws on a picture in its own pixels, alike at every scale of a display: lines along an axis, boxes and
/// their dashes cover whole pixels; other lines are smoothed, as even through many points as through two.
/// Places are pixels, y downward, the first pixel from 0 to 1; what falls off by the last edge is drawn in
/// the last pixel. Notes which tiles it drew on.
class SharpPainter {
  public:
    /// Draws on `raster` from here on; what was noted is forgotten.
    void open(const Raster& raster);
    /// What was drawn on since `open`, or since it was last cleared.
    TileSet& drawn() { return drawn_; }

    /// A line through 2 or more points, `width` pixels wide.
    void line(std::span<const Point> points, bool closed, double width, LineStyle style, Colour colour);
    /// A box between two corners; at least one pixel.
    void fill_box(Point a, Point b, Colour colour);
    /// A picture laid on, with its first pixel there.
    void stamp(const Raster& picture, int left, int top);

    /// True when each point shares a row or a column with the one before.
    static bool is_along_axes(std::span<const Point> points);
    /// The pixels that a line along an axis covers across its direction: a whole number, at least 1.
    static int whole_width(double width);

  private:
    PixelRect cells(Point a, Point b, int pen) const;
    void fill(PixelRect pixels, std::uint32_t pixel);
    void line_along_axes(int pen, LineStyle style, std::uint32_t pixel);
    void dashes_along_axes(int pen, LineStyle style, std::uint32_t pixel);
    void blend_mask(std::uint32_t pixel);

    Raster raster_;
    TileSet drawn_;
    StrokeMask mask_;
    std::vector<Point> line_;
};

}  // namespace anomalis::chart
