#pragma once

namespace anomalis::chart {

/// The interval for about `intervals` steps: the smallest of 1, 2, 5, 10 times a power of ten that is at
/// least (high - low) / intervals, compared with a relative tolerance of 1e-9. A range that is empty,
/// reversed or not finite gives 1.
double tick_interval(double low, double high, int intervals = 8);

/// The next of 1, 2, 5, 10, 20, 50...
double next_multiple(double multiple);

struct TickLimits {
    double low = 0.0;
    double high = 0.0;
    double interval = 1.0;
};

/// The interval, and the limits at its nearest multiples.
TickLimits nearest_tick_limits(double low, double high, int intervals = 8);
/// The interval, and the limits at its multiples outward, so that nothing between low and high is cut.
TickLimits outward_tick_limits(double low, double high, int intervals = 8);

}  // namespace anomalis::chart
