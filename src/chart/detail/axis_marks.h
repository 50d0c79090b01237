#pragma once

#include <functional>
#include <string>
#include <vector>

#include "chart/detail/axis_transform.h"
#include "chart/detail/view_state.h"

namespace anomalis::chart {

/// One number of an axis, centred on its tick.
struct AxisNumber {
    double position = 0.0;  ///< along the axis, surface units
    double width = 0.0;     ///< of its text, surface units
    std::string text;
    bool zero = false;
};

/// What stands along one axis. Surface units.
struct AxisMarks {
    std::vector<double> ticks;
    std::vector<double> minor_ticks;  ///< shorter
    std::vector<AxisNumber> numbers;  ///< from low to high
};

/// The room of the numbers along their axis.
struct NumberRoom {
    Interval along;         ///< surface units, that no number may leave
    double height = 0.0;    ///< of a number; two are as far apart at least
    bool sideways = false;  ///< they stand side by side, not above each other
    std::function<double(const std::string&)> width_of;
};

/// Ticks and numbers of a view that begins at `plot_low` and has `scale` surface units a transformed unit.
///
/// Every tick is drawn. Where not all numbers have room, every 2nd, 5th, 10th, 20th... tick counted from zero
/// has one, so zero has its number whenever it is in view. A number that would leave the room is left out,
/// two numbers never touch and neighbours never read the same. Where there is room for one number alone,
/// there is one. On a logarithmic axis the ticks are powers of its base with 2 to 9 times each of them
/// between; a zoomed one has numbers at 1, 2 and 5 times each power, and within a decade at round values.
AxisMarks make_marks(const AxisRange& range, const AxisTransform& transform, double scale, double plot_low,
                     const NumberRoom& room);

}  // namespace anomalis::chart
