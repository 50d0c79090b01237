#pragma once

#include <string>

#include "chart/detail/axis_transform.h"

namespace anomalis::chart {

/// The number format of a linear axis with this interval between ticks: "0", or "0." and as many zeros as the
/// interval needs: at most 3 from an interval of 0.002 on, at most 9 below.
std::string tick_format(double interval);

/// The text of a tick at `value` on a linear axis; neighbours a whole interval apart never read the same.
std::string interval_text(double value, double interval);

/// A value with as many significant digits as tell it from those an interval apart.
std::string resolved_text(double value, double interval);

/// The text of a tick at `value` (transformed units). On a logarithmic axis whole numbers beyond the linear
/// band are powers of the base; what lies between is the value itself, 1 to 9 times a power of ten as such a
/// power is written, anything else with three significant digits.
std::string tick_text(double value, const AxisTransform& scale, const std::string& format);

/// A value with so many significant digits, without trailing zeros; very large and small ones as "mx10^e".
std::string significant_text(double value, int digits);

}  // namespace anomalis::chart
