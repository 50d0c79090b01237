#include "flow/inversion_desk.h"

#include <algorithm>

#include "core/model_mark.h"
#include "core/numbers.h"
#include "core/pacer.h"
#include "core/worth_text.h"
#include "edit/change.h"
#include "edit/fit_in_force.h"
#include "edit/workbench.h"
#include "flow/fit_remark.h"
#include "flow/kept_files.h"
#include "flow/new_line_choice.h"
#include "forward/body_price.h"
#include "inversion/parameters.h"
#include "model/misfit.h"
#include "show/fit_quality.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

InversionDesk::InversionDesk(edit::Workbench& workbench, InversionDeskObserver& observer)
    : workbench_(workbench),
      observer_(observer),
      bars_(workbench.session.workspace, workbench.session.prompts) {
    panel_.method = workbench.method = last_method(workbench.session.settings);
}

bool InversionDesk::running() const {
    return workbench_.session.inversion.running;
}

int InversionDesk::current_body() const {
    const int number = workbench_.view.current_body;
    return number >= 1 && number <= workbench_.session.workspace.body_count ? number : 0;
}

// Undo paths.

void InversionDesk::apply_values(const Array1<float>& values) {
    Session& session = workbench_.session;
    auto& params = session.inversion.inversion_params;
    const int count = std::min(values.count(), params.count());
    for (int i = 1; i <= count; ++i) params[i].value = values[i];
    double penalty = 0;
    Faults faults;
    inversion::apply_all_parameters(penalty, {session.workspace, session.inversion, faults});
    show_faults(faults, session.prompts);
}

void InversionDesk::change_model(const std::string& what) {
    edit::note_change(workbench_, {what, "", false});
    observer_.model_changed();
}

void InversionDesk::command_reject_changes() {
    if (running() || !panel_.reject_changes_enabled) return;
    reset_inversion_display();
    apply_values(workbench_.session.inversion.start_params);
    change_model("rejecting the inversion");
    panel_.misfit[0] = panel_.misfit[1];
    panel_.misfit[2] = panel_.misfit[3];
    observer_.panel_changed();
}

void InversionDesk::command_restore_best() {
    if (running()) return;
    Session& session = workbench_.session;
    InversionState& inversion = session.inversion;
    if (inversion.best_misfit[0] > unset && inversion.best_model_available) {
        panel_.show_initial_misfit(inversion.best_misfit);
        panel_.show_current_misfit(inversion.best_misfit);
        // One step back from a restore is always on disk. A failure is told; the step back goes on, since the
        // history has the model too.
        if (!refused_over_open_file("The model before the restore", recovery_file, session.workspace,
                                    session.prompts)) {
            workspace_file::write_model_parameters(0, recovery_file, session.workspace, session.prompts);
            workbench_.known_files.note(recovery_file, stamp_file(recovery_file));
        }
        apply_values(inversion.best_params);
        change_model("restoring the best model");
    }
    panel_.disable_undo();
    forget_best_model(inversion);
    observer_.panel_changed();
}

void InversionDesk::reset_inversion_display() {
    panel_.misfit.fill("");
    panel_.disable_undo();
    workbench_.session.inversion.best_misfit = {unset, unset};
    observer_.panel_changed();
}

// The panel.

void InversionDesk::show_move_view() {
    panel_.show_view(false);
    observer_.panel_changed();
}

void InversionDesk::command_toggle_invert_body() {
    Session& session = workbench_.session;
    Workspace& workspace = session.workspace;
    if (running() || workspace.body_count <= 0 || workspace.station_count <= 0) return;
    panel_.show_view(!panel_.invert_frame);
    session.inversion.stop_inversion = false;
    reset_inversion_display();
    Faults faults;
    try {
        WatchedCalculation watched(session.prompts, forward::work_ahead(workspace));
        show_initial_misfit(model::evaluate_model_misfit(workspace, session.inversion, workspace.mag.data,
                                                         workspace.grav.data, faults, watched));
    } catch (const Stopped&) {
        // The boxes stay empty; the curves are those of before.
    }
    show_faults(faults, session.prompts);
}

void InversionDesk::combo_invert(int index) {
    if (running()) return;
    panel_.channel_index = panel_.corrected_channel(index, workbench_.session.workspace);
    observer_.panel_changed();
}

void InversionDesk::choose_method(inversion::InversionMethod method) {
    if (running()) return;
    panel_.method = workbench_.method = method;
    remember_method(method, workbench_.session.settings);
    combo_invert(panel_.channel_index);
}

