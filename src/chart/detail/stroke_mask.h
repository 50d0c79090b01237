#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "chart/detail/pen_cover.h"
#include "chart/detail/tile_set.h"
#include "chart/drawing_types.h"

namespace anomalis::chart {

/// How far each pixel of a raster is covered by lines of a round pen, 0 to 255. A pixel that several pieces
/// meet has the cover of the nearest, so a curve through many points is as even as one through two: its
/// joints are neither beads nor gaps, and its cost grows with its pixels alone.
///
/// Places are pixels of the raster, y downward, the first pixel from 0 to 1.
class StrokeMask {
  public:
    /// For a raster of so many pixels; nothing is covered then.
    void resize(int width, int height);
    int width() const { return width_; }
    int height() const { return height_; }

    /// A line of a width of at least 1 through its points; one point is a dot. A line that is longer than a
    /// few times the raster has pixels is drawn unsmoothed, and only where the raster is not full yet.
    void add(std::span<const Point> line, double width);
    /// Which tiles may hold cover.
    const TileSet& tiles() const { return tiles_; }
    /// Hands over what is covered, a stretch of a row at a time, as work(left, y, cover), and forgets it.
    template <class Work>
    void take(Work&& work) {
        tiles_.for_each_run([&](PixelRect run) {
            const auto length = static_cast<std::size_t>(run.right - run.left);
            for (int y = run.top; y < run.bottom; ++y) {
                std::uint8_t* first = row(y) + run.left;
                work(run.left, y, std::span<const std::uint8_t>(first, length));
                std::fill_n(first, length, std::uint8_t{0});
            }
        });
        tiles_.clear();
    }
    /// Pixels that were looked at since the last `resize`: what drawing has cost.
    std::int64_t visited() const { return visited_; }

  private:
    class FullTiles;
    std::uint8_t* row(int y) {
        return cover_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }
    bool is_overfull(std::span<const Point> line) const;
    const PenCover& pen_of(double half);
    void add_piece(Point a, Point b, const PenCover& pen);
    void add_overfull(std::span<const Point> line, double width);
    void add_where_open(Point a, Point b, int wide, const FullTiles& full);
    void add_hairlines(Point a, Point b, int wide);
    bool is_full(int column, int tile_row);

    int width_ = 0;
    int height_ = 0;
    std::size_t pixels_ = 0;
    std::vector<std::uint8_t> cover_;
    TileSet tiles_;
    std::vector<PenCover> pens_;
    std::int64_t visited_ = 0;
};

}  // namespace anomalis::chart
