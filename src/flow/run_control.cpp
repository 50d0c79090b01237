#include "flow/run_control.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "core/text.h"
#include "inversion/parameters.h"
#include "model/misfit.h"

namespace anomalis::flow {

namespace {

std::string misfit_text(float misfit) {
    return format_number(misfit, "0.000");
}

}  // namespace

int RunControl::corrected_channel(int index) const {
    if (index == channel_joint) {
        if (session_.workspace.has_mag() && session_.workspace.has_grav() &&
            panel_.method == inversion::InversionMethod::least_squares)
            return index;
        index = channel_mag;
    }
    if (index == channel_mag && !session_.workspace.has_mag()) index = channel_grav;
    if (index == channel_grav && !session_.workspace.has_grav()) index = channel_mag;
    return index;
}

int RunControl::iteration_limit() const {
    const std::string& text = panel_.max_iterations_text;
    if (trim_blanks(text).empty() || !is_numeric(text)) return inversion::default_iterations;
    constexpr double most = 2147483647;
    return std::max(round_to_even(std::clamp(prefix_number(text), 1.0, most)), 1);
}

void RunControl::command_invert(int index) {
    if (busy_) return;
    panel_.status_visible = false;
    if (session_.workspace.station_count <= 0) return changed();
    panel_.channel_index = corrected_channel(panel_.channel_index);
    const int limit = iteration_limit();
    begin_run(index);
    run(index, limit);
    end_run(limit);
}

void RunControl::set_method(inversion::InversionMethod method) {
    panel_.method = method;
    panel_.channel_index = corrected_channel(panel_.channel_index);
    changed();
}

void RunControl::begin_run(int index) {
    busy_ = true;
    close_requested_ = false;
    if (session_.log.on())
        session_.log.log_message(1, "Command_invert_Click Index: " + format_number(std::int32_t{index}, "0"));
    panel_.reject_changes_enabled = false;
    panel_.stop_frame = true;
    panel_.num_iterations_text = "0";
    session_.inversion.stop_inversion = false;
    panel_.misfit.fill("");
    panel_.hourglass = true;
    view_.run_state(true);
    changed();
}

void RunControl::run(int index, int limit) {
    // One command, so one scope: a message of each evaluation is shown once, with its count.
    const MessageScope scope(session_.prompts);
    const inversion::RunRequest request{.entire_model = index == 1,
                                        .current_body = view_.current_body(),
                                        .channel = panel_.channel_index,
                                        .max_iterations = limit,
                                        .method = panel_.method};
    result_ = {};
    inversion::perform_inversion(session_, request, *this, result_);
}

void RunControl::end_run(int limit) {
    panel_.hourglass = false;
    panel_.stop_frame = false;
    session_.inversion.stop_inversion = false;
    panel_.max_iterations_text = format_number(std::int32_t{limit}, "0");
    // Without a list of its own a run has no start values: a reject would bring back those of an older one.
    panel_.reject_changes_enabled = result_.filled;
    panel_.status_text = inversion::status_label(result_.status);
    panel_.status_visible = true;
    if (result_.status >= 0) session_.model_changed = true;
    changed();
    session_.prompts.yield();
    busy_ = false;
    view_.run_state(false);
    view_.display_body_parameters();
    reset_calculated_data(session_.workspace, session_.prompts);
    view_.display_model();
}

void RunControl::command_stop_inversion() {
    panel_.stop_frame = false;
    session_.inversion.stop_inversion = true;
    changed();
    session_.prompts.yield();
}

bool RunControl::may_close() {
    if (!busy_) return true;
    close_requested_ = true;
    session_.inversion.stop_inversion = true;
    return false;
}

void RunControl::apply_values(const Array1<float>& values) {
    InversionState& inversion = session_.inversion;
    const int count = std::min(values.count(), inversion.inversion_params.count());
    for (int i = 1; i <= count; ++i) inversion.inversion_params[i].value = values[i];
    double penalty = 0;
    inversion::apply_all_parameters(penalty, session_);
    session_.model_changed = true;
}

void RunControl::command_reject_changes() {
    if (busy_ || !panel_.reject_changes_enabled) return;
    reset_inversion_display();
    apply_values(session_.inversion.start_params);
    view_.display_body_parameters();
    view_.display_model();
    panel_.misfit[0] = panel_.misfit[1];
    panel_.misfit[2] = panel_.misfit[3];
    changed();
}

void RunControl::command_restore_best() {
    if (busy_) return;
    InversionState& inversion = session_.inversion;
    if (inversion.best_misfit[0] > unset && inversion.best_model_available) {
        panel_.misfit[0] = panel_.misfit[1] = misfit_text(inversion.best_misfit[0]);
        panel_.misfit[2] = panel_.misfit[3] = misfit_text(inversion.best_misfit[1]);
        // One step back from a restore is always on disk.
        view_.save_recovery_model(recovery_file);
        apply_values(inversion.best_params);
        view_.display_body_parameters();
        view_.display_model();
    }
    disable_undo();
    forget_best_model(inversion);
    changed();
}

void RunControl::disable_undo() {
    panel_.restore_best_enabled = false;
    panel_.reject_changes_enabled = false;
}

void RunControl::reset_inversion_display() {
    panel_.misfit.fill("");
    disable_undo();
    session_.inversion.best_misfit = {unset, unset};
    changed();
}

void RunControl::bodies_changed() {
    reset_inversion_display();
    forget_run(session_.inversion);
}

void RunControl::set_view(bool invert) {
    panel_.invert_frame = invert;
    panel_.toggle_caption = invert ? "Move This Body" : "Perform Inversion";
    panel_.stop_frame = false;
    panel_.status_visible = false;
}

void RunControl::show_move_view() {
    set_view(false);
    changed();
}

void RunControl::command_toggle_invert_body() {
    Workspace& workspace = session_.workspace;
    if (busy_ || workspace.body_count <= 0 || workspace.station_count <= 0) return;
    set_view(!panel_.invert_frame);
    session_.inversion.stop_inversion = false;
    reset_inversion_display();
    Faults faults;
    const MisfitPair misfit =
        model::evaluate_model_misfit(session_, workspace.mag.data, workspace.grav.data, faults);
    show_faults(faults, session_.prompts);
    show_initial_misfit(misfit);
}

void RunControl::combo_invert(int index) {
    if (busy_) return;
    panel_.channel_index = corrected_channel(index);
    changed();
}

void RunControl::check_inversion_mode(int target) {
    if (busy_) return;
    session_.inversion.inversion_target = target == 1 ? target_gradient : target_data;
    reset_inversion_display();
}

void RunControl::show_initial_misfit(const MisfitPair& misfit) {
    panel_.misfit[0] = misfit_text(misfit[0]);
    panel_.misfit[2] = misfit_text(misfit[1]);
    changed();
}

void RunControl::show_current_misfit(const MisfitPair& misfit) {
    panel_.misfit[1] = misfit_text(misfit[0]);
    panel_.misfit[3] = misfit_text(misfit[1]);
    changed();
}

void RunControl::show_iteration(int iteration) {
    panel_.num_iterations_text = format_number(std::int32_t{iteration}, "0");
    changed();
}

void RunControl::display_iteration() {
    view_.display_iteration();
}

void RunControl::progress(const inversion::InversionProgress& state) {
    view_.progress(state);
}

void RunControl::best_model(bool available) {
    panel_.restore_best_enabled = available;
    changed();
}

}  // namespace anomalis::flow
