#include "forward/columns/difference_step.h"

#include <algorithm>
#include <cmath>

#include "core/body_parameters.h"

namespace anomalis::forward {

namespace {

constexpr double radian = 57.29577951308232;  ///< degrees
constexpr double unit_susceptibility = 1e6;   ///< micro SI
/// Part of a parameter's scale: near the cube root of the rounding.
constexpr double exact_part = 0x1p-14, classic_part = 0x1p-8;
/// Fewer units in the last place of a value would not be the same step to both sides.
constexpr double least_units = 4 * 0x1p-23;

/// From the lowest sensor down to the top of the body, or up to it; at least 1 m.
double reach(const Workspace& workspace, const ModelBody& body, const StationRange& range) {
    double least = largest_value;
    for (std::int32_t i = range.first; i <= range.last; ++i)
        least = std::min(least, std::abs(workspace.stations(i, column_sensor) - body.top.value));
    return std::clamp(least, 1.0, 1e6);
}

double scale_of(const Workspace& workspace, const ModelBody& body, const StationRange& range,
                int param_code) {
    switch (param_code) {
        case param_strike:
        case param_dip:
        case param_plunge:
        case param_slope:
        case param_rem_i:
        case param_rem_d:
            return radian;
        case param_rem_q:
        case param_density:
            return 1;
        case param_susc:
            return carries_current(body.type) ? std::max(std::abs(body.susc.value), 1.0F)
                                              : unit_susceptibility;
        default:
            return reach(workspace, body, range);
    }
}

double power_of_two_below(double value) {
    return std::exp2(std::floor(std::log2(value)));
}

bool never_negative(int param_code) {
    return param_code == param_width || param_code == param_length || param_code == param_depth_extent;
}

}  // namespace

DifferenceStep difference_step(const Workspace& workspace, const ModelBody& body, const StationRange& range,
                               int param_code) {
    const double value = body_param(body, param_code).value;
    const double size = std::abs(value);
    const double part = workspace.formulas == Formulas::exact ? exact_part : classic_part;
    // A power of two is added to the value without rounding.
    double step =
        power_of_two_below(std::max(part * scale_of(workspace, body, range, param_code), least_units * size));
    if (!never_negative(param_code))
        return {static_cast<float>(value - step), static_cast<float>(value + step)};
    if (size == 0) return {0, static_cast<float>(step), param_code != param_width};
    step = std::min(step, power_of_two_below(size / 2));
    return {static_cast<float>(value - step), static_cast<float>(value + step)};
}

}  // namespace anomalis::forward
