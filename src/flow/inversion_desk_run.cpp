// The run of the desk: what happens from the button to the numbers of the fitted model, and its stop.

#include "core/model_mark.h"
#include "core/numbers.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/fit_remark.h"
#include "flow/inversion_desk.h"
#include "model/usable_field.h"

namespace anomalis::flow {

void InversionDesk::command_invert(int index) {
    if (running()) return;
    follow_model();
    const Workspace& workspace = workbench_.session.workspace;
    if (workspace.station_count <= 0) {
        panel_.status_visible = false;
        return observer_.panel_changed();
    }
    if (edit::line_loaded(workspace) && !panel_.invert_frame) command_toggle_invert_body();
    panel_.channel_index = panel_.corrected_channel(panel_.channel_index, workspace);
    if (const std::string missing = model::missing_field(workspace, panel_.channel_index); !missing.empty()) {
        workbench_.session.prompts.message(missing);
        return observer_.panel_changed();
    }
    const int limit = panel_.iteration_limit();
    const int body = current_body();
    begin_run(index);
    run(index, body, limit);
    end_run(index, body, limit);
}

void InversionDesk::begin_run(int index) {
    Session& session = workbench_.session;
    session.inversion.running = true;
    session.inversion.stop_inversion = session.inversion.leave_inversion = false;
    close_requested_ = false;
    if (session.log.on())
        session.log.log_message(1, "Command_invert_Click Index: " + format_number(std::int32_t{index}, "0"));
    panel_.begin_run();
    observer_.run_changed();
    session.prompts.yield();
}

void InversionDesk::run(int index, int body, int limit) {
    Session& session = workbench_.session;
    // One command, so one scope: a message of each evaluation is shown once, with its count.
    const MessageScope scope(session.prompts);
    const inversion::RunRequest request{.entire_model = index == 1,
                                        .current_body = body,
                                        .channel = panel_.channel_index,
                                        .max_iterations = limit,
                                        .method = panel_.method,
                                        .starts = panel_.starts()};
    result_ = {};
    inversion::perform_inversion(session.workspace, session.inversion, request, *this, result_);
    show_faults(result_.faults, session.prompts);
}

void InversionDesk::end_run(int index, int body, int limit) {
    Session& session = workbench_.session;
    session.inversion.stop_inversion = session.inversion.leave_inversion = false;
    panel_.end_run(result_, limit);
    observer_.panel_changed();
    session.prompts.yield();
    session.inversion.running = false;
    observer_.run_changed();
    reset_calculated_data(session.workspace, session.prompts);
    if (result_.status >= 0 || result_.filled) {
        edit::note_change(workbench_,
                          {index == 1 ? "inversion of the model"
                                      : "inversion of body " + format_number(std::int32_t{body}, "0"),
                           "", false});
    }
    if (result_.record) {
        session.workspace.fit = result_.record;
        workbench_.forget_marks();
    }
    if (!result_.record) ended_mark_ = model_mark(session.workspace);
    show_fit();
    observer_.model_changed();
    if (close_requested_) observer_.close_wanted();
}

void InversionDesk::command_stop_inversion() {
    panel_.stop_frame = false;
    InversionState& inversion = workbench_.session.inversion;
    inversion.leave_inversion = inversion.stop_inversion;
    inversion.stop_inversion = true;
    observer_.panel_changed();
    workbench_.session.prompts.yield();
}

bool InversionDesk::may_close() {
    if (!running()) return true;
    InversionState& inversion = workbench_.session.inversion;
    inversion.leave_inversion = inversion.stop_inversion;
    inversion.stop_inversion = close_requested_ = true;
    return false;
}

void InversionDesk::evaluated() {
    workbench_.session.prompts.yield();
}

bool InversionDesk::working(double) {
    workbench_.session.prompts.yield();
    return workbench_.session.inversion.leave_inversion;
}

void InversionDesk::stage(inversion::RunStage stage) {
    panel_.stage = stage;
    observer_.stage_changed();
    workbench_.session.prompts.yield();
}

void InversionDesk::progress(const inversion::InversionProgress& state) {
    panel_.num_iterations_text = format_number(std::int32_t{state.iteration}, "0");
    observer_.panel_changed();
}

/// The curves move in both views.
void InversionDesk::display_iteration() {
    draw_charts();
    if (workbench_.view.show_plan) observer_.draw_chart(edit::model_chart_count);
    workbench_.session.prompts.yield();
}

void InversionDesk::best_model(bool available) {
    panel_.restore_best_enabled = available;
    observer_.panel_changed();
}

}  // namespace anomalis::flow
