#pragma once

#include <utility>
#include <vector>

#include <QImage>

#include "chart/detail/sharp_painter.h"
#include "chart/drawing_device.h"

namespace anomalis::chart {

/// The pixels of a picture of 32 bits.
Raster raster_of(QImage& image);

/// A marker drawn once, to be laid on in whole pixels wherever it occurs: all of a kind look alike, one by
/// itself as one of thousands. Sides along an axis stand a whole number of pixels from the middle. With a pen
/// of an odd width the middle is a pixel, else the corner between four.
class Stamp {
  public:
    /// `scale` pixels a surface unit; `width` of the pen in pixels.
    Stamp(const MarkerShape& shape, double scale, double width, SharpPainter& painter);
    bool is_of(const MarkerShape& shape, double width) const;
    Raster raster() const;
    /// Where its first column and row stand when its anchor is at a place in pixels.
    std::pair<int, int> first_pixel(Point anchor) const;

  private:
    void draw(const MarkerShape& shape, double scale, SharpPainter& painter);

    std::vector<MarkerShape::Stroke> strokes_;
    std::vector<Point> outline_;
    bool filled_;
    Colour fill_;
    Pen pen_;
    double width_;
    bool even_;
    int middle_ = 0;
    QImage image_;
};

/// The stamps of late.
class Stamps {
  public:
    /// Valid until the next call.
    const Stamp& of(const MarkerShape& shape, double scale, double width);
    void clear() { stamps_.clear(); }

  private:
    std::vector<Stamp> stamps_;
    double scale_ = 0.0;
    SharpPainter painter_;  ///< one for all, which keeps what it knows of a pen
};

}  // namespace anomalis::chart
