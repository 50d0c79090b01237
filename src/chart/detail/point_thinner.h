#pragma once

#include <cstdint>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis {

/// Passes the points of a line on, of each pixel column only the first, lowest, highest and last in their
/// order. A raster shows no difference: what is left out lies in the column between the lowest and highest.
class PointThinner {
  public:
    /// `pixel` is the width of a column in surface units; 0 passes every point.
    void begin(double pixel, std::vector<Point>& out);
    void add(Point p);
    void end();

  private:
    struct Numbered {
        Point at;
        std::int64_t order = 0;
    };
    void flush();

    std::vector<Point>* out_ = nullptr;
    double pixel_ = 0.0;
    double column_ = 0.0;
    std::int64_t order_ = 0;
    bool open_ = false;
    Numbered first_;
    Numbered lowest_;
    Numbered highest_;
    Numbered last_;
};

/// Which pixels of a plot hold a marker already.
class PixelSet {
  public:
    void begin(const Rect& area, double pixel);
    /// True the first time for the pixel of this point.
    bool insert(Point p);
    void clear() { ++round_; }

  private:
    Rect area_;
    double pixel_ = 1.0;
    std::int64_t columns_ = 0;
    std::int64_t rows_ = 0;
    std::uint32_t round_ = 0;  ///< a pixel is taken when it holds this number
    std::vector<std::uint32_t> taken_;
};

}  // namespace anomalis
