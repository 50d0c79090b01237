#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis::chart {

/// Cover of a pixel by a round pen, by the square of the distance of its centre from the middle of the line:
/// the area of the pixel that a straight stroke of this slant covers.
class CoverTable {
  public:
    /// `half` the width in pixels; `least` the smaller part of the stroke's direction, 0 along an axis and
    /// the root of 1/2 along a diagonal.
    CoverTable(double half, double least);
    /// Distance at which cover ends, pixels.
    double reach() const { return reach_; }
    /// The covers of squares from 0 on, and what makes a square their number.
    const std::uint8_t* covers() const { return covers_.data(); }
    float per_square() const { return per_square_; }
    static constexpr std::size_t steps = 1024;

  private:
    double reach_;
    float per_square_;
    std::array<std::uint8_t, steps> covers_{};
};

/// The covers of one width, by slant.
class PenCover {
  public:
    explicit PenCover(double half);
    double half() const { return half_; }
    /// For a direction of length 1.
    const CoverTable& along(Point unit) const {
        const double least = std::min(std::abs(unit.x), std::abs(unit.y));
        const double half_up = least * per_slant + 0.5;
        return tables_[static_cast<std::size_t>(half_up)];
    }

  private:
    static constexpr std::size_t slants = 16;
    static constexpr double per_slant = (slants - 1) * 1.4142135623730951;
    double half_;
    std::vector<CoverTable> tables_;
};

}  // namespace anomalis::chart
