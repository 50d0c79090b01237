#include "chart/detail/tile_set.h"

#include <algorithm>

namespace anomalis::chart {

void TileSet::resize(int width, int height) {
    width_ = std::max(width, 0);
    height_ = std::max(height, 0);
    columns_ = (width_ + side - 1) / side;
    rows_ = (height_ + side - 1) / side;
    any_ = false;
    taken_.assign(index(0, rows_), 0);
}

PixelRect TileSet::on_raster(PixelRect pixels) const {
    return {std::max(pixels.left, 0), std::max(pixels.top, 0), std::min(pixels.right, width_),
            std::min(pixels.bottom, height_)};
}

void TileSet::add(PixelRect pixels) {
    pixels = on_raster(pixels);
    if (pixels.empty()) return;
    any_ = true;
    for (int row = pixels.top / side; row <= (pixels.bottom - 1) / side; ++row)
        for (int column = pixels.left / side; column <= (pixels.right - 1) / side; ++column)
            taken_[index(column, row)] = 1;
}

void TileSet::add_all() {
    any_ = !taken_.empty();
    std::fill(taken_.begin(), taken_.end(), std::uint8_t{1});
}

void TileSet::add(const TileSet& other) {
    if (!other.any_ || other.taken_.size() != taken_.size()) return;
    any_ = true;
    for (std::size_t i = 0; i < taken_.size(); ++i) taken_[i] |= other.taken_[i];
}

void TileSet::clear() {
    if (any_) std::fill(taken_.begin(), taken_.end(), std::uint8_t{0});
    any_ = false;
}

}  // namespace anomalis::chart
