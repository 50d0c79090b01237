#pragma once

#include <cstdint>
#include <vector>

namespace anomalis::chart {

/// Pixels of a raster from the first to before the last.
struct PixelRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    bool empty() const { return left >= right || top >= bottom; }
    bool operator==(const PixelRect&) const = default;
};

/// Which parts of a raster were drawn on, in square tiles: what a picture must be copied or looked through
/// for, without account of every pixel.
class TileSet {
  public:
    static constexpr int side = 32;

    /// Of a raster of so many pixels; no tile is in it then.
    void resize(int width, int height);
    /// The tiles of these pixels, as far as they are on the raster.
    void add(PixelRect pixels);
    void add_all();
    /// The tiles of another set of the same raster.
    void add(const TileSet& other);
    void clear();
    bool empty() const { return !any_; }
    bool has(int column, int row) const { return taken_[index(column, row)] != 0; }
    int columns() const { return columns_; }
    int rows() const { return rows_; }

    /// Hands the pixels of each run of tiles side by side to `work`, from the top down.
    template <class Work>
    void for_each_run(Work&& work) const {
        if (!any_) return;
        for (int row = 0; row < rows_; ++row) {
            for (int column = 0; column < columns_; ++column) {
                if (!has(column, row)) continue;
                const int first = column;
                while (column < columns_ && has(column, row)) ++column;
                work(on_raster({first * side, row * side, column * side, (row + 1) * side}));
            }
        }
    }

  private:
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
               static_cast<std::size_t>(column);
    }
    PixelRect on_raster(PixelRect pixels) const;

    int width_ = 0;
    int height_ = 0;
    int columns_ = 0;
    int rows_ = 0;
    bool any_ = false;
    std::vector<std::uint8_t> taken_;
};

}  // namespace anomalis::chart
