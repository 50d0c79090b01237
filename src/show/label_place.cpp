#include "show/label_place.h"

#include <algorithm>
#include <cmath>

namespace anomalis::show {

namespace {

constexpr int steps_aside = 10;
constexpr int steps_up = 12;

chart::Point nearest_on_edge(chart::Point a, chart::Point b, chart::Point p) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double t = square > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0.0;
    return {a.x + t * dx, a.y + t * dy};
}

double distance(chart::Point a, chart::Point b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

/// Whether the segment from a to b has a point in the box: it is cut at each side in turn.
bool crosses(const chart::Rect& box, chart::Point a, chart::Point b) {
    double from = 0;
    double to = 1;
    const auto cut = [&](double start, double change, double low, double high) {
        if (change == 0) return start >= low && start <= high;
        const double first = (low - start) / change;
        const double second = (high - start) / change;
        from = std::max(from, std::min(first, second));
        to = std::min(to, std::max(first, second));
        return from <= to;
    };
    return cut(a.x, b.x - a.x, box.x_low, box.x_high) && cut(a.y, b.y - a.y, box.y_low, box.y_high);
}

/// By the even-odd rule.
bool encloses(const Outline& outline, chart::Point p) {
    bool inside = false;
    for (std::size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
        const chart::Point& a = outline[i];
        const chart::Point& b = outline[j];
        if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

struct Candidate {
    chart::Rect box;
    double cost = 0;
    bool beside = false;
    bool left = false;
};

chart::Rect box_at(const WantedLabel& wanted, double x, double y) {
    return {x, x + wanted.width, y, y + wanted.height};
}

bool inside(const chart::Rect& window, const chart::Rect& box) {
    return box.x_low >= window.x_low && box.x_high <= window.x_high && box.y_low >= window.y_low &&
           box.y_high <= window.y_high;
}

double side_of(const WantedLabel& wanted, bool left) {
    return left ? wanted.body.x_low - wanted.gap - wanted.width : wanted.body.x_high + wanted.gap;
}

std::vector<Candidate> candidates(const WantedLabel& wanted) {
    std::vector<Candidate> found;
    const double aside = std::max(wanted.width / 4, 1.0);
    const double up = std::max(wanted.height / 3, 1.0);
    for (const bool left : {wanted.left_side, !wanted.left_side})
        for (int k = 0; k <= steps_aside; ++k)
            for (int j = -steps_up; j <= steps_up; ++j) {
                const double x = side_of(wanted, left) + (left ? -k : k) * aside;
                const chart::Rect box = box_at(wanted, x, wanted.bottom + j * up);
                if (!inside(wanted.window, box)) continue;
                const bool level = box.y_high >= wanted.body.y_low && box.y_low <= wanted.body.y_high;
                const double cost =
                    k * aside + std::abs(j) * up + (left == wanted.left_side ? 0 : wanted.height);
                found.push_back({box, cost, k == 0 && level, left});
            }
    std::stable_sort(found.begin(), found.end(),
                     [](const Candidate& a, const Candidate& b) { return a.cost < b.cost; });
    return found;
}

}  // namespace

bool covers(const chart::Rect& box, const Outline& outline) {
    if (outline.empty()) return false;
    for (std::size_t i = 0; i < outline.size(); ++i)
        if (crosses(box, outline[i], outline[(i + 1) % outline.size()])) return true;
    return encloses(outline, {box.x_low, box.y_low});
}

chart::Point nearest_point(const Outline& outline, chart::Point place) {
    chart::Point nearest = outline.front();
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const chart::Point here = nearest_on_edge(outline[i], outline[(i + 1) % outline.size()], place);
        if (distance(here, place) < distance(nearest, place)) nearest = here;
    }
    return nearest;
}

LabelPlace place_label(const WantedLabel& wanted, const std::vector<Outline>& outlines) {
    for (const Candidate& candidate : candidates(wanted)) {
        if (std::any_of(outlines.begin(), outlines.end(),
                        [&](const Outline& outline) { return covers(candidate.box, outline); }))
            continue;
        LabelPlace place{candidate.box, std::nullopt};
        if (!candidate.beside)
            place.leader_from = chart::Point{candidate.left ? candidate.box.x_high : candidate.box.x_low,
                                             (candidate.box.y_low + candidate.box.y_high) / 2};
        return place;
    }
    const chart::Rect& window = wanted.window;
    const auto kept = [](double at, double size, double low, double high) {
        return std::clamp(at, low, std::max(low, high - size));
    };
    return {box_at(wanted, kept(side_of(wanted, wanted.left_side), wanted.width, window.x_low, window.x_high),
                   kept(wanted.bottom, wanted.height, window.y_low, window.y_high)),
            std::nullopt};
}

}  // namespace anomalis::show
