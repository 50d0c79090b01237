#pragma once

#include <string>
#include <vector>

namespace anomalis::chart {

/// What linked charts tell of one place along their X axis. The chart under the pointer shows the lines in
/// place of its own read-out.
struct LinkedCrosshair {
    double x = 0.0;                  ///< user units
    std::vector<std::string> lines;  ///< beside the place
    bool operator==(const LinkedCrosshair&) const = default;
};

/// A value with as many digits as `step`, the least difference that is told, is worth: at most 9 decimals.
std::string value_text(double value, double step);

}  // namespace anomalis::chart
