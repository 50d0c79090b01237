#pragma once

#include <vector>

#include "chart/detail/axis_transform.h"
#include "chart/detail/view_state.h"

namespace anomalis::chart {

struct Tick {
    double count = 0.0;     ///< of intervals from 0
    double value = 0.0;     ///< transformed units
    double position = 0.0;  ///< surface units
};

/// The ticks of a view: whole multiples of the interval (so no error is summed), the ends taken with a little
/// tolerance, at most one every 2 screen pixels; none along an axis longer than `largest_surface`. Where the
/// interval is too fine for that it is taken 2, 5, 10, 20... times. `scale` is surface units a transformed
/// unit.
std::vector<Tick> make_ticks(Interval view, double interval, double scale, double plot_low);

/// The interval of the ticks that `make_ticks` gives.
double drawn_interval(double interval, double scale);

/// The values between ticks of this interval where shorter ticks stand: none where they would be nearer than
/// 5 screen pixels. Their positions in surface units; those of the ticks themselves are not among them.
std::vector<double> make_minor_ticks(Interval view, double interval, double scale, double plot_low);

}  // namespace anomalis::chart
