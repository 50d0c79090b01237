#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "chart/chart_table.h"
#include "chart/detail/canvas.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/series_painter.h"

namespace anomalis::chart {

/// The dots of a chart in transformed units; those without a place are left out.
class DotTable {
  public:
    void register_dots(std::span<const ChartDot> dots, const ChartProperties& properties);
    void clear();

    bool empty() const { return dots_.empty(); }
    std::span<const ChartDot> dots() const { return dots_; }
    /// Another one after each registration.
    std::uint64_t revision() const { return revision_; }

  private:
    std::vector<ChartDot> dots_;
    std::uint64_t revision_ = 0;
};

/// Draws dots in their order, those that look alike and follow each other at once. Keeps its working storage.
class DotPainter {
  public:
    void paint(const DotTable& table, const PlotFrame& frame, Canvas& canvas);

  private:
    void flush(const ChartDot& look, Canvas& canvas);

    std::vector<Point> run_, outline_;
};

}  // namespace anomalis::chart
