#include "edit/parameter_bars.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/numbers.h"
#include "edit/body_form.h"
#include "edit/body_grid.h"
#include "edit/change.h"
#include "edit/pipe_tie.h"
#include "edit/workbench.h"

namespace anomalis::edit {

namespace {

constexpr double fine_part = 10;
constexpr double wire_separation_step = 0.1;

constexpr std::array<ParameterBar, 15> bars{{
    {"HScroll_dist", 0, param_distance, false},
    {"HScroll_strike", 0, param_strike, false},
    {"HScroll_dip", 0, param_dip, false},
    {"VScroll_depth", 0, param_top, true},
    {"VScroll_depth_extent", 0, param_depth_extent, true},
    {"HScroll_width", 0, param_width, false},
    {"HScroll_length", 0, param_length, false},
    {"VScroll_susc", 0, param_susc, true},
    {"VScroll_dens", 0, param_density, true},
    {"HScroll_plunge", 0, param_plunge, false},
    {"VScroll_slope", 0, param_slope, true},
    {"HScroll_offset", 0, param_offset, false},
    {"VScroll_RemJ", 0, param_rem_q, true},
    {"VScroll_RemJ", 2, param_rem_i, true},
    {"VScroll_RemJ", 4, param_rem_d, true},
}};

/// From `value` on, or above it, the step is `step`.
struct StepFrom {
    double value;
    double step;
};

double length_step(double value) {
    for (const StepFrom& entry : {StepFrom{500, 50}, StepFrom{250, 25}, StepFrom{25, 5}})
        if (value > entry.value) return entry.step;
    return 1;
}

double offset_step(const ModelBody& body) {
    if (body.type == wire) return wire_separation_step;
    const double size = std::abs(static_cast<double>(body.offset.value));
    for (const StepFrom& entry : {StepFrom{500, 50}, StepFrom{250, 25}, StepFrom{25, 5}})
        if (size >= entry.value) return entry.step;
    return 1;
}

double distance_step(const Workspace& workspace) {
    const double length = workspace.station_count > 0 ? workspace.distances.last() : 0;
    for (const StepFrom& below : {StepFrom{1, 0.05}, StepFrom{5, 0.1}, StepFrom{10, 0.25}, StepFrom{100, 0.5},
                                  StepFrom{200, 1}, StepFrom{500, 5}})
        if (length < below.value) return below.step;
    return 10;
}

double coarse_step(const Workspace& workspace, const ModelBody& body, ParamCode code) {
    switch (code) {
        case param_distance:
            return distance_step(workspace);
        case param_strike:
        case param_dip:
        case param_plunge:
            return 5;
        case param_slope:
            return 2;
        case param_top:
            if (body.type == pipe) return 1;
            return std::max(std::abs(static_cast<double>(body.top.value)) / 25, 0.1);
        case param_length:
        case param_width:
        case param_depth_extent:
            return length_step(static_cast<double>(body_param(body, code).value));
        case param_offset:
            return offset_step(body);
        case param_density:
            return 0.1;
        case param_susc:
            return std::max(std::abs(static_cast<double>(body.susc.value)) / 50, 10.0);
        case param_rem_q:
            return 0.01;
        case param_rem_i:
        case param_rem_d:
            return 2.5;
    }
    return 0;
}

double distance_outside(const ValueRange& range, double value) {
    return std::max({range.low - value, value - range.high, 0.0});
}

/// A value from a file may stand outside its range; it may only come nearer.
bool step_allowed(const ModelBody& body, ParamCode code, double before, double after) {
    if (!(std::abs(after) <= static_cast<double>(std::numeric_limits<float>::max()))) return false;
    switch (code) {
        case param_width:
        case param_length:
        case param_depth_extent:
            return after > 0;
        case param_susc:
            return before == 0 || (after != 0 && (after > 0) == (before > 0));
        default:
            break;
    }
    const ValueRange range = value_range(body.type, code);
    const double outside = distance_outside(range, after);
    return outside == 0 || outside < distance_outside(range, before);
}

void log_step(Session& session, const ParameterBar& bar, bool fine, const ModelBody& body) {
    if (!session.log.on()) return;
    const int member = bar.first_member + (fine ? 1 : 0);
    session.log.log_message(
        1, std::string(bar.control) + "_Scroll Index: " + std::to_string(member) +
               " Value: " + parameter_text(body.type, bar.code, body_param(body, bar.code).value));
}

}  // namespace

std::span<const ParameterBar> parameter_bars() {
    return bars;
}

double bar_step(const Workspace& workspace, const ModelBody& body, ParamCode code, bool fine) {
    const double step = coarse_step(workspace, body, code);
    return fine ? step / fine_part : step;
}

bool bar_usable(const Workbench& workbench, ParamCode code) {
    const ModelBody* body = current_body(workbench);
    return body && body_row(body->type, code).used;
}

bool step_parameter(Workbench& workbench, const ParameterBar& bar, bool fine, int direction) {
    Session& session = workbench.session;
    if (!line_loaded(session.workspace) || !bar_usable(workbench, bar.code) || direction == 0) return false;
    ModelBody& body = *current_body(workbench);
    const double step = bar_step(session.workspace, body, bar.code, fine) * (direction > 0 ? 1 : -1);
    const float before = body_param(body, bar.code).value;
    const double after = static_cast<double>(before) + step;
    if (!step_allowed(body, bar.code, static_cast<double>(before), after)) return false;
    const auto stored = static_cast<float>(after);
    if (stored == before) return false;
    if (bar.code == param_top) tie_susceptibility(workbench, body, step);
    store_parameter(workbench, bar.code, stored);
    log_step(session, bar, fine, body);
    const std::string name(param_name(bar.code));
    note_change(workbench, {of_current_body(workbench, name),
                            "bar:" + name + ":" + std::to_string(workbench.view.current_body), false});
    return true;
}

std::string bar_tip(const Workbench& workbench, const ParameterBar& bar, bool fine) {
    const ModelBody* body = current_body(workbench);
    if (!body || !body_row(body->type, bar.code).used) return "The body has no such parameter";
    const BodyRow row = body_row(body->type, bar.code);
    const double step = bar_step(workbench.session.workspace, *body, bar.code, fine);
    std::string tip = std::string(row.caption) + (fine ? ", fine steps of " : ", coarse steps of ") +
                      format_number(step, "0.####");
    if (!row.unit.empty()) tip += " " + std::string(row.unit);
    const ValueRange range = value_range(body->type, bar.code);
    if (range.high <= 360)
        tip += ", from " + format_number(range.low, "0") + " to " + format_number(range.high, "0");
    if (range.high > 360 && range.low == 0) tip += ", above 0";
    return tip + "\nArrow keys take coarse steps, with Shift fine ones";
}

}  // namespace anomalis::edit
