#include "edit/change.h"

#include <algorithm>
#include <utility>

#include "core/workspace.h"
#include "edit/workbench.h"
#include "edit/zoom.h"
#include "model/stale.h"

namespace anomalis::edit {

namespace {

void bodies_listed_anew(Workbench& workbench) {
    forget_run(workbench.session.inversion);
    ++workbench.list_revision;
}

HistoryStep settle(Workbench& workbench, const History::Move& move) {
    if (!move.moved) return {};
    workbench.forget_marks();
    Session& session = workbench.session;
    const StateDifference& difference = move.difference;
    const bool list = difference.list || move.another_file;
    if (list) bodies_listed_anew(workbench);
    if (list || (difference.first_changed > 0 && !difference.current_changed))
        workbench.view.current_body = std::max(
            difference.first_changed > 0 ? difference.first_changed : workbench.view.current_body, 1);
    session.model_changed = true;
    workbench.unsaved = workbench.history.unsaved();
    const bool line = line_loaded(session.workspace);
    if (!line || move.whole) reset_view(session.workspace, workbench.view, session.prompts);
    return {.moved = true,
            .what = move.what,
            .another_file = move.another_file,
            .settings = difference.settings || move.another_file,
            .line_lost = !line,
            .line_wanted = move.line_wanted,
            .line_back = move.whole && line};
}

}  // namespace

void note_change(Workbench& workbench, const ModelChange& change) {
    workbench.session.model_changed = true;
    workbench.forget_marks();
    model::drop_line_read_otherwise(workbench.session.workspace);
    workbench.history.note(workbench, change);
    workbench.unsaved = workbench.history.unsaved();
    if (change.body_list) bodies_listed_anew(workbench);
}

void note_other_model(Workbench& workbench, const std::string& what, std::shared_ptr<Workspace> former,
                      const std::string& title) {
    workbench.session.model_changed = true;
    workbench.forget_marks();
    workbench.history.note_other_model(workbench, what, std::move(former), title);
    workbench.unsaved = workbench.history.unsaved();
    bodies_listed_anew(workbench);
}

void note_saved(Workbench& workbench) {
    workbench.forget_marks();
    workbench.history.note_saved(workbench);
    workbench.unsaved = false;
}

void note_unsaved(Workbench& workbench) {
    workbench.history.forget_saved();
    workbench.unsaved = true;
    workbench.forget_marks();
}

void start_history(Workbench& workbench) {
    workbench.forget_marks();
    workbench.history.start(workbench);
    workbench.unsaved = false;
}

void settle_history(Workbench& workbench) {
    workbench.forget_marks();
    workbench.history.absorb(workbench);
}

HistoryStep undo_change(Workbench& workbench) {
    return settle(workbench, workbench.history.undo(workbench));
}

HistoryStep redo_change(Workbench& workbench) {
    return settle(workbench, workbench.history.redo(workbench));
}

}  // namespace anomalis::edit
