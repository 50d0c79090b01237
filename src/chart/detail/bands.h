#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "chart/chart_table.h"
#include "chart/detail/canvas.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/series_painter.h"

namespace anomalis::chart {

/// The bands of a chart in transformed units.
class BandTable {
  public:
    struct Band {
        std::vector<double> x, low, high;  ///< null_value in all three where one is missing
        Colour fill = black;
        bool operator==(const Band&) const = default;
    };

    /// Replaces them. What stands there already leaves the revision alone.
    void register_bands(std::span<const ChartBand> bands, const ChartProperties& properties);
    void clear();

    std::span<const Band> bands() const { return bands_; }
    /// Another one whenever a place or a colour has changed.
    std::uint64_t revision() const { return revision_; }

  private:
    std::vector<Band> bands_;
    std::uint64_t revision_ = 0;
};

/// Fills bands, with gaps at nulls, thinned as lines are. Keeps its working storage.
class BandPainter {
  public:
    void paint(const BandTable& table, const PlotFrame& frame, Canvas& canvas);

  private:
    void paint_band(const BandTable::Band& band, const PlotFrame& frame, Canvas& canvas);

    std::vector<Point> outline_, edge_;
};

}  // namespace anomalis::chart
