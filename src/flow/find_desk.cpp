#include "flow/find_desk.h"

#include <algorithm>
#include <utility>

#include "core/failure.h"
#include "core/pacer.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/take_found.h"
#include "model/refresh_model.h"

namespace anomalis::flow {

namespace {

/// What the anomaly of a body spans, nT or mGal.
double strength_of(const ModelBody& body, int station_count, std::int32_t channel) {
    const int column = channel == channel_grav ? 2 : 1;
    float low = 0, high = 0;
    for (int i = 1; i <= station_count; ++i) {
        low = std::min(low, body.response(i, column));
        high = std::max(high, body.response(i, column));
    }
    return static_cast<double>(high) - static_cast<double>(low);
}

/// Number of the strongest body of those that were found; the first one where none was.
int strongest_of(const Workspace& model, int found, std::int32_t channel) {
    int strongest = std::max(model.body_count - found + 1, 1);
    double most = 0;
    for (int number = strongest; number <= model.body_count; ++number) {
        const double strength = strength_of(model.body(number), model.station_count, channel);
        if (strength > most) strongest = number;
        most = std::max(most, strength);
    }
    return strongest;
}

}  // namespace

FindDesk::FindDesk(edit::Workbench& workbench, FindDeskObserver& observer, Finder finder)
    : workbench_(workbench), observer_(observer), finder_(std::move(finder)) {}

bool FindDesk::running() const {
    return workbench_.session.inversion.running;
}

bool FindDesk::can_find() const {
    return !running() && edit::line_loaded(workbench_.session.workspace);
}

// What is chosen.

void FindDesk::choose_most(int most) {
    if (running()) return;
    state_.most = std::clamp(most, 1, FindState::most_bodies);
    observer_.panel_changed();
}

void FindDesk::choose_kinds(SheetKinds kinds) {
    if (running()) return;
    state_.kinds = kinds;
    observer_.panel_changed();
}

void FindDesk::choose_channel(std::int32_t channel) {
    if (running()) return;
    state_.channel = channel;
    observer_.panel_changed();
}

void FindDesk::choose_present(bool free) {
    if (running()) return;
    state_.free_present = free;
    observer_.panel_changed();
}

// The search.

void FindDesk::command_find() {
    if (!can_find()) return;
    forget();
    if (!bring_up_to_date()) return;
    begin_search();
    inversion::FindResult result;
    const MessageScope scope(workbench_.session.prompts);
    report_failure(workbench_.session.prompts, "An error occurred while looking for bodies: ", [&] {
        result = finder_(workbench_.session.workspace, state_.request(workbench_.session.workspace), *this);
    });
    end_search(std::move(result));
}

/// False when the person had the calculation left.
bool FindDesk::bring_up_to_date() {
    bool done = false;
    report_failure(workbench_.session.prompts, "An error occurred while calculating the model: ", [&] {
        model::refresh_model(workbench_.session);
        done = true;
    });
    return done;
}

void FindDesk::begin_search() {
    InversionState& run = workbench_.session.inversion;
    run.running = true;
    run.stop_inversion = run.leave_inversion = false;
    keep_ = cancel_ = close_requested_ = false;
    last_picture_ = {};
    picture_time_ = {};
    state_.searching = true;
    state_.stage = inversion::FindStage::noise;
    state_.bodies = 0;
    state_.rms = 0;
    observer_.run_changed();
    workbench_.session.prompts.yield();
}

void FindDesk::end_search(inversion::FindResult result) {
    InversionState& run = workbench_.session.inversion;
    run.running = run.stop_inversion = run.leave_inversion = false;
    state_.searching = false;
    observer_.show_model(nullptr);
    growing_.reset();
    show_faults(result.faults, workbench_.session.prompts);
    if (cancel_) {
        state_.label = "Cancelled: the model is as it was";
    } else {
        take_over(std::move(result));
    }
    observer_.run_changed();
    if (!state_.models.empty()) preview(0);
    if (close_requested_) observer_.close_wanted();
}

void FindDesk::take_over(inversion::FindResult result) {
    state_.label = std::move(result.label);
    state_.remarks = std::move(result.remarks);
    state_.models = std::move(result.models);
    ++state_.revision;
    for (const inversion::FoundModel& model : state_.models) models_.push_back(workspace_of(model));
}

void FindDesk::command_keep() {
    if (!state_.searching) return;
    keep_ = true;
}

void FindDesk::command_cancel() {
    if (!state_.searching) return;
    cancel_ = true;
}

bool FindDesk::may_close() {
    if (!state_.searching) return true;
    cancel_ = close_requested_ = true;
    return false;
}

/// The stop that every run has keeps what was found.
bool FindDesk::working(double) {
    workbench_.session.prompts.yield();
    return keep_ || cancel_ || workbench_.session.inversion.stop_inversion;
}

void FindDesk::stage(inversion::FindStage stage) {
    state_.stage = stage;
    observer_.panel_changed();
    workbench_.session.prompts.yield();
}

void FindDesk::grew(const inversion::FoundModel& model) {
    state_.bodies = model.found;
    state_.rms = model.rms;
    observer_.panel_changed();
    if (!picture_due()) return;
    const Clock::time_point began = Clock::now();
    std::unique_ptr<Workspace> next = workspace_of(model);
    observer_.show_model(next.get());
    growing_ = std::move(next);  // until now the charts stood on the rows of the one before
    last_picture_ = Clock::now();
    picture_time_ = last_picture_ - began;
    workbench_.session.prompts.yield();
}

/// Pictures take a fifth of the time at most, and there is one as soon as there is something to see.
bool FindDesk::picture_due() const {
    constexpr int share = 4;
    constexpr std::chrono::milliseconds least_pause{30};
    if (!growing_) return true;
    return Clock::now() - last_picture_ >= std::max<Clock::duration>(share * picture_time_, least_pause);
}

// The alternatives.

/// What a calculation has to tell is told when the model is taken.
std::unique_ptr<Workspace> FindDesk::workspace_of(const inversion::FoundModel& model) const {
    auto workspace = std::make_unique<Workspace>(workbench_.session.workspace);
    take_found(*workspace, model);
    workspace->ensemble.reset();
    Faults untold;
    model::refresh_numbers(*workspace, untold, no_pace());
    return workspace;
}

void FindDesk::preview(int index) {
    if (running() || index < 0 || index >= static_cast<int>(models_.size())) return;
    state_.previewed = index;
    observer_.show_model(&model(index));
    observer_.panel_changed();
}

void FindDesk::put_back() {
    if (state_.previewed < 0) return;
    state_.previewed = -1;
    observer_.show_model(nullptr);
    observer_.panel_changed();
}

void FindDesk::take(int index) {
    if (running() || index < 0 || index >= static_cast<int>(state_.models.size())) return;
    const inversion::FoundModel model = std::move(state_.models[static_cast<std::size_t>(index)]);
    Workspace& workspace = workbench_.session.workspace;
    const int strongest = strongest_of(this->model(index), model.found, state_.corrected_channel(workspace));
    forget();
    const bool first_bodies = workspace.body_count == 0;
    take_found(workspace, model);
    edit::note_change(workbench_, {"finding bodies", "", true});
    workbench_.view.current_body = strongest;
    observer_.model_taken(model.found, first_bodies);
}

void FindDesk::forget() {
    if (state_.searching) return;
    put_back();
    if (!state_.models.empty()) ++state_.revision;
    state_.models.clear();
    state_.label.clear();
    state_.remarks.clear();
    models_.clear();
    observer_.panel_changed();
}

}  // namespace anomalis::flow
