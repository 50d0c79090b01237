#include "chart/detail/point_thinner.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace anomalis {

void PointThinner::begin(double pixel, std::vector<Point>& out) {
    out_ = &out;
    out.clear();
    pixel_ = pixel;
    order_ = 0;
    open_ = false;
}

void PointThinner::add(Point p) {
    if (pixel_ <= 0.0) {
        out_->push_back(p);
        return;
    }
    const double column = std::floor(p.x / pixel_);
    const Numbered here{p, order_++};
    if (!open_ || column != column_) {
        flush();
        open_ = true;
        column_ = column;
        first_ = lowest_ = highest_ = here;
    }
    if (p.y < lowest_.at.y) lowest_ = here;
    if (p.y > highest_.at.y) highest_ = here;
    last_ = here;
}

void PointThinner::end() {
    flush();
}

void PointThinner::flush() {
    if (!open_) return;
    std::array<Numbered, 4> kept{first_, lowest_, highest_, last_};
    if (kept[1].order > kept[2].order) std::swap(kept[1], kept[2]);
    for (std::size_t i = 0; i < kept.size(); ++i)
        if (i == 0 || kept[i].order != kept[i - 1].order) out_->push_back(kept[i].at);
    open_ = false;
}

void PixelSet::begin(const Rect& area, double pixel) {
    area_ = area;
    pixel_ = pixel;
    columns_ = static_cast<std::int64_t>(std::ceil(area.width() / pixel)) + 2;
    rows_ = static_cast<std::int64_t>(std::ceil(area.height() / pixel)) + 2;
    const auto pixels = static_cast<std::size_t>(columns_ * rows_);
    if (taken_.size() != pixels) taken_.assign(pixels, round_);
    clear();
}

bool PixelSet::insert(Point p) {
    const auto column = static_cast<std::int64_t>(std::floor((p.x - area_.x_low) / pixel_)) + 1;
    const auto row = static_cast<std::int64_t>(std::floor((p.y - area_.y_low) / pixel_)) + 1;
    if (column < 0 || column >= columns_ || row < 0 || row >= rows_) return true;
    std::uint32_t& taken = taken_[static_cast<std::size_t>(row * columns_ + column)];
    if (taken == round_) return false;
    taken = round_;
    return true;
}

}  // namespace anomalis
