#pragma once

#include <cstdint>
#include <vector>

#include "chart/detail/canvas.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/layout.h"
#include "chart/detail/point_thinner.h"
#include "chart/detail/series_table.h"
#include "chart/detail/view_state.h"

namespace anomalis::chart {

/// What a plot needs besides the data.
struct PlotFrame {
    const ChartProperties& properties;
    const ChartLayout& layout;
    const AxisRange& x;
    const AxisRange& y;
};

Projection projection_of(const PlotFrame& frame);

/// Plots registered series as lines, markers and bars with gaps at nulls. Its working storage is kept, so a
/// redraw allocates nothing once the longest series has been drawn.
class SeriesPainter {
  public:
    /// The series below all others: the first of the last group.
    void plot_lowest(const SeriesTable& table, const PlotFrame& frame, Canvas& canvas);
    /// What lies on it: groups from the last to the first, series in each from its first to its last.
    void plot_others(const SeriesTable& table, const PlotFrame& frame, Canvas& canvas);

  private:
    void plot_series(const SeriesTable& table, int group, int series, const PlotFrame& frame, Canvas& canvas);
    void plot_lines(const SeriesGroup& group, const SeriesData& data, const SeriesOptions& options,
                    const PlotFrame& frame, Canvas& canvas);
    void draw_run(const SeriesOptions& options, Colour ground, Canvas& canvas);
    void plot_bars(const SeriesGroup& group, const SeriesData& data, const SeriesOptions& options,
                   const PlotFrame& frame, Canvas& canvas);
    void plot_markers(const SeriesGroup& group, const SeriesData& data, const SeriesOptions& options,
                      const PlotFrame& frame, Canvas& canvas);

    std::vector<Point> run_;
    std::vector<Point> anchors_;
    PixelSet marked_;
};

}  // namespace anomalis::chart
