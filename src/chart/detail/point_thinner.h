#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "chart/detail/block_extremes.h"
#include "chart/drawing_types.h"

namespace anomalis::chart {

/// The straight-line mapping of a plot from transformed units to the surface.
struct Projection {
    double x_low = 0.0;  ///< the view's low ends, transformed units
    double y_low = 0.0;
    double x_scale = 1.0;
    double y_scale = 1.0;
    Rect plot;

    Point operator()(double x, double y) const {
        return {(x - x_low) * x_scale + plot.x_low, (y - y_low) * y_scale + plot.y_low};
    }
    /// Where on the X axis a place of the surface lies.
    double x_at(double surface) const { return (surface - plot.x_low) / x_scale + x_low; }
};

/// The points of a series, transformed, null_value where missing.
struct SeriesPoints {
    std::span<const double> xs;  ///< at least as many as `ys`
    std::span<const double> ys;
    /// Of `ys`, when every X is there and none is less than the one before; else null.
    const BlockExtremes* extremes = nullptr;
};

/// Puts the places of a line's points, from `first` to the last before the next null, into `out`, and returns
/// the index after them. Of each pixel column (`pixel` surface units wide; 0 = no thinning) only the first,
/// lowest, highest and last are passed, in their order: a raster shows no difference, for what is left out
/// lies in the column between the lowest and the highest. All that is left or right of the plot counts as
/// one column.
std::size_t collect_run(const SeriesPoints& points, std::size_t first, const Projection& project,
                        double pixel, std::vector<Point>& out);

/// Which pixels of a plot hold a marker already.
class PixelSet {
  public:
    void begin(const Rect& area, double pixel);
    /// True the first time for the pixel of this point.
    bool insert(Point p);
    void clear() { ++round_; }

  private:
    Rect area_;
    double per_unit_ = 1.0;
    std::int64_t columns_ = 0;
    std::int64_t rows_ = 0;
    std::uint32_t round_ = 0;  ///< a pixel is taken when it holds this number
    std::vector<std::uint32_t> taken_;
};

/// Leaves out of a path what a raster cannot show. Paths of usual length pass as they are.
class PathThinner {
  public:
    /// The path with only the first and last of its points in a row that share a pixel; all that is beyond an
    /// edge of the window counts as one pixel across that edge, so what is seen stays. Of more points than
    /// the window has pixels, evenly spread ones are kept. The result lives until the next call.
    std::span<const Point> thin(std::span<const Point> path, const Rect& window, double pixel);

  private:
    std::vector<Point> kept_;
};

}  // namespace anomalis::chart