void InversionDesk::check_inversion_mode(int target) {
    if (running()) return;
    workbench_.session.inversion.inversion_target = target == 1 ? target_gradient : target_data;
    reset_inversion_display();
}

void InversionDesk::show_initial_misfit(const MisfitPair& misfit) {
    panel_.show_initial_misfit(misfit);
    observer_.panel_changed();
}

void InversionDesk::show_current_misfit(const MisfitPair& misfit) {
    panel_.show_current_misfit(misfit);
    show_quality();
    observer_.panel_changed();
}

/// An estimate reads the whole line, and does not change with the bodies.
const show::ChannelNoise& InversionDesk::noise_of(int channel) {
    KnownNoise& known = noise_.at(static_cast<std::size_t>(channel));
    const bool fitted = edit::fit_in_force(workbench_) != nullptr;
    if (!known.noise || known.fitted != fitted)
        known = {show::channel_noise(workbench_.session.workspace, channel), fitted};
    return *known.noise;
}

std::string InversionDesk::noise_estimate(int channel) {
    const Workspace& workspace = workbench_.session.workspace;
    const bool column = channel == channel_mag ? workspace.has_mag() : workspace.has_grav();
    if (!column || !edit::line_loaded(workspace)) return {};
    const double noise = noise_of(channel).value;
    return noise > 0 ? text_of_worth(noise, noise / 10) : std::string();
}

void InversionDesk::show_quality() {
    const Workspace& workspace = workbench_.session.workspace;
    for (const int channel : {channel_mag, channel_grav}) {
        const auto i = static_cast<std::size_t>(channel);
        panel_.quality.at(i) = {};
        if (!edit::line_loaded(workspace)) continue;
        const auto quality = show::fit_quality(workspace, channel, noise_of(channel));
        if (quality) panel_.quality.at(i) = quality_lines(*quality, channel);
    }
}

/// The end of a run and its remarks are told as long as the model is as the run left it, also when a step
/// back and one forth have come in between.
void InversionDesk::show_fit() {
    panel_.remark_text = fit_remark();
    panel_.status_visible = panel_.end_told && as_the_run_left_it();
}

bool InversionDesk::as_the_run_left_it() const {
    if (result_.record) return edit::fit_in_force(workbench_) != nullptr;
    return bears_mark(workbench_.session.workspace, ended_mark_);
}

void InversionDesk::line_changed() {
    if (running()) return;
    seen_revision_ = workbench_.list_revision;
    forget_noise();
    show_fit();
    show_move_view();
    reset_inversion_display();
    combo_invert(panel_.channel_index);
    observer_.bars_changed();
}

void InversionDesk::follow_model() {
    show_fit();
    if (seen_revision_ == workbench_.list_revision) return;
    seen_revision_ = workbench_.list_revision;
    reset_inversion_display();
    forget_run(workbench_.session.inversion);
    if (workbench_.session.workspace.body_count == 0) show_move_view();
}

std::string InversionDesk::fit_remark() const {
    const FitRecord* fit = edit::fit_in_force(workbench_);
    return fit ? flow::fit_remark(*fit) : std::string();
}

// The limit bars.

void InversionDesk::draw_charts() {
    for (int i = 0; i < edit::model_chart_count; ++i)
        if (i != edit::chart_section || !workbench_.view.show_plan) observer_.draw_chart(i);
}

void InversionDesk::press_bar(int index, double x) {
    if (running()) return;
    pressed_first_ = workbench_.session.workspace.first_station;
    pressed_last_ = workbench_.session.workspace.last_station;
    bars_.mouse_down(index, x);
}

void InversionDesk::move_bar(int index, double x) {
    if (running() || !bars_.mouse_move(index, x)) return;
    draw_charts();
    reset_inversion_display();
    observer_.bars_changed();
}

void InversionDesk::release_bar(int index) {
    if (!bars_.mouse_up(index)) return;
    Session& session = workbench_.session;
    if (bars_.moved()) session.model_changed = true;
    const Workspace& workspace = session.workspace;
    const bool other_window =
        workspace.first_station != pressed_first_ || workspace.last_station != pressed_last_;
    if (other_window) forget_noise();
    if (other_window) edit::note_change(workbench_, {"stations of the fit", "", false});
    observer_.model_changed();
    observer_.bars_changed();
}

}  // namespace anomalis::flow
