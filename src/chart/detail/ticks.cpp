#include "chart/detail/ticks.h"

#include <algorithm>
#include <cmath>

#include "chart/surface_mapping.h"

namespace anomalis::chart {

namespace {

constexpr double closest_ticks = 2.0 * units_per_screen_pixel;
// A plot is no longer than a surface; the last digit may be lost on the way through the scale.
constexpr double longest_axis = largest_surface * 1.001;
constexpr double end_tolerance = 0.0001;
constexpr double far_below = 99999.0;
// Beyond this count of intervals from 0, neighbouring ticks are no longer different numbers.
constexpr double most_intervals = 1e15;

}  // namespace

std::vector<Tick> make_ticks(Interval view, double interval, double scale, double plot_low) {
    std::vector<Tick> ticks;
    if (!(interval > 0.0) || !(scale > 0.0) || !(view.span() * scale <= longest_axis)) return ticks;
    const double every = std::max(1.0, std::ceil(closest_ticks / (interval * scale)));
    const double step = interval * every;
    if (!std::isfinite(step) || std::max(std::abs(view.low), std::abs(view.high)) / step > most_intervals)
        return ticks;
    const double tolerance = std::min(end_tolerance, step / 1000.0);
    const double first = std::round(view.low / step);
    for (double k = first; k * step <= view.high + tolerance; k += 1.0) {
        const double value = k * step;
        if (value < view.low - tolerance) continue;
        ticks.push_back({value, (value - view.low) * scale + plot_low});
    }
    return ticks;
}

LabelRoom::LabelRoom(double plot_low) : next_free_(plot_low - far_below) {}

bool LabelRoom::take(double begin, double next) {
    if (!(begin > next_free_)) return false;
    next_free_ = next;
    return true;
}

}  // namespace anomalis::chart
