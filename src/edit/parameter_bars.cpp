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

std::array<ParameterBar, body_parameter_count> bars_of_table() {
    std::array<ParameterBar, body_parameter_count> bars{};
    for (const BodyParameter& row : body_parameters())
        bars.at(static_cast<std::size_t>(row.code - first_param_code)) = {
            row.bar.control, row.bar.first_member, row.code, row.bar.upright};
    return bars;
}

double distance_outside(const ValueRange& range, double value) {
    return std::max({range.low - value, value - range.high, 0.0});
}

/// A value from a file may stand outside its range; it may only come nearer.
bool step_allowed(const ModelBody& body, ParamCode code, double before, double after) {
    if (!(std::abs(after) <= static_cast<double>(std::numeric_limits<float>::max()))) return false;
    const BodyParameter& row = body_parameter(code);
    if (row.bar.end == BarEnd::above_zero) return after > 0;
    if (row.bar.end == BarEnd::same_sign) return before == 0 || (after != 0 && (after > 0) == (before > 0));
    const ValueRange& range = row.range.of(body.type);
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
    static const auto bars = bars_of_table();
    return bars;
}

double bar_step(const Workspace& workspace, const ModelBody& body, ParamCode code, bool fine) {
    const double step = body_parameter(code).bar.step.of(workspace, body);
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
    const BodyRow row = body_row(body->type, bar.code, workbench.session.preferences.susceptibility_unit);
    const double step = bar_step(workbench.session.workspace, *body, bar.code, fine);
    const std::string size = row.factor == 1 ? format_number(step, "0.####")
                                             : shortest_text(static_cast<float>(step * row.factor));
    std::string tip =
        std::string(row.caption) + (fine ? ", fine steps of " : ", coarse steps of ") + with_unit(size, row);
    const ValueRange range = value_range(body->type, bar.code);
    if (range.high <= 360)
        tip += ", from " + format_number(range.low, "0") + " to " + format_number(range.high, "0");
    if (range.high > 360 && range.low == 0) tip += ", above 0";
    return tip + "\nArrow keys take coarse steps, with Shift fine ones";
}

}  // namespace anomalis::edit
