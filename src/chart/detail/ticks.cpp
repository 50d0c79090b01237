#include "chart/detail/ticks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "chart/surface_mapping.h"
#include "chart/tick_rule.h"

namespace anomalis::chart {

namespace {

constexpr double closest_ticks = 2.0 * units_per_screen_pixel;
constexpr double closest_minor_ticks = 5.0 * units_per_screen_pixel;
// A plot is no longer than a surface; the last digit may be lost on the way through the scale.
constexpr double longest_axis = largest_surface * 1.001;
constexpr double end_tolerance = 0.0001;
// Beyond this count of intervals from 0, neighbouring ticks are no longer different numbers.
constexpr double most_intervals = 1e15;

/// Into how many parts an interval may be cut so that they are round numbers again, the most first.
std::array<int, 3> parts_of(double interval) {
    const double mantissa = interval / std::pow(10.0, std::floor(std::log10(interval) + 1e-9));
    const auto is = [&](double m) { return std::abs(mantissa - m) < 1e-6; };
    if (is(1.0)) return {10, 5, 2};
    if (is(2.0)) return {4, 2, 0};
    if (is(5.0) || is(2.5)) return {5, 0, 0};
    return {0, 0, 0};
}

}  // namespace

double drawn_interval(double interval, double scale) {
    const double wanted = closest_ticks / (interval * scale);
    if (!(wanted > 1.0) || !std::isfinite(wanted)) return interval;
    double every = std::pow(10.0, std::floor(std::log10(wanted)));
    while (every < wanted * (1.0 - 1e-9)) every = next_multiple(every);
    return interval * every;
}

std::vector<Tick> make_ticks(Interval view, double interval, double scale, double plot_low) {
    std::vector<Tick> ticks;
    if (!(interval > 0.0) || !(scale > 0.0) || !(view.span() * scale <= longest_axis)) return ticks;
    const double step = drawn_interval(interval, scale);
    if (!std::isfinite(step) || std::max(std::abs(view.low), std::abs(view.high)) / step > most_intervals)
        return ticks;
    const double tolerance = std::min(end_tolerance, step / 1000.0);
    const double first = std::round(view.low / step);
    for (double k = first; k * step <= view.high + tolerance; k += 1.0) {
        const double value = k * step;
        if (value < view.low - tolerance) continue;
        ticks.push_back({k, value, (value - view.low) * scale + plot_low});
    }
    return ticks;
}

std::vector<double> make_minor_ticks(Interval view, double interval, double scale, double plot_low) {
    std::vector<double> found;
    if (!(interval > 0.0) || !(scale > 0.0) || !(view.span() * scale <= longest_axis)) return found;
    const double step = drawn_interval(interval, scale);
    if (!std::isnormal(step)) return found;
    for (const int parts : parts_of(step)) {
        if (parts < 2 || step * scale / parts < closest_minor_ticks) continue;
        const double part = step / parts;
        if (std::max(std::abs(view.low), std::abs(view.high)) / part > most_intervals) return found;
        for (double k = std::ceil(view.low / part); k * part <= view.high; k += 1.0)
            if (std::fmod(k, parts) != 0.0) found.push_back((k * part - view.low) * scale + plot_low);
        return found;
    }
    return found;
}

}  // namespace anomalis::chart
