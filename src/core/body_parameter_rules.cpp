#include "core/body_parameter_rules.h"

#include <algorithm>
#include <cmath>

#include "core/workspace.h"

namespace anomalis {

namespace {

constexpr double wire_separation_step = 0.1;

/// From `value` on, above it or below it, the step is `step`.
struct StepFrom {
    double value;
    double step;
};

double step_of_length(const BodyParam& param) {
    const auto value = static_cast<double>(param.value);
    for (const StepFrom& above : {StepFrom{500, 50}, StepFrom{250, 25}, StepFrom{25, 5}})
        if (value > above.value) return above.step;
    return 1;
}

/// With the exact formulas thin sheets end along strike as thick ones do.
bool may_end_along_strike(const ModelBody& body, const Workspace& workspace) {
    return body.type == thick_sheet || (body.type == thin_sheet && workspace.formulas == Formulas::exact);
}

}  // namespace

double distance_bar_step(const Workspace& workspace, const ModelBody&) {
    const double length = workspace.station_count > 0 ? workspace.distances.last() : 0;
    for (const StepFrom& below : {StepFrom{1, 0.05}, StepFrom{5, 0.1}, StepFrom{10, 0.25}, StepFrom{100, 0.5},
                                  StepFrom{200, 1}, StepFrom{500, 5}})
        if (length < below.value) return below.step;
    return 10;
}

double top_bar_step(const Workspace&, const ModelBody& body) {
    if (body.type == pipe) return 1;
    return std::max(std::abs(static_cast<double>(body.top.value)) / 25, 0.1);
}

double width_bar_step(const Workspace&, const ModelBody& body) {
    return step_of_length(body.width);
}

double depth_extent_bar_step(const Workspace&, const ModelBody& body) {
    return step_of_length(body.depth_extent);
}

double length_bar_step(const Workspace&, const ModelBody& body) {
    return step_of_length(body.length);
}

double offset_bar_step(const Workspace&, const ModelBody& body) {
    if (body.type == wire) return wire_separation_step;
    const double size = std::abs(static_cast<double>(body.offset.value));
    for (const StepFrom& from : {StepFrom{500, 50}, StepFrom{250, 25}, StepFrom{25, 5}})
        if (size >= from.value) return from.step;
    return 1;
}

double susceptibility_bar_step(const Workspace&, const ModelBody& body) {
    return std::max(std::abs(static_cast<double>(body.susc.value)) / 50, 10.0);
}

bool not_round_or_a_pipe(const ModelBody& body, const Workspace&) {
    return !is_round(body.type) || body.type == pipe;
}

bool ends_downwards(const ModelBody& body, const Workspace&) {
    return body.depth_extent.value > 0;
}

bool ends_along_strike(const ModelBody& body, const Workspace& workspace) {
    return body.length.value > 0 && may_end_along_strike(body, workspace);
}

bool lies_beside_line(const ModelBody& body, const Workspace& workspace) {
    return body.offset.value > 0 && may_end_along_strike(body, workspace);
}

bool susceptibility_stays(const ModelBody& body, const Workspace&) {
    return body.susc.vary != 1.0F;
}

bool has_remanence_direction(const ModelBody& body, const Workspace&) {
    return body.rem_q.value > 0 && !is_round(body.type);
}

float depth_extent_fit_step(const ModelBody& body, const Workspace&) {
    return body.depth_extent.value > 100 ? 5.0F : 1.0F;
}

float susceptibility_fit_step(const ModelBody& body, const Workspace&) {
    const float v = body.susc.value;
    if (v < 1000) return 10;
    if (v < 10000) return 25;
    if (v < 100000) return 250;
    if (v < 1000000) return 2500;
    return static_cast<float>(0.01 * static_cast<double>(v));
}

float highest_top(const ModelBody&, const Workspace& workspace) {
    return static_cast<float>(static_cast<double>(workspace.z_max) - 1.0);
}

/// An unlimited susceptibility may rise to 1.1 times its value at the start of the run and no further.
float highest_susceptibility(const ModelBody& body, const Workspace&) {
    return static_cast<float>(1.1 * static_cast<double>(body.susc.value));
}

}  // namespace anomalis
