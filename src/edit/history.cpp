#include "edit/history.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/workspace.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "model/settle.h"

namespace anomalis::edit {

namespace {

/// A line with more stations is cheaper to load again than to keep.
constexpr std::int32_t most_kept_stations = 50'000;

}  // namespace

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

bool History::keeps_line(const Workspace& workspace) {
    return workspace.station_count <= most_kept_stations;
}

void History::note_other_model(const Workbench& workbench, const std::string& what,
                               std::shared_ptr<Workspace> former, const std::string& title) {
    const Workspace& workspace = workbench.session.workspace;
    if (current_.document) {
        current_.document->reports = workbench.reports;
        undo_.push_back({current_, what});
        if (undo_.size() > kept_steps) undo_.pop_front();
        redo_.clear();
        keep_left(*undo_.back().other.document, std::move(former));
    }
    gesture_.clear();
    current_ = {};
    current_.document =
        std::make_shared<Document>(Document{workspace.model_file, workspace.model_file_date, title});
    refresh(workbench, capture_state(workspace));
}

/// Those that were left longest ago lose their lines first: they are farthest in the steps.
void History::keep_left(Document& document, std::shared_ptr<Workspace> workspace) {
    if (!workspace || !keeps_line(*workspace)) return;
    document.left = std::move(workspace);
    for (Steps* steps : {&undo_, &redo_}) {
        std::size_t kept = 0;
        const Document* before = nullptr;
        for (auto step = steps->rbegin(); step != steps->rend(); ++step) {
            Document& other = *step->other.document;
            if (&other == before || !other.left) continue;
            before = &other;
            if (++kept > kept_lines) other.left = nullptr;
        }
    }
}

void History::absorb(const Workbench& workbench) {
    if (!current_.document) return;
    refresh(workbench, capture_state(workbench.session.workspace, current_.model));
}

void History::note_saved(const Workbench& workbench) {
    if (!current_.document) start(workbench);
    absorb(workbench);
    const Workspace& workspace = workbench.session.workspace;
    const std::string title = workspace.model_file.empty() ? current_.document->title : "";
    *current_.document = {workspace.model_file, workspace.model_file_date, title};
    for (Steps* steps : {&undo_, &redo_})
        for (Step& step : *steps)
            if (step.other.document == current_.document || step.other.document->file == workspace.model_file)
                step.other.saved = false;
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
    if (result.another_file) {
        current_.document->reports = std::exchange(workbench.reports, target.document->reports);
    }
    std::shared_ptr<Workspace> left;
    if (result.another_file && target.document->left) {
        left = std::make_shared<Workspace>(std::move(workspace));
        workspace = std::move(*std::exchange(target.document->left, nullptr));
        workbench.base_from_mean = target.base_from_mean;
        result.whole = true;
    } else {
        restore_state(workspace, current_.model, target.model);
        workbench.base_from_mean = target.base_from_mean;
        const auto unset_bases = unset_base_levels(workspace);
        model::settle_on_line(workspace);
        note_base_levels(workbench, unset_bases);
    }
    workspace.model_file = target.document->file;
    workspace.model_file_date = target.document->date;
    result.line_wanted = target.line_loaded && !line_loaded(workspace);

    to.push_back({std::exchange(current_, std::move(target)), std::move(step.what)});
    if (left) keep_left(*to.back().other.document, std::move(left));
    gesture_.clear();
    absorb(workbench);
    return result;
}

}  // namespace anomalis::edit
