#include "flow/body_hand.h"

#include <array>
#include <cmath>
#include <utility>

#include "chart/ax_grapher.h"
#include "edit/body_form.h"
#include "edit/body_rows.h"
#include "edit/parameter_bars.h"
#include "edit/pipe_tie.h"
#include "edit/workbench.h"
#include "flow/model_view.h"
#include "show/handles/handle_marks.h"
#include "show/handles/plan_handles.h"
#include "show/handles/section_handles.h"
#include "show/model_charts.h"

namespace anomalis::flow {

namespace {

constexpr int plan_chart = edit::model_chart_count;
constexpr int left_button = 1;
constexpr double fine_part = 0.1;
constexpr double mouse_slack = 2 * show::handle_pixel;
constexpr double finger_slack = 6 * show::handle_pixel;
enum HandKey { left_key = 37, up_key = 38, right_key = 39, down_key = 40, delete_key = 46 };

bool is_finger(int marks) {
    return (marks & chart::finger_mark) != 0;
}

const edit::ParameterBar& bar_of(ParamCode code) {
    return edit::parameter_bars()[static_cast<std::size_t>(code - first_param_code)];
}

/// "Top -40.0 m", as the grid writes it.
std::string told_value(const ModelBody& body, ParamCode code) {
    const edit::BodyRow row = edit::body_row(body.type, code);
    const std::string value = edit::parameter_text(body.type, code, body_param(body, code).value);
    return std::string(row.caption) + " " + edit::with_unit(value, row);
}

}  // namespace

BodyHand::BodyHand(edit::Workbench& workbench, show::ModelCharts& charts, ModelViewHost& host)
    : workbench_(workbench), charts_(charts), host_(host) {}

chart::AX_Grapher& BodyHand::chart_of(int chart) const {
    return chart == plan_chart ? charts_.plan() : charts_.chart(chart);
}

/// The chart that shows bodies now.
bool BodyHand::is_ours(int chart) const {
    return chart == (workbench_.view.show_plan ? plan_chart : static_cast<int>(edit::chart_section));
}

chart::Point BodyHand::surface(int chart, float x, float y) const {
    const chart::DrawingDevice* device = chart_of(chart).Surface();
    return {x, (device ? device->height() : 0) - y};
}

show::HandleView BodyHand::view_of(int chart) const {
    const chart::AX_Grapher& shown = chart_of(chart);
    return {shown.ViewLimits(), shown.XAxisScale(), shown.YAxisScale(), shown.YAxisMin(),
            workbench_.view.profile_window_max};
}

std::vector<show::Handle> BodyHand::handles_of(int chart) const {
    const Session& session = workbench_.session;
    const ModelBody* body = edit::current_body(std::as_const(workbench_));
    if (!body || hidden_ || session.inversion.running || !is_ours(chart) ||
        !edit::line_loaded(session.workspace) || !chart_of(chart).HasPlotDefined())
        return {};
    return chart == plan_chart ? show::plan_handles(session.workspace, *body, view_of(chart))
                               : show::section_handles(session.workspace, *body, view_of(chart));
}

std::optional<show::Handle> BodyHand::under(int chart, chart::Point at, bool finger) const {
    const auto handles = handles_of(chart);
    const show::Handle* found =
        show::handle_under(chart_of(chart), handles, at, finger ? show::finger_reach : show::mouse_reach);
    return found ? std::optional(*found) : std::nullopt;
}

void BodyHand::show() {
    for (const int chart : {static_cast<int>(edit::chart_section), plan_chart}) {
        std::vector<show::Handle> handles = handles_of(chart);
        if (held_)
            std::erase_if(handles, [this](const show::Handle& h) { return h.kind != held_->handle.kind; });
        chart::TopMarks marks = show::handle_marks(handles, held_ ? held_->handle.kind : hot_);
        if (held_ && !handles.empty()) marks.note = show::handle_note(handles.front(), told());
        chart_of(chart).ShowTopMarks(std::move(marks));
    }
}

bool BodyHand::press(int chart, int button, int marks, float x, float y) {
    finish();
    if (button != left_button) return false;
    const chart::Point at = surface(chart, x, y);
    // What is half typed elsewhere is taken over first, and may change the body under the hand.
    if (!under(chart, at, is_finger(marks)) || !host_.may_change_body()) return false;
    const auto handle = under(chart, at, is_finger(marks));
    if (!handle) return false;
    const chart::Point stands = chart_of(chart).UserToSurface(handle->at);
    held_.emplace(Held{chart,
                       *handle,
                       edit::BodyDrag(workbench_),
                       at,
                       at,
                       {stands.x - at.x, stands.y - at.y},
                       is_finger(marks) ? finger_slack : mouse_slack});
    workbench_.view.body_held = true;
    chart_of(chart).Pointer(show::handle_pointer(*handle));
    show();
    return true;
}

void BodyHand::drag(int marks, float x, float y) {
    if (!held_) return;
    const chart::Point at = surface(held_->chart, x, y);
    if (std::hypot(at.x - held_->press.x, at.y - held_->press.y) < held_->slack) return;
    held_->slack = 0;
    if ((marks & chart::shift_mark) != 0) {
        held_->grip.x += (fine_part - 1) * (at.x - held_->pointer.x);
        held_->grip.y += (fine_part - 1) * (at.y - held_->pointer.y);
    }
    held_->pointer = at;
    const chart::Point target =
        chart_of(held_->chart).SurfaceToUser({at.x + held_->grip.x, at.y + held_->grip.y});
    if (held_->drag.set(wanted(target)))
        host_.body_changed();
    else
        show();
}

show::HandleValues BodyHand::wanted(chart::Point target) const {
    const Workspace& workspace = workbench_.session.workspace;
    const auto drag_handle = held_->chart == plan_chart ? show::drag_plan_handle : show::drag_section_handle;
    return drag_handle(workspace, held_->drag.start(), view_of(held_->chart), held_->handle.kind, target);
}

std::vector<std::string> BodyHand::told() const {
    const ModelBody& body = *edit::current_body(std::as_const(workbench_));
    std::vector<std::string> lines;
    for (const ParamCode code : show::handle_parameters(held_->handle.kind)) {
        if (held_->chart == plan_chart && code == param_top) continue;
        lines.push_back(told_value(body, code));
    }
    if (body.susc.value != held_->drag.start().susc.value) lines.push_back(told_value(body, param_susc));
    return lines;
}

void BodyHand::end(bool given_up) {
    if (held_) let_go(given_up);
}

void BodyHand::finish() {
    if (!held_) return;
    chart_of(held_->chart).LetGo();
    let_go(false);
}

void BodyHand::let_go(bool given_up) {
    Held held = *std::exchange(held_, std::nullopt);
    workbench_.view.body_held = false;
    if (held.drag.moved()) {
        if (given_up)
            held.drag.give_up();
        else
            held.drag.keep(show::handle_step(held.handle.kind, held.drag.start().type));
        host_.body_changed();
    }
    show();
}

void BodyHand::forget() {
    held_.reset();
    hot_.reset();
    workbench_.view.body_held = false;
    show();
}

void BodyHand::hide(bool hidden) {
    hidden_ = hidden;
    show();
}

void BodyHand::hover(int chart, float x, float y) {
    if (held_ || (chart != plan_chart && chart != edit::chart_section)) return;
    const auto handle = under(chart, surface(chart, x, y), false);
    chart::PointerShape shape = chart::PointerShape::usual;
    if (handle) {
        shape = show::handle_pointer(*handle);
    } else if (is_ours(chart)) {
        const int polygon = chart_of(chart).PolygonUnder(x, y);
        const int body = chart == plan_chart ? charts_.plan_body(polygon) : charts_.section_body(polygon);
        if (body > 0 && body != workbench_.view.current_body) shape = chart::PointerShape::choose;
    }
    chart_of(chart).Pointer(shape);
    const auto hot = handle ? std::optional(handle->kind) : std::nullopt;
    if (std::exchange(hot_, hot) != hot) show();
}

void BodyHand::leave(int chart) {
    if (held_ || (chart != plan_chart && chart != edit::chart_section)) return;
    chart_of(chart).Pointer(chart::PointerShape::usual);
    if (std::exchange(hot_, std::nullopt)) show();
}

bool BodyHand::key(int chart, int code, int marks) {
    const bool arrow = code >= left_key && code <= down_key;
    const bool plain = (marks & ~(arrow ? chart::shift_mark : 0)) == 0;
    if ((!arrow && code != delete_key) || !plain || hidden_ || !is_ours(chart)) return false;
    if (!edit::current_body(std::as_const(workbench_))) return false;
    if (held_) return true;
    if (code == delete_key) {
        host_.delete_body_wanted();
    } else if (host_.may_change_body()) {
        nudge(code, (marks & chart::shift_mark) != 0);
    }
    return true;
}

void BodyHand::nudge(int code, bool fine) {
    const bool upright = code == up_key || code == down_key;
    const int direction = code == up_key || code == right_key ? 1 : -1;
    if (edit::step_parameter(workbench_, bar_of(upright ? param_top : param_distance), fine, direction))
        host_.body_changed();
}

}  // namespace anomalis::flow
