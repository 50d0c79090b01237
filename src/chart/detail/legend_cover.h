#pragma once

#include <vector>

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// How much of a chart lies under a box: samples of its curves, and of what was drawn over them.
class LegendCover {
  public:
    explicit LegendCover(const GrapherState& state);
    /// Samples inside a box of the surface; each place of a small grid that lies in a filled body counts as
    /// many.
    int of(const Rect& box) const;

  private:
    void sample_series(const SeriesGroup& group, const SeriesData& data);
    int bodies_under(const Rect& box) const;

    const GrapherState& state_;
    std::vector<Point> samples_;
};

}  // namespace anomalis::chart
