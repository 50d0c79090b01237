#include "chart/detail/legend_cover.h"

#include <algorithm>
#include <cmath>

#include "chart/detail/hit_test.h"

namespace anomalis::chart {

namespace {

/// So many points of a series tell where it runs.
constexpr std::size_t most_points = 2048;
/// Between points farther apart the line is sampled too.
constexpr double sample_step = 8.0 * units_per_screen_pixel;
constexpr double most_between = 64.0;
constexpr int body_weight = 40;
constexpr int grid_across = 5;
constexpr int grid_up = 3;

}  // namespace

LegendCover::LegendCover(const GrapherState& state) : state_(state) {
    const SeriesTable& table = state.series;
    for (int g = 1; g <= table.group_count(); ++g)
        for (int s = table.group(g).first; s <= table.group(g).last; ++s)
            sample_series(table.group(g), table.series(s));
}

void LegendCover::sample_series(const SeriesGroup& group, const SeriesData& data) {
    const std::size_t count = std::min(group.x.size(), data.y.size());
    const std::size_t stride = std::max<std::size_t>(1, count / most_points);
    bool joined = false;
    Point before;
    for (std::size_t i = 0; i < count; i += stride) {
        if (is_null(group.x[i]) || is_null(data.y[i])) {
            joined = false;
            continue;
        }
        const Point at = state_.layout.to_surface(state_.x, state_.y, {group.x[i], data.y[i]});
        const double steps =
            joined ? std::clamp(std::floor(std::hypot(at.x - before.x, at.y - before.y) / sample_step), 1.0,
                                most_between)
                   : 1.0;
        for (double k = 1.0; k <= steps; ++k) {
            const double share = k / steps;
            samples_.push_back(
                joined ? Point{before.x + (at.x - before.x) * share, before.y + (at.y - before.y) * share}
                       : at);
        }
        before = at;
        joined = true;
    }
}

int LegendCover::of(const Rect& box) const {
    const auto inside = std::ranges::count_if(samples_, [&](Point p) { return box.contains(p); });
    return static_cast<int>(inside) + bodies_under(box);
}

int LegendCover::bodies_under(const Rect& box) const {
    const auto& items = state_.overlay.items();
    int covered = 0;
    for (int i = 0; i < grid_across; ++i)
        for (int k = 0; k < grid_up; ++k) {
            const Point at{box.x_low + box.width() * i / (grid_across - 1),
                           box.y_low + box.height() * k / (grid_up - 1)};
            const Point world = state_.layout.to_world(state_.x, state_.y, at);
            const Point user{state_.properties.x.scale.inverse(world.x),
                             state_.properties.y.scale.inverse(world.y)};
            covered += static_cast<int>(std::ranges::count_if(items, [&](const GraphicItem& item) {
                return item.kind == ItemKind::polygon && item.fill_colour != no_colour &&
                       inside_polygon(item.xs, item.ys, user, 0.0);
            }));
        }
    for (const GraphicItem& item : items)
        if (item.kind == ItemKind::text) {
            const ChartProperties& p = state_.properties;
            const Point at = state_.layout.to_surface(
                state_.x, state_.y, {p.x.scale.forward(item.x1), p.y.scale.forward(item.y1)});
            covered += box.contains(at) ? 1 : 0;
        }
    return body_weight * covered;
}

}  // namespace anomalis::chart
