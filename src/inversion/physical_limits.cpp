#include "inversion/physical_limits.h"

#include <array>

#include "inversion/line_place.h"

namespace anomalis::inversion {

namespace {

constexpr float open_limit = 1e32F;
constexpr float least_size = 0.01F;            // m
constexpr float least_susceptibility = 0.01F;  // micro SI
/// A body may stand so much of the window's length beyond its ends.
constexpr double reach = 0.5;

constexpr std::array<PhysicalLimit, 15> list{{
    {param_distance, "half the length of the fit window before it", "half the length beyond it"},
    {param_strike, "-360°", "360°"},
    {param_dip, "0° (a pipe -45°, a wire -360°)", "180° (a pipe 45°, a wire 360°)"},
    {param_top, "", "the ground at the place of the body"},
    {param_depth_extent, "0.01 m", ""},
    {param_width, "0.01 m", ""},
    {param_length, "0.01 m", ""},
    {param_susc, "0.01 µSI (a wire's current 0.01 mA)", ""},
    {param_density, "", ""},
    {param_plunge, "-45°", "45°"},
    {param_slope, "-80°", "80°"},
    {param_offset, "", ""},
    {param_rem_q, "0", ""},
    {param_rem_i, "-90°", "90°"},
    {param_rem_d, "-360°", "360°"},
}};

ParameterLimits of_place(const Workspace& workspace) {
    const double margin = reach * (workspace.last_distance - workspace.first_distance);
    if (!(margin > 0)) return {};
    return {static_cast<float>(workspace.first_distance - margin),
            static_cast<float>(workspace.last_distance + margin)};
}

ParameterLimits of_range(std::int32_t type, int param_code) {
    const ValueRange& range = value_range(type, param_code);
    return {static_cast<float>(range.low), static_cast<float>(range.high)};
}

ParameterLimits physical(const Workspace& workspace, const ModelBody& body, int param_code) {
    switch (param_code) {
        case param_distance:
            return of_place(workspace);
        case param_top:
            return {unset, static_cast<float>(elevation_at(
                               workspace, static_cast<double>(body.distance.value), column_ground))};
        case param_dip:
            // A pair of wires whose current is counted above 0 needs the whole turn.
            if (body.type == wire) return {-360, 360};
            return of_range(body.type, param_code);
        case param_strike:
        case param_plunge:
        case param_slope:
            return of_range(body.type, param_code);
        case param_width:
        case param_depth_extent:
        case param_length:
            return {least_size, unset};
        case param_susc:
            return {least_susceptibility, unset};
        case param_rem_q:
            return {0, unset};
        case param_rem_i:
            return {-90, 90};
        case param_rem_d:
            return {-360, 360};
        default:
            return {};
    }
}

/// What already stands beyond a bound is not held by it.
ParameterLimits around(ParameterLimits limits, float value) {
    if (value < limits.lower) limits.lower = unset;
    if (limits.upper != unset && value > limits.upper) limits.upper = unset;
    return limits;
}

ParameterLimits of_sweep(const Workspace& workspace, const ModelBody& body, const FitRule& rule) {
    const float lower = rule.lower.of(body, workspace), upper = rule.upper.of(body, workspace);
    return {lower > -open_limit ? lower : unset, upper < open_limit ? upper : unset};
}

}  // namespace

ParameterLimits limits_in_force(const Workspace& workspace, const ModelBody& body, int param_code,
                                InversionMethod method) {
    const BodyParameter& row = body_parameter(param_code);
    const BodyParam& param = body.*row.slot;
    ParameterLimits limits = method == InversionMethod::sweep
                                 ? of_sweep(workspace, body, row.fit)
                                 : around(physical(workspace, body, param_code), param.value);
    if (param.min > unset) limits.lower = param.min;
    if (param.max > unset) limits.upper = param.max;
    return limits;
}

std::span<const PhysicalLimit> physical_limits() {
    return list;
}

}  // namespace anomalis::inversion
