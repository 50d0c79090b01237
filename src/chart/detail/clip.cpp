#include "chart/detail/clip.h"

#include <cmath>

namespace anomalis::chart {

namespace {

enum Side { left = 1, right = 2, below = 4, above = 8 };

bool finite(Point p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/// The point of the line a-b on one edge of the window.
Point on_edge(const Rect& window, Point a, Point b, int side) {
    if (side == left || side == right) {
        const double x = side == left ? window.x_low : window.x_high;
        return {x, a.y + (b.y - a.y) * ((x - a.x) / (b.x - a.x))};
    }
    const double y = side == below ? window.y_low : window.y_high;
    return {a.x + (b.x - a.x) * ((y - a.y) / (b.y - a.y)), y};
}

int first_side(int code) {
    for (const int side : {left, right, below, above})
        if ((code & side) != 0) return side;
    return 0;
}

void clip_polygon_at(const Rect& window, int side, const std::vector<Point>& from, std::vector<Point>& to) {
    to.clear();
    for (std::size_t i = 0; i < from.size(); ++i) {
        const Point a = from[i == 0 ? from.size() - 1 : i - 1];
        const Point b = from[i];
        const bool a_out = (out_code(window, a) & side) != 0;
        const bool b_out = (out_code(window, b) & side) != 0;
        if (a_out != b_out) to.push_back(on_edge(window, a, b, side));
        if (!b_out) to.push_back(b);
    }
}

}  // namespace

int out_code(const Rect& window, Point p) {
    int code = 0;
    if (p.x < window.x_low) code |= left;
    if (p.x > window.x_high) code |= right;
    if (p.y < window.y_low) code |= below;
    if (p.y > window.y_high) code |= above;
    return code;
}

bool clip_segment(const Rect& window, Point& a, Point& b) {
    if (!finite(a) || !finite(b)) return false;
    int code_a = out_code(window, a);
    int code_b = out_code(window, b);
    // Each round moves one end onto one edge, so four are enough; rounding may not make it endless.
    for (int round = 0; round < 5; ++round) {
        if ((code_a | code_b) == 0) return true;
        if ((code_a & code_b) != 0) return false;
        const int code = code_a != 0 ? code_a : code_b;
        const Point moved = on_edge(window, a, b, first_side(code));
        if (!finite(moved)) return false;
        if (code_a != 0) {
            a = moved;
            code_a = out_code(window, a);
        } else {
            b = moved;
            code_b = out_code(window, b);
        }
    }
    return (code_a | code_b) == 0;
}

void clip_polygon(const Rect& window, std::span<const Point> points, std::vector<Point>& cut,
                  std::vector<Point>& scratch) {
    cut.clear();
    int all = 0;
    for (const Point& p : points) {
        if (!finite(p)) return;
        all |= out_code(window, p);
    }
    cut.assign(points.begin(), points.end());
    for (const int side : {left, right, below, above}) {
        if ((all & side) == 0) continue;
        clip_polygon_at(window, side, cut, scratch);
        cut.swap(scratch);
    }
    if (cut.size() < 3) cut.clear();
    for (const Point& p : cut)
        if (!finite(p)) {
            cut.clear();
            return;
        }
}

}  // namespace anomalis::chart
