#pragma once

#include <string>

#include "chart/detail/axis_transform.h"

namespace anomalis::chart {

/// The number format of a linear axis with this interval between ticks: "0", or "0." and as many zeros as the
/// interval needs: at most 3 from an interval of 0.002 on, at most 9 below.
std::string tick_format(double interval);

/// The text of a tick at `value` (transformed units). On a logarithmic axis whole numbers beyond the linear
/// band are powers of the base; what lies between is the value itself with three significant digits.
std::string tick_text(double value, const AxisTransform& scale, const std::string& format);

/// A value with so many significant digits, without trailing zeros; very large and small ones as "mx10^e".
std::string significant_text(double value, int digits);

}  // namespace anomalis::chart
