#pragma once

#include <vector>

#include "chart/detail/graphic_item.h"

namespace anomalis::chart {

/// The retained drawings of a chart, in order, and the numbers of its polygons.
class GraphicsList {
  public:
    GraphicsList();

    void add(GraphicItem item);
    /// Adds a polygon or polyline; its number, from 1, or 0 with fewer than 2 points.
    int add_points(GraphicItem item, int count, const double* xs, const double* ys);
    void clear();

    const std::vector<GraphicItem>& items() const { return items_; }
    int polygon_count() const { return static_cast<int>(polygons_.size()); }
    /// Polylines are numbered with the polygons, although they are not replayed.
    const GraphicItem& polygon(int number) const {
        return items_[polygons_[static_cast<std::size_t>(number - 1)]];
    }

  private:
    std::vector<GraphicItem> items_;
    std::vector<std::size_t> polygons_;  ///< indices into items_
};

}  // namespace anomalis::chart
