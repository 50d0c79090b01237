#include "inversion/parameters.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "inversion/physical_limits.h"

namespace anomalis::inversion {

namespace {

/// A body this far (m) beyond the window still takes part.
constexpr double window_margin = 10.0;
constexpr float open_limit = 1e32F;

const char* scan_failure(int mode) {
    return mode == 0 ? "An error occurred while counting the inversion model parameters: "
                     : "An error occurred while setting up the inversion parameters: ";
}

/// The upper test is against the end of the line, not of the window, on purpose:
/// test `Parameters, a_body_right_of_the_window_still_takes_part`.
bool takes_part(const ModelBody& body, const Workspace& workspace) {
    if (body.vary != 1 || body.turned_off != 0) return false;
    if (workspace.first_station <= 1 && workspace.last_station >= workspace.station_count) return true;
    if (workspace.distances.empty()) throw Fault(FaultKind::subscript);
    const auto place = static_cast<double>(body.distance.value);
    return workspace.first_distance - window_margin <= place &&
           place <= workspace.distances.last() + window_margin;
}

/// Limits that are not keyed. Those of the sweep are taken as they are: a default may lie below `unset`.
float blank_lower(const BodyParameter& row, const ModelBody& body, const Workspace& workspace,
                  InversionMethod method) {
    if (method == InversionMethod::sweep) return row.fit.lower.of(body, workspace);
    const float lower = limits_in_force(workspace, body, row.code, method).lower;
    return lower == unset ? -open_limit : lower;
}
float blank_upper(const BodyParameter& row, const ModelBody& body, const Workspace& workspace,
                  InversionMethod method) {
    if (method == InversionMethod::sweep) return row.fit.upper.of(body, workspace);
    const float upper = limits_in_force(workspace, body, row.code, method).upper;
    return upper == unset ? open_limit : upper;
}

void fill_parameter(const BodyParameter& row, int body_number, int index, const FittedModel& model,
                    InversionMethod method) {
    const Workspace& workspace = model.workspace;
    const ModelBody& body = workspace.body(body_number);
    const BodyParam& param = body.*row.slot;
    if (!std::isfinite(param.value))
        throw Fault(std::string(param_name(row.code)) + " of body " + std::to_string(body_number) +
                    " is not a number");
    InversionState& inversion = model.inversion;
    if (index > inversion.inversion_params.count()) throw Fault(FaultKind::subscript);
    inversion.inversion_params[index] = {
        .value = param.value,
        .lower = param.min > unset ? param.min : blank_lower(row, body, workspace, method),
        .upper = param.max > unset ? param.max : blank_upper(row, body, workspace, method),
        .step = row.fit.step.of(body, workspace),
    };
    inversion.inversion_param_map[index] = {body_number, row.code};
}

bool is_fitted(FitPart part, int channel) {
    return part == FitPart::shape || channel != (part == FitPart::magnetic ? channel_grav : channel_mag);
}

bool may_change(const BodyParameter& row, const ModelBody& body) {
    return row.fit.bodies == FitBodies::all || !is_round(body.type);
}

bool is_free(const BodyParameter& row, const ModelBody& body, const Workspace& workspace) {
    return (body.*row.slot).vary == 1.0F && may_change(row, body) &&
           (!row.fit.may_vary || row.fit.may_vary(body, workspace));
}

double barrier(double room, double step) {
    constexpr double wall = 10000;
    constexpr double per_decade = 2500;
    if (room <= step / wall) return wall;
    return room < step ? -per_decade * log10_abs(room / step) : 0.0;
}

}  // namespace

void setup_body_parameters(int mode, int channel, int body_number, int& parameter_count,
                           const FittedModel& model, InversionMethod method) {
    if (mode == 0) parameter_count = 0;
    report_failure(model.faults, scan_failure(mode), [&] {
        if (!takes_part(model.workspace.body(body_number), model.workspace)) return;
        for (const ParamCode code : fit_order()) {
            const BodyParameter& row = body_parameter(code);
            if (!is_fitted(row.fit.part, channel)) continue;
            if (!is_free(row, model.workspace.body(body_number), model.workspace)) continue;
            if (mode == 1) fill_parameter(row, body_number, parameter_count + 1, model, method);
            ++parameter_count;
        }
    });
}

void setup_all_body_parameters(int mode, int channel, int& parameter_count, const FittedModel& model,
                               InversionMethod method) {
    if (mode == 0) parameter_count = 0;
    for (int body = 1; body <= model.workspace.body_count; ++body) {
        if (mode == 0) {
            int count = 0;
            setup_body_parameters(mode, channel, body, count, model, method);
            parameter_count += count;
        } else {
            setup_body_parameters(mode, channel, body, parameter_count, model, method);
        }
    }
}

void apply_parameter(int index, double& penalty, const FittedModel& model) {
    const InversionState& inversion = model.inversion;
    const InversionParamPlace place = inversion.inversion_param_map[index];
    const InversionParam& param = inversion.inversion_params[index];
    ModelBody& body = model.workspace.body(place.body);
    BodyParam& slot = body_param(body, place.param_code);
    if (slot.value == param.value) return;
    if (!may_change(body_parameter(place.param_code), body)) return;
    slot.value = param.value;
    barrier_penalty(slot, param.step, penalty, model.faults);
}

void apply_all_parameters(double& penalty, const FittedModel& model) {
    penalty = 0;
    for (int i = 1; i <= model.inversion.inversion_params.count(); ++i) apply_parameter(i, penalty, model);
}

void barrier_penalty(const BodyParam& param, float step, double& penalty, Faults& faults) {
    report_failure(faults, "An error occurred while checking the barrier penalty : ", [&] {
        const auto v = static_cast<double>(param.value);
        const auto s = static_cast<double>(step);
        const auto raise_penalty = [&](double room) { penalty = std::max(penalty, barrier(room, s)); };
        if (param.min > unset) raise_penalty(v - static_cast<double>(param.min));
        if (param.max > unset) raise_penalty(static_cast<double>(param.max) - v);
    });
}

double log10_abs(double x) {
    return std::abs(x) > 0 ? std::log(std::abs(x)) / std::log(10.0) : 0.0;
}

}  // namespace anomalis::inversion
