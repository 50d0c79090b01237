#include "chart/tick_rule.h"

#include <cmath>
#include <initializer_list>

namespace anomalis::chart {

double tick_interval(double low, double high, int intervals) {
    const double wanted = (high - low) / intervals;
    if (!std::isfinite(wanted) || wanted <= 0.0) return 1.0;
    const double decade = std::pow(10.0, std::floor(std::log10(wanted)));
    if (!std::isnormal(decade)) return 1.0;
    // A step equal to the wanted one up to rounding is large enough.
    for (const double step : {1.0, 2.0, 5.0, 10.0})
        if (step * decade >= wanted * (1.0 - 1e-9)) return step * decade;
    return 20.0 * decade;
}

double next_multiple(double multiple) {
    const double decade = std::pow(10.0, std::floor(std::log10(multiple) + 1e-9));
    const double leading = std::round(multiple / decade);
    return std::round(decade * (leading < 2.0 ? 2.0 : leading < 5.0 ? 5.0 : 10.0));
}

TickLimits nearest_tick_limits(double low, double high, int intervals) {
    const double interval = tick_interval(low, high, intervals);
    return {std::round(low / interval) * interval, std::round(high / interval) * interval, interval};
}

TickLimits outward_tick_limits(double low, double high, int intervals) {
    const double interval = tick_interval(low, high, intervals);
    return {std::floor(low / interval + 1e-9) * interval, std::ceil(high / interval - 1e-9) * interval,
            interval};
}

}  // namespace anomalis::chart
