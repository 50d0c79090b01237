#include "inversion/rows_problem.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/body_parameters.h"
#include "inversion/line_place.h"

namespace anomalis::inversion {

namespace {

constexpr double any_step = 1e30;
constexpr double size_factor = 3;
constexpr double depth_factor = 2.5;
constexpr double first_amplitude_factor = 100;
constexpr double amplitude_factor = 3;
constexpr double least_depth = 0.1;  // m
/// Weak holds: of a place so many depths, of the logarithm of a size or a depth, of an angle degrees. An
/// amplitude has none.
constexpr double place_hold = 3, size_hold = 1.5, angle_hold = 60;

double sensor_over(const Workspace& workspace, double distance) {
    return elevation_at(workspace, distance, column_sensor);
}

double angle_step(int param_code) {
    return param_code == param_dip || param_code == param_strike ? 30 : 20;
}

}  // namespace

FitParameter fit_parameter(const Workspace& workspace, const ModelBody& body, int param_code,
                           const InversionParam& param) {
    FitParameter fit{.value = param.value, .lower = param.lower, .upper = param.upper};
    const double sensor = sensor_over(workspace, static_cast<double>(body.distance.value));
    const double depth = std::max(std::abs(sensor - static_cast<double>(body.top.value)), least_depth);
    switch (param_code) {
        case param_distance:
        case param_offset:
            fit.hold = place_hold * depth;
            return fit;
        case param_top: {
            fit.origin = static_cast<float>(sensor);
            fit.hold = size_hold;
            fit.logarithmic = sensor - static_cast<double>(param.value) > least_depth;
            if (!fit.logarithmic) fit.hold *= depth;
            return fit;
        }
        case param_width:
        case param_depth_extent:
        case param_length:
            fit.logarithmic = param.value > 0 && param.lower >= 0;
            fit.hold = fit.logarithmic ? size_hold : 0;
            return fit;
        case param_susc:
            fit.logarithmic = param.value > 0 && param.lower >= 0;
            return fit;
        case param_strike:
        case param_dip:
        case param_plunge:
        case param_slope:
        case param_rem_d:
        case param_rem_i:
            fit.hold = angle_hold;
            return fit;
        default:
            return fit;
    }
}

RowsProblem::RowsProblem(const Workspace& workspace, FitRows& rows, std::span<const FitParameter> parameters,
                         Pacer& pacer)
    : workspace_(workspace), rows_(rows), pacer_(pacer), parameters_(parameters) {
    for (const FitParameter& parameter : parameters) {
        lower_.push_back(parameter.lower);
        upper_.push_back(parameter.upper);
    }
}

/// What fits already is left as it is.
void RowsProblem::residuals(std::vector<float>& values, Eigen::VectorXd& out) {
    const bool begins = std::exchange(begins_, false);
    if (begins) {
        rows_.residuals(values, out);
        if (out.norm() <= 2 * rows_.rounding()) return;
    }
    rows_.residuals_at_best_amplitudes(values, lower_, upper_,
                                       begins ? first_amplitude_factor : amplitude_factor, out);
}

void RowsProblem::columns(std::span<const float> values, Eigen::MatrixXd& out) {
    rows_.columns(values, out);
}

/// Of the body of a parameter, from the sensor over it to its top.
double RowsProblem::depth(std::size_t index, std::span<const float> values) const {
    const auto& places = rows_.request().places;
    const ModelBody& body = rows_.bodies()[static_cast<std::size_t>(places[index].body)];
    double top = body.top.value, distance = body.distance.value;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].body != places[index].body) continue;
        if (places[i].param_code == param_top) top = values[i];
        if (places[i].param_code == param_distance) distance = values[i];
    }
    return std::max(std::abs(sensor_over(workspace_, distance) - top), least_depth);
}

double RowsProblem::largest_step(std::size_t index, std::span<const float> values) const {
    const FitParameter& parameter = parameters_[index];
    const int code = rows_.request().places[index].param_code;
    const double size = std::abs(static_cast<double>(values[index]));
    switch (code) {
        case param_top:
            return parameter.logarithmic ? depth_factor : std::max(depth(index, values), 1.0);
        case param_distance:
            return depth(index, values);
        case param_offset:
            return std::max(depth(index, values), size);
        case param_strike:
        case param_dip:
        case param_plunge:
        case param_slope:
        case param_rem_d:
        case param_rem_i:
            return angle_step(code);
        case param_rem_q:
            return std::max(size, 1.0);
        default:
            return parameter.logarithmic ? size_factor : any_step;
    }
}

void RowsProblem::largest_steps(std::span<const float> values, std::span<double> out) const {
    for (std::size_t i = 0; i < values.size(); ++i) out[i] = largest_step(i, values);
}

}  // namespace anomalis::inversion
