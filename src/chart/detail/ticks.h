#pragma once

#include <vector>

#include "chart/detail/axis_transform.h"
#include "chart/detail/view_state.h"

namespace anomalis::chart {

struct Tick {
    double value = 0.0;     ///< transformed units
    double position = 0.0;  ///< surface units
};

/// The ticks of a view: whole multiples of the interval (so no error is summed), the ends taken with a little
/// tolerance, at most one every 2 screen pixels; none along an axis longer than `largest_surface`. `scale` is
/// surface units a transformed unit.
std::vector<Tick> make_ticks(Interval view, double interval, double scale, double plot_low);

/// Which labels have room. Only a label that is taken moves the place where the next may start.
class LabelRoom {
  public:
    explicit LabelRoom(double plot_low);
    /// A label from `begin` on; `next` is where another may start after it.
    bool take(double begin, double next);

  private:
    double next_free_;
};

}  // namespace anomalis::chart
