#include "chart/detail/point_thinner.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "chart/detail/axis_transform.h"

namespace anomalis {

namespace {

/// The X values that share a pixel column, low end included.
struct Column {
    double low;
    double high;
};

Column column_of(double surface_x, const Projection& project, double pixel) {
    constexpr double endless = std::numeric_limits<double>::infinity();
    const double left = project.plot.x_low - pixel;
    const double right = project.plot.x_high + pixel;
    // A null lies below every column.
    if (surface_x < left) return {null_bound, project.x_at(left)};
    if (surface_x >= right) return {project.x_at(right), endless};
    const double number = std::floor(surface_x / pixel);
    return {project.x_at(number * pixel), project.x_at((number + 1.0) * pixel)};
}

bool missing(double x, double y) {
    return is_null(x) || is_null(y);
}

}  // namespace

std::size_t collect_run(std::span<const double> xs, std::span<const double> ys, std::size_t first,
                        const Projection& project, double pixel, std::vector<Point>& out) {
    out.clear();
    const std::size_t count = ys.size();
    std::size_t i = first;
    if (pixel <= 0.0) {
        for (; i < count && !missing(xs[i], ys[i]); ++i) out.push_back(project(xs[i], ys[i]));
        return i;
    }
    while (i < count && !missing(xs[i], ys[i])) {
        const Column column = column_of(project(xs[i], ys[i]).x, project, pixel);
        const std::size_t begin = i;
        std::size_t lowest = i;
        std::size_t highest = i;
        double low = ys[i];
        double high = ys[i];
        for (++i; i < count && xs[i] >= column.low && xs[i] < column.high && ys[i] > null_bound; ++i) {
            if (ys[i] < low) {
                low = ys[i];
                lowest = i;
            }
            if (ys[i] > high) {
                high = ys[i];
                highest = i;
            }
        }
        std::array<std::size_t, 4> kept{begin, lowest, highest, i - 1};
        if (kept[1] > kept[2]) std::swap(kept[1], kept[2]);
        for (std::size_t k = 0; k < kept.size(); ++k)
            if (k == 0 || kept[k] != kept[k - 1]) out.push_back(project(xs[kept[k]], ys[kept[k]]));
    }
    return i;
}

void PixelSet::begin(const Rect& area, double pixel) {
    area_ = area;
    per_unit_ = 1.0 / pixel;
    columns_ = static_cast<std::int64_t>(std::ceil(area.width() * per_unit_)) + 2;
    rows_ = static_cast<std::int64_t>(std::ceil(area.height() * per_unit_)) + 2;
    const auto pixels = static_cast<std::size_t>(columns_ * rows_);
    if (taken_.size() != pixels) taken_.assign(pixels, round_);
    clear();
}

bool PixelSet::insert(Point p) {
    // The area is opened by a pixel on each side, so the shift keeps the truncation a floor.
    const auto column = static_cast<std::int64_t>((p.x - area_.x_low) * per_unit_ + 1.0);
    const auto row = static_cast<std::int64_t>((p.y - area_.y_low) * per_unit_ + 1.0);
    if (column < 0 || column >= columns_ || row < 0 || row >= rows_) return true;
    std::uint32_t& taken = taken_[static_cast<std::size_t>(row * columns_ + column)];
    if (taken == round_) return false;
    taken = round_;
    return true;
}

}  // namespace anomalis
