#include "edit/history.h"

#include <utility>

#include "edit/change.h"
#include "edit/workbench.h"
#include "model/settle.h"

namespace anomalis::edit {

/// What of the present state may change without a step: what a load or a calculation settled.
void History::refresh(const Workbench& workbench, const ModelState& model) {
    current_.model = model;
    current_.base_from_mean = workbench.base_from_mean;
    current_.line_loaded = line_loaded(workbench.session.workspace);
}

void History::start(const Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    undo_.clear();
    redo_.clear();
    gesture_.clear();
    current_ = {};
    current_.document = std::make_shared<Document>(Document{workspace.model_file, workspace.model_file_date});
    current_.saved = true;
    refresh(workbench, capture_state(workspace));
}

void History::note(const Workbench& workbench, const ModelChange& change) {
    if (!current_.document) {
        start(workbench);
        current_.saved = false;
        return;
    }
    const Workspace& workspace = workbench.session.workspace;
    const ModelState model = capture_state(workspace, current_.model);
    const bool another_file = workspace.model_file != current_.document->file;
    if (model == current_.model && !another_file) return refresh(workbench, model);

    const auto now = now_();
    const bool goes_on =
        !change.gesture.empty() && change.gesture == gesture_ && now - last_note_ <= gesture_pause;
    if (!goes_on) undo_.push_back({current_, change.what});
    if (undo_.size() > kept_steps) undo_.pop_front();
    redo_.clear();
    gesture_ = change.gesture;
    last_note_ = now;
    if (another_file)
        current_.document =
            std::make_shared<Document>(Document{workspace.model_file, workspace.model_file_date});
    current_.saved = false;
    refresh(workbench, model);
}

void History::absorb(const Workbench& workbench) {
    if (!current_.document) return;
    refresh(workbench, capture_state(workbench.session.workspace, current_.model));
}

void History::note_saved(const Workbench& workbench) {
    if (!current_.document) start(workbench);
    absorb(workbench);
    const Workspace& workspace = workbench.session.workspace;
    *current_.document = {workspace.model_file, workspace.model_file_date};
    for (Steps* steps : {&undo_, &redo_})
        for (Step& step : *steps)
            if (step.other.document == current_.document) step.other.saved = false;
    current_.saved = true;
    gesture_.clear();
}

void History::forget_saved() {
    current_.saved = false;
}

History::Move History::move(Workbench& workbench, Steps& from, Steps& to) {
    if (from.empty()) return {};
    absorb(workbench);
    Workspace& workspace = workbench.session.workspace;
    Step step = std::move(from.back());
    from.pop_back();
    Snapshot& target = step.other;

    Move result;
    result.moved = true;
    result.what = step.what;
    result.difference = compare_states(current_.model, target.model, workbench.view.current_body);
    result.another_file = target.document != current_.document;
    restore_state(workspace, current_.model, target.model);
    workspace.model_file = target.document->file;
    workspace.model_file_date = target.document->date;
    workbench.base_from_mean = target.base_from_mean;
    const auto unset_bases = unset_base_levels(workspace);
    model::settle_on_line(workspace);
    note_base_levels(workbench, unset_bases);
    result.line_wanted = target.line_loaded && !line_loaded(workspace);

    to.push_back({std::exchange(current_, std::move(target)), std::move(step.what)});
    gesture_.clear();
    absorb(workbench);
    return result;
}

}  // namespace anomalis::edit
