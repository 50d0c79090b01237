#include "chart/detail/hit_test.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace anomalis::chart {

namespace {

constexpr double polygon_tolerance = 0.001;

Point project(const PlotFrame& frame, Point user) {
    const Point transformed{frame.properties.x.scale.forward(user.x),
                            frame.properties.y.scale.forward(user.y)};
    return frame.layout.to_surface(frame.x, frame.y, transformed);
}

double distance_to_segment(Point p, Point a, Point b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double t =
        length > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0.0, 1.0) : 0.0;
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

bool bounds_hold(const Rect& bounds, Point p) {
    return bounds.contains(p, polygon_tolerance);
}

}  // namespace

std::optional<SelectedPoint> hit_point(const SeriesTable& table, const PlotFrame& frame, Point press) {
    std::optional<SelectedPoint> best;
    Point best_at;
    double best_distance = std::numeric_limits<double>::infinity();
    for (int g = 1; g <= table.group_count(); ++g) {
        const SeriesGroup& group = table.group(g);
        for (int s = group.last; s >= group.first; --s) {
            if (!table.options(s).visible) continue;
            const std::vector<double>& y = table.series(s).y;
            for (std::size_t i = 0; i < y.size(); ++i) {
                if (is_null(y[i]) || is_null(group.x[i])) continue;
                const Point at = frame.layout.to_surface(frame.x, frame.y, {group.x[i], y[i]});
                if (!frame.layout.plot.contains(at, 0.5)) continue;
                const double dx = at.x - press.x;
                const double dy = at.y - press.y;
                const double distance = dx * dx + dy * dy;
                if (!(distance < best_distance)) continue;
                best_distance = distance;
                best_at = at;
                best = SelectedPoint{g, s - group.first + 1, static_cast<int>(i) + 1};
            }
        }
    }
    if (!best || !(std::abs(best_at.x - press.x) < hit_radius) ||
        !(std::abs(best_at.y - press.y) < hit_radius))
        return std::nullopt;
    return best;
}

bool inside_polygon(const std::vector<double>& xs, const std::vector<double>& ys, Point p, double tolerance) {
    bool inside = false;
    for (std::size_t i = 0, j = xs.size() - 1; i < xs.size(); j = i++) {
        const Point a{xs[j], ys[j]};
        const Point b{xs[i], ys[i]};
        if (distance_to_segment(p, a, b) <= tolerance) return true;
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * ((p.y - a.y) / (b.y - a.y)))
            inside = !inside;
    }
    return inside;
}

int hit_polygon(const GraphicsList& graphics, const PlotFrame& frame, Point press) {
    const Point world = frame.layout.to_world(frame.x, frame.y, press);
    const Point user{frame.properties.x.scale.inverse(world.x), frame.properties.y.scale.inverse(world.y)};
    for (int number = 1; number <= graphics.polygon_count(); ++number) {
        const GraphicItem& item = graphics.polygon(number);
        if (bounds_hold(item.bounds, user) && inside_polygon(item.xs, item.ys, user, polygon_tolerance))
            return number;
    }
    // A thin sheet may be narrower than a pixel: then the nearest outline in reach counts.
    int nearest = 0;
    double nearest_distance = hit_radius;
    for (int number = 1; number <= graphics.polygon_count(); ++number) {
        const GraphicItem& item = graphics.polygon(number);
        Point before = project(frame, {item.xs.back(), item.ys.back()});
        for (std::size_t i = 0; i < item.count(); ++i) {
            const Point here = project(frame, {item.xs[i], item.ys[i]});
            const double distance = distance_to_segment(press, before, here);
            if (distance < nearest_distance) {
                nearest_distance = distance;
                nearest = number;
            }
            before = here;
        }
    }
    return nearest;
}

}  // namespace anomalis::chart
