#include "show/map_parts.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "chart/ax_grapher.h"
#include "chart/tick_rule.h"
#include "show/chart_look.h"

namespace anomalis::show {

namespace {

using chart::units_per_screen_pixel;

constexpr int chosen_width = 3;  // screen pixels
constexpr int casing_width = 6;  // the white about the chosen line
constexpr double name_gap = 4 * units_per_screen_pixel;
constexpr std::size_t most_names = 400;

bool overlap(const chart::Rect& a, const chart::Rect& b) {
    return a.x_low < b.x_high && b.x_low < a.x_high && a.y_low < b.y_high && b.y_low < a.y_high;
}

bool within(const chart::Rect& inner, const chart::Rect& outer) {
    return outer.contains({inner.x_low, inner.y_low}) && outer.contains({inner.x_high, inner.y_high});
}

}  // namespace

double part_of(std::vector<double>& values, double part) {
    const auto at = values.begin() +
                    static_cast<std::ptrdiff_t>(std::lround(part * static_cast<double>(values.size() - 1)));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

void take_map_look(chart::AX_Grapher& map) {
    constexpr float side_room = 12 * units_per_screen_pixel;
    take_chart_look(map);
    map.ChartType(1);
    map.XAxisLabel("East (m)");
    map.YAxisLabel("North (m)");
    map.XAxisRightMargin(side_room);
    map.EqualScales(true);
    map.Crosshair(false);
}

void frame_map(chart::AX_Grapher& map, const chart::Rect& extent) {
    const double margin = std::max({extent.width(), extent.height(), 1.0}) / 10;
    map.XAxisMin(extent.x_low - margin);
    map.XAxisMax(extent.x_high + margin);
    map.YAxisMin(extent.y_low - margin);
    map.YAxisMax(extent.y_high + margin);
    // The ticks hang on what is shown, which hangs on the room that their numbers take.
    map.Layout();
    const chart::Rect shown = map.FullRange();
    constexpr double pixels_a_number = 90;
    const auto interval = [](double low, double high, double units) {
        const int most =
            std::clamp(static_cast<int>(units / (pixels_a_number * units_per_screen_pixel)), 2, 8);
        return chart::tick_interval(low, high, most);
    };
    map.XTickInterval(interval(shown.x_low, shown.x_high, map.PlotRect().width()));
    map.YTickInterval(interval(shown.y_low, shown.y_high, map.PlotRect().height() * 1.5));
    map.Layout();
}

double track_spacing(const chart::AX_Grapher& map, const chart::Rect& extent, double length_m,
                     std::size_t lines) {
    constexpr std::size_t few_lines = 3;
    const double pixels_a_metre = map.XAxisScale() / units_per_screen_pixel;
    const double length = length_m * pixels_a_metre;
    const double area = extent.width() * extent.height() * pixels_a_metre * pixels_a_metre;
    return length > 0 && lines > few_lines ? area / length : 100;
}

void draw_chosen_track(chart::AX_Grapher& map, std::span<const chart::Point> track) {
    for (const auto& [colour, width] : {std::pair(chart::white, casing_width), {chosen_red, chosen_width}}) {
        std::optional<chart::Point> from, from_surface;
        for (std::size_t i = 0; i < track.size(); ++i) {
            const chart::Point to = track[i];
            const chart::Point surface = map.UserToSurface(to);
            const bool near = from && i + 1 < track.size() &&
                              std::abs(surface.x - from_surface->x) < 2 * units_per_screen_pixel &&
                              std::abs(surface.y - from_surface->y) < 2 * units_per_screen_pixel;
            if (near) continue;
            if (from) map.DrawLine(from->x, from->y, to.x, to.y, colour, width);
            from = to;
            from_surface = surface;
        }
    }
}

double squared_distance(chart::Point at, chart::Point a, chart::Point b) {
    const double de = b.x - a.x, dn = b.y - a.y;
    const double length = de * de + dn * dn;
    const double t =
        length > 0 ? std::clamp(((at.x - a.x) * de + (at.y - a.y) * dn) / length, 0.0, 1.0) : 0.0;
    const double e = at.x - (a.x + t * de), n = at.y - (a.y + t * dn);
    return e * e + n * n;
}

/// By Liang and Barsky (1984), at one end.
std::optional<chart::Point> entry_into(const chart::Rect& view, chart::Point from, chart::Point to) {
    double first = 0, last = 1;
    const auto cut = [&](double start, double step, double low, double high) {
        if (step == 0) {
            if (start < low || start > high) last = -1;
            return;
        }
        const double a = (low - start) / step, b = (high - start) / step;
        first = std::max(first, std::min(a, b));
        last = std::min(last, std::max(a, b));
    };
    cut(from.x, to.x - from.x, view.x_low, view.x_high);
    cut(from.y, to.y - from.y, view.y_low, view.y_high);
    if (first > last) return std::nullopt;
    if (first == 0) return from;
    const chart::Point at{from.x + first * (to.x - from.x), from.y + first * (to.y - from.y)};
    // Rounding must not put it beside the view.
    return chart::Point{std::clamp(at.x, view.x_low, view.x_high), std::clamp(at.y, view.y_low, view.y_high)};
}

bool MapNames::full() const {
    return taken_.size() >= most_names;
}

bool MapNames::place(const std::string& name, chart::Point begin_m, chart::Point ahead_m) {
    if (name.empty()) return false;
    const chart::Point begin = map_.UserToSurface(begin_m), ahead = map_.UserToSurface(ahead_m);
    const double width = map_.TextWidth(name), height = map_.TextHeight();
    const double dx = ahead.x - begin.x, dy = ahead.y - begin.y;
    chart::Point corner{begin.x - width / 2, begin.y - height / 2};
    if (std::abs(dx) >= std::abs(dy))
        corner.x = dx >= 0 ? begin.x - name_gap - width : begin.x + name_gap;
    else
        corner.y = dy >= 0 ? begin.y - name_gap - height : begin.y + name_gap;
    chart::Rect box{corner.x, corner.x + width, corner.y, corner.y + height};
    const chart::Rect plot = map_.PlotRect();
    if (!plot.contains(begin, 1)) return false;
    // At an edge of the plot it moves in beside the line.
    const double right =
        std::max(plot.x_low + name_gap - box.x_low, 0.0) - std::max(box.x_high - plot.x_high + name_gap, 0.0);
    const double up =
        std::max(plot.y_low + name_gap - box.y_low, 0.0) - std::max(box.y_high - plot.y_high + name_gap, 0.0);
    box = {box.x_low + right, box.x_high + right, box.y_low + up, box.y_high + up};
    if (!within(box, plot)) return false;
    if (std::ranges::any_of(taken_, [&](const chart::Rect& other) { return overlap(box, other); }))
        return false;
    const chart::Point place = map_.SurfaceToUser({box.x_low, box.y_low});
    map_.DrawText(0, place.x, place.y, name);
    taken_.push_back(box);
    return true;
}

}  // namespace anomalis::show
