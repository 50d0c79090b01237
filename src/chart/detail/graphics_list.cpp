#include "chart/detail/graphics_list.h"

#include <algorithm>
#include <utility>

namespace anomalis::chart {

namespace {

constexpr std::size_t first_items = 256;
constexpr std::size_t first_polygons = 64;

}  // namespace

GraphicsList::GraphicsList() {
    items_.reserve(first_items);
    polygons_.reserve(first_polygons);
}

void GraphicsList::add(GraphicItem item) {
    items_.push_back(std::move(item));
}

int GraphicsList::add_points(GraphicItem item, int count, const double* xs, const double* ys) {
    if (count < 2 || xs == nullptr || ys == nullptr) return 0;
    item.xs.assign(xs, xs + count);
    item.ys.assign(ys, ys + count);
    const auto [x_low, x_high] = std::minmax_element(item.xs.begin(), item.xs.end());
    const auto [y_low, y_high] = std::minmax_element(item.ys.begin(), item.ys.end());
    item.bounds = {*x_low, *x_high, *y_low, *y_high};
    items_.push_back(std::move(item));
    polygons_.push_back(items_.size() - 1);
    return polygon_count();
}

void GraphicsList::clear() {
    items_.clear();
    polygons_.clear();
}

}  // namespace anomalis::chart
