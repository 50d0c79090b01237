#include "chart/detail/view_state.h"

#include <algorithm>
#include <cmath>

#include "chart/tick_rule.h"

namespace anomalis::chart {

namespace {

constexpr double largest_limit = 1e30;
constexpr double whole_view = 1e-9;

bool usable(Interval limits) {
    return limits.low != unset_limit && limits.high != unset_limit && limits.low <= largest_limit &&
           limits.high <= largest_limit && limits.low < limits.high && std::isfinite(limits.low);
}

/// A range without width is opened so far that its numbers can be told apart.
Interval opened(Interval range) {
    if (range.low < range.high) return range;
    const double room = std::max(1.0, std::abs(range.low) * 1e-6);
    return {range.low - room, range.low + room};
}

}  // namespace

void AxisRange::update(const AxisProperties& axis, const std::optional<Interval>& data, bool zoom_enabled) {
    if (!usable(limits)) {
        const Interval found = data ? opened(*data) : Interval{0.0, 1.0};
        limits = {axis.scale.inverse(found.low), axis.scale.inverse(found.high)};
    }
    tick_interval = axis.tick_interval > 0.0 ? axis.tick_interval : 1.0;
    full = opened({axis.scale.forward(limits.low), axis.scale.forward(limits.high)});
    if (zoom_enabled && zoomed())
        keep_inside(view);
    else
        clear_zoom();
}

void AxisRange::place(double span_factor, double middle) {
    const double span = view.span() * span_factor;
    if (span_factor < 1.0 && full.span() / span > deepest_zoom * (1.0 + whole_view)) return;
    keep_inside({middle - span / 2.0, middle + span / 2.0});
}

void AxisRange::set_zoom(double new_zoom, double new_centre) {
    const double span = full.span() / std::clamp(new_zoom, 1.0, deepest_zoom);
    const double middle = full.low + full.span() * new_centre;
    keep_inside({middle - span / 2.0, middle + span / 2.0});
}

void AxisRange::keep_inside(Interval window) {
    if (window.low < full.low) window = {full.low, window.high + (full.low - window.low)};
    if (window.high > full.high) window = {window.low - (window.high - full.high), full.high};
    window = {std::max(window.low, full.low), std::min(window.high, full.high)};
    const double new_zoom = full.span() / window.span();
    if (!(new_zoom > 1.0 + whole_view) || !std::isfinite(new_zoom)) {
        clear_zoom();
        return;
    }
    view = window;
    zoom = new_zoom;
    centre = ((view.low + view.high) / 2.0 - full.low) / full.span();
}

void AxisRange::clear_zoom() {
    zoom = 1.0;
    centre = 0.5;
    view = full;
}

double AxisRange::view_tick_interval() const {
    if (!(view.span() < full.span())) return tick_interval;
    return std::min(tick_interval, chart::tick_interval(view.low, view.high));
}

}  // namespace anomalis::chart
