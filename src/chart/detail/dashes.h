#pragma once

#include <cmath>
#include <span>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis::chart {

/// Lengths of dash and gap in turn, in widths of the pen; empty for a solid line.
std::span<const double> dash_pattern(LineStyle style);

/// Cuts a line into dashes. A dash that turns a corner of the line has a point there.
class DashCutter {
  public:
    /// `unit` is the width of the pen in the measure of the points. Each dash is drawn back by `end` at both
    /// of its ends: half a width for a pen with round ends, which would else fill the gaps.
    DashCutter(LineStyle style, double unit, double end);

    /// Hands each dash of the line to `work` as its points; a dash of no length is one point.
    template <class Work>
    void cut(std::span<const Point> line, Work&& work) {
        if (pattern_.empty() || !(unit_ > 0.0) || line.empty()) return;
        begin();
        for (std::size_t i = 1; i < line.size(); ++i) {
            const Point a = line[i - 1], b = line[i];
            const double length = std::hypot(b.x - a.x, b.y - a.y);
            double at = 0.0;
            while (length - at >= left_) {
                at += left_;
                const double share = length > 0.0 ? at / length : 0.0;
                const Point here{a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)};
                if (drawing_) {
                    if (dash_.empty() || !(dash_.back() == here)) dash_.push_back(here);
                    work(std::span<const Point>(dash_));
                    dash_.clear();
                } else {
                    dash_.assign(1, here);
                }
                next();
            }
            left_ -= length - at;
            if (drawing_) dash_.push_back(b);
        }
        if (drawing_ && dash_.size() > 1) work(std::span<const Point>(dash_));
    }

  private:
    void begin();
    void next();

    std::span<const double> pattern_;
    double unit_;
    double end_;
    std::size_t number_ = 0;  ///< of the length that goes on
    bool drawing_ = false;
    double left_ = 0.0;  ///< of it
    std::vector<Point> dash_;
};

}  // namespace anomalis::chart
