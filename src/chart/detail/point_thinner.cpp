#include "chart/detail/point_thinner.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "chart/detail/axis_transform.h"

namespace anomalis::chart {

namespace {

/// Of more pixels than any screen has no account is kept.
constexpr std::int64_t most_pixels = std::int64_t{1} << 26;

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

/// So many points of a column are cheaper to look up than to pass.
constexpr std::size_t crowd = 64;

bool is_crowded(const SeriesPoints& points, std::size_t begin, const Column& column) {
    return points.extremes != nullptr && begin + crowd < points.ys.size() &&
           points.xs[begin + crowd] < column.high;
}

/// The first point from `begin` on that is right of a column. Strides that double find the stretch it is in.
std::size_t crowd_end(std::span<const double> xs, std::size_t begin, const Column& column) {
    std::size_t stride = crowd;
    std::size_t from = begin;
    while (from + stride < xs.size() && xs[from + stride] < column.high) {
        from += stride;
        stride *= 2;
    }
    const std::size_t to = std::min(from + stride, xs.size());
    const auto place = std::lower_bound(xs.begin() + static_cast<std::ptrdiff_t>(from),
                                        xs.begin() + static_cast<std::ptrdiff_t>(to), column.high);
    return static_cast<std::size_t>(place - xs.begin());
}

/// The points from `begin` on that share a column, one after the other.
BlockExtremes::Stretch walk(const SeriesPoints& points, std::size_t begin, const Column& column) {
    const auto& [xs, ys, extremes] = points;
    std::size_t lowest = begin;
    std::size_t highest = begin;
    std::size_t i = begin + 1;
    for (; i < ys.size() && xs[i] >= column.low && xs[i] < column.high && !is_null(ys[i]); ++i) {
        if (ys[i] < ys[lowest]) lowest = i;
        if (ys[i] > ys[highest]) highest = i;
    }
    return {i, lowest, highest};
}

/// A pixel of the window, or one of the border around it. What is no number has a place of its own.
Point pixel_of(Point p, const Rect& window, double pixel) {
    const auto number = [&](double at, double low, double high) {
        if (std::isnan(at)) return -2.0;
        return std::floor((std::clamp(at, low - pixel, high + pixel) - low) / pixel);
    };
    return {number(p.x, window.x_low, window.x_high), number(p.y, window.y_low, window.y_high)};
}

}  // namespace

std::size_t collect_run(const SeriesPoints& points, std::size_t first, const Projection& project,
                        double pixel, std::vector<Point>& out) {
    out.clear();
    const auto& [xs, ys, extremes] = points;
    const std::size_t count = ys.size();
    std::size_t i = first;
    if (pixel <= 0.0) {
        for (; i < count && !missing(xs[i], ys[i]); ++i) out.push_back(project(xs[i], ys[i]));
        return i;
    }
    while (i < count && !missing(xs[i], ys[i])) {
        const Column column = column_of(project(xs[i], ys[i]).x, project, pixel);
        const std::size_t begin = i;
        const BlockExtremes::Stretch stretch =
            is_crowded(points, begin, column)
                ? extremes->find(ys, begin, crowd_end(xs.first(count), begin, column))
                : walk(points, begin, column);
        i = stretch.end;
        std::array<std::size_t, 4> kept{begin, stretch.lowest, stretch.highest, i - 1};
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
    if (columns_ * rows_ > most_pixels) columns_ = rows_ = 0;
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

std::span<const Point> PathThinner::thin(std::span<const Point> path, const Rect& window, double pixel) {
    const double columns = window.width() / pixel + 2.0, rows = window.height() / pixel + 2.0;
    const bool usual = static_cast<double>(path.size()) <= 8.0 * (columns + rows);
    if (usual || !(columns > 0.0 && rows > 0.0)) return path;
    kept_.clear();
    Point before = pixel_of(path.front(), window, pixel);
    kept_.push_back(path.front());
    for (std::size_t i = 1; i < path.size(); ++i) {
        const Point here = pixel_of(path[i], window, pixel);
        const bool last_here = i + 1 == path.size() || !(pixel_of(path[i + 1], window, pixel) == here);
        if (!(here == before) || last_here) kept_.push_back(path[i]);
        before = here;
    }
    const double excess = static_cast<double>(kept_.size()) / (columns * rows);
    if (excess <= 1.0) return kept_;
    const auto every = static_cast<std::size_t>(std::ceil(excess));
    std::size_t count = 0;
    for (std::size_t i = 0; i < kept_.size(); i += every) kept_[count++] = kept_[i];
    kept_.resize(count);
    return kept_;
}

}  // namespace anomalis::chart
