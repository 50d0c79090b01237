#include "flow/inversion_desk.h"

#include "core/body_parameters.h"
#include "core/model_body.h"
#include "core/numbers.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

InversionDesk::InversionDesk(edit::Workbench& workbench, InversionDeskHost& host)
    : workbench_(workbench),
      host_(host),
      control_(workbench.session, *this),
      bars_(workbench.session, control_, *this) {}

bool InversionDesk::has_current_body() const {
    const int number = workbench_.view.current_body;
    return number >= 1 && number <= workbench_.session.workspace.body_count;
}

int InversionDesk::current_body() const {
    return has_current_body() ? workbench_.view.current_body : 0;
}

void InversionDesk::invert(int index) {
    if (busy()) return;
    follow_model();
    if (edit::line_loaded(workbench_.session.workspace)) {
        show_view(true);
        host_.keep_model();
    }
    const int body = current_body();
    control_.command_invert(index);
    if (workbench_.session.workspace.station_count <= 0) return;
    const inversion::RunResult& result = control_.result();
    if (result.status >= 0 || result.filled) {
        edit::note_change(workbench_,
                          {index == 1 ? "inversion of the model"
                                      : "inversion of body " + format_number(std::int32_t{body}, "0"),
                           "", false});
        keep_fit_errors();
        host_.display_body_parameters();
        host_.show_caption();
    }
    if (control_.close_requested()) host_.close_window();
}

void InversionDesk::keep_fit_errors() {
    const auto& statistics = control_.result().statistics;
    const auto places = workbench_.session.inversion.inversion_param_map.span();
    if (!statistics || statistics->errors.size() != places.size()) return;
    for (std::size_t i = 0; i < places.size(); ++i)
        workbench_.fit_errors.push_back({places[i].body, places[i].param_code, statistics->errors[i]});
}

std::string InversionDesk::fit_remark() const {
    const auto& statistics = control_.result().statistics;
    if (!statistics || workbench_.fit_errors.empty()) return {};
    const auto& map = workbench_.session.inversion.inversion_param_map;
    const auto list = [&](const std::vector<int>& numbers, const std::string& words) {
        std::string text;
        for (const int number : numbers) {
            if (number < 1 || number > map.count()) continue;
            text += (text.empty() ? "" : ", ") + std::string(param_name(map[number].param_code)) +
                    " of body " + format_number(map[number].body, "0");
        }
        return text.empty() ? text : words + text;
    };
    const std::string open = list(statistics->undetermined, "The data leave open: ");
    const std::string held = list(statistics->at_limit, "Held by a limit: ");
    return open + (open.empty() || held.empty() ? "" : ". ") + held;
}

void InversionDesk::restore_best() {
    const bool had_best = workbench_.session.inversion.best_model_available;
    if (busy()) return;
    control_.command_restore_best();
    if (!had_best) return;
    edit::note_change(workbench_, {"restoring the best model", "", false});
    host_.show_caption();
}

void InversionDesk::reject_changes() {
    if (busy() || !panel().reject_changes_enabled) return;
    control_.command_reject_changes();
    edit::note_change(workbench_, {"rejecting the inversion", "", false});
    host_.show_caption();
}

void InversionDesk::show_view(bool invert) {
    if (busy() || panel().invert_frame == invert) return;
    control_.command_toggle_invert_body();
}

void InversionDesk::line_changed() {
    if (busy()) return;
    seen_revision_ = workbench_.list_revision;
    control_.show_move_view();
    control_.reset_inversion_display();
    check_channel();
    host_.show_bars();
}

void InversionDesk::check_channel() {
    control_.combo_invert(panel().channel_index);
}

void InversionDesk::follow_model() {
    if (seen_revision_ == workbench_.list_revision) return;
    seen_revision_ = workbench_.list_revision;
    control_.bodies_changed();
}

void InversionDesk::place_bars(const LimitStrip& strip, const VisibleSpan& span) {
    bars_.update_inversion_limit_display(strip, span);
}

void InversionDesk::press_bar(int index, double x) {
    pressed_first_ = workbench_.session.workspace.first_station;
    pressed_last_ = workbench_.session.workspace.last_station;
    bars_.mouse_down(index, x);
}

void InversionDesk::move_bar(int index, double x) {
    bars_.mouse_move(index, x);
    host_.show_bars();
}

void InversionDesk::release_bar(int index) {
    if (!bars_.dragging()) return;
    bars_.mouse_up(index);
    const Workspace& workspace = workbench_.session.workspace;
    if (workspace.first_station != pressed_first_ || workspace.last_station != pressed_last_)
        edit::note_change(workbench_, {"stations of the fit", "", false});
    host_.show_bars();
    host_.show_caption();
}

void InversionDesk::display_model() {
    host_.display_model();
}

void InversionDesk::display_charts() {
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (i != edit::chart_section || !workbench_.view.show_plan) host_.display_chart(i);
}

/// The curves move in both views.
void InversionDesk::display_iteration() {
    display_charts();
    if (workbench_.view.show_plan) host_.display_plan_view();
}

/// A failure is told; the step back goes on, since the history has the model too.
void InversionDesk::save_recovery_model(const std::string& path) {
    workspace_file::write_model_parameters(0, path, workbench_.session.workspace, workbench_.session.prompts);
}

}  // namespace anomalis::flow
