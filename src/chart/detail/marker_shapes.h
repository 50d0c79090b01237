#pragma once

#include <array>

#include "chart/drawing_device.h"

namespace anomalis::chart {

/// Marker styles: -26 to -1 letters, 0 none, 1 square outline of width 1, 2 filled square, 3 square outline,
/// 4 two diagonals, 5 upright cross, 6 star, 7 filled diamond, 8 diamond outline. Others draw nothing.
bool is_letter_marker(int style);
char marker_letter(int style);

/// The strokes and the outline of one style; `shape` points into this object.
class MarkerGeometry {
  public:
    MarkerGeometry(int style, double radius, Colour colour, double width);
    MarkerGeometry(const MarkerGeometry&) = delete;
    MarkerGeometry& operator=(const MarkerGeometry&) = delete;

    const MarkerShape& shape() const { return shape_; }
    bool empty() const { return shape_.strokes.empty() && shape_.outline.empty(); }

  private:
    void add_diagonals(double r);
    void add_cross(double r);
    void set_square(double r);
    void set_diamond(double r);

    std::array<MarkerShape::Stroke, 4> strokes_;
    std::size_t stroke_count_ = 0;
    std::array<Point, 4> outline_;
    MarkerShape shape_;
};

}  // namespace anomalis::chart
