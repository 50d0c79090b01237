#include "flow/uncertainty_desk.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/body_parameters.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/take_ensemble.h"

namespace anomalis::flow {

namespace {

double steady_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool is_free(const ModelBody& body) {
    return body.vary == 1 && body.turned_off == 0 &&
           std::ranges::any_of(body_parameters(),
                               [&](const BodyParameter& row) { return (body.*row.slot).vary == 1; });
}

bool any_free(const Workspace& workspace) {
    for (int number = 1; number <= workspace.body_count; ++number)
        if (is_free(workspace.body(number))) return true;
    return false;
}

std::string models(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " model" : " models");
}

}  // namespace

UncertaintyDesk::UncertaintyDesk(edit::Workbench& workbench, UncertaintyDeskObserver& observer, Find find)
    : workbench_(workbench), observer_(observer), find_(std::move(find)), now_(&steady_seconds) {}

std::string UncertaintyDesk::refusal() const {
    const Workspace& workspace = workbench_.session.workspace;
    if (!edit::line_loaded(workspace)) return "There is no line: load the data first";
    if (workspace.body_count < 1) return "The model has no body: add one, or find bodies";
    if (!any_free(workspace))
        return "No parameter is free: check the ones that the data shall tell, under Vary, of a body that is "
               "neither fixed nor turned off";
    return {};
}

inversion::EnsembleRequest UncertaintyDesk::request_of(const UncertaintyChoice& choice, int channel) const {
    const Workspace& workspace = workbench_.session.workspace;
    const bool both = workspace.has_mag() && workspace.has_grav();
    if (!both) channel = workspace.has_grav() ? channel_grav : channel_mag;
    return {.channel = channel,
            .target = workbench_.session.inversion.inversion_target,
            .samples =
                std::clamp(choice.samples, UncertaintyChoice::least_samples, UncertaintyChoice::most_samples),
            .vary_regional = choice.vary_regional,
            .vary_bodies = choice.vary_bodies,
            .strike_within = std::clamp(choice.strike_within, 0.0, UncertaintyChoice::widest_strike)};
}

void UncertaintyDesk::start(const UncertaintyChoice& choice, int channel) {
    InversionState& inversion = workbench_.session.inversion;
    if (running_ || inversion.running) return;
    found_ = false;
    outcome_ = refusal();
    if (!outcome_.empty()) return;
    running_ = inversion.running = true;
    leave_ = Leave::no;
    progress_ = {};
    observer_.run_changed();
    workbench_.session.prompts.yield();
    inversion::EnsembleResult result =
        find_(workbench_.session.workspace, request_of(choice, channel), *this);
    running_ = inversion.running = false;
    end_run(result);
    observer_.run_changed();
}

void UncertaintyDesk::leave(Leave how) {
    if (running_) leave_ = std::max(leave_, how);
}

bool UncertaintyDesk::working(double) {
    workbench_.session.prompts.yield();
    return leave_ != Leave::no;
}

void UncertaintyDesk::samples_done(int done, int of) {
    if (progress_.of == 0) first_sample_ = now_();
    progress_ = {.done = done, .of = of, .seconds_left = {}};
    // The first models tell little: some wait for memory, some run side by side.
    constexpr int telling = 5;
    if (done >= telling) progress_.seconds_left = (now_() - first_sample_) / done * (of - done);
    observer_.progress_changed();
    workbench_.session.prompts.yield();
}

void UncertaintyDesk::end_run(inversion::EnsembleResult& result) {
    const MessageScope scope(workbench_.session.prompts);
    show_faults(result.faults, workbench_.session.prompts);
    if (leave_ == Leave::drop) {
        outcome_ = "Cancelled: the model is as it was";
        return;
    }
    if (!result.ensemble) {
        outcome_ = "There is no ensemble: the model could not be fitted";
        return;
    }
    const std::size_t count = result.ensemble->samples.size();
    if (count < UncertaintyChoice::least_samples) {
        outcome_ = "Too few for a band: " + models(count) + ", " +
                   std::to_string(UncertaintyChoice::least_samples) + " are needed. The model is as it was";
        return;
    }
    outcome_ = (result.stopped ? "Stopped: " : "") + models(count) + " that explain the line";
    take(result);
}

void UncertaintyDesk::take(inversion::EnsembleResult& result) {
    Workspace& workspace = workbench_.session.workspace;
    take_ensemble(workspace, result);
    edit::note_change(workbench_, {"uncertainty of the model", "", false});
    found_ = true;
    observer_.model_changed();
}

}  // namespace anomalis::flow
