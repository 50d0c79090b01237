#include <utility>

#include "core/failure.h"
#include "core/faults.h"
#include "core/prompts.h"
#include "core/session.h"
#include "edit/workbench.h"
#include "flow/import_desk.h"
#include "flow/import_words.h"
#include "flow/take_import.h"

namespace anomalis::flow {

namespace {

/// A long read in a window: the window is served between, and nobody leaves it.
class ServingPacer : public TurnPacer {
  public:
    explicit ServingPacer(Prompts& prompts) : TurnPacer(1e6), prompts_(prompts) {}

  protected:
    bool turn(double) override {
        prompts_.yield();
        return false;
    }

  private:
    Prompts& prompts_;
};

/// What must be answered; remarks stand on the page.
Faults graver(const Faults& notes) {
    Faults kept;
    for (const Faults::Entry& note : notes.entries())
        if (note.severity != Severity::remark) kept.add(note.text, note.count, note.severity);
    return kept;
}

}  // namespace

bool ImportDesk::import() {
    Prompts& prompts = workbench_.session.prompts;
    if (const std::string why = refusal(); !why.empty()) {
        prompts.message(why);
        return false;
    }
    const MessageScope scope(prompts);
    bool open = false;
    report_failure(prompts, "The line cannot be imported: ", [&] {
        ServingPacer pacer(prompts);
        if (all_lines_ && !import_all()) return;
        open = open_imported(import_line(*index_, *line_, piece_, choices_, folder_, pacer),
                             into_open_model_ ? Place::under_open_model : Place::fresh);
    });
    return open;
}

bool ImportDesk::import_all() {
    Prompts& prompts = workbench_.session.prompts;
    ServingPacer pacer(prompts);
    const ImportedAll all =
        import_all_lines(*index_, choices_, folder_, ReplaceExisting::ask, prompts, pacer);
    if (all.done)
        prompts.remark(std::to_string(all.lines.size()) + " lines were written into " + folder_ +
                       ", a table and a workspace each");
    return all.done;
}

bool ImportDesk::import_neighbour(int step) {
    Prompts& prompts = workbench_.session.prompts;
    if (!line_is_open() || !index_) {
        prompts.remark(
            "The line that is open was not imported from a survey here: File, Import survey... "
            "reads its lines");
        return false;
    }
    const auto next = neighbour_line(*index_, imported_->line, step);
    if (!next) {
        prompts.remark(place_words() + ": there is no line " + (step > 0 ? "after" : "before") + " it");
        return false;
    }
    const MessageScope scope(prompts);
    bool open = false;
    report_failure(prompts, "The line cannot be imported: ", [&] {
        ServingPacer pacer(prompts);
        open =
            open_imported(next_line(*index_, *next, choices_, folder_, workbench_.session.workspace, pacer),
                          keep_bodies_ ? Place::fresh_with_bodies : Place::fresh);
    });
    if (open) choose_line(imported_->line);
    return open;
}

bool ImportDesk::open_imported(ImportedLine imported, Place place) {
    Prompts& prompts = workbench_.session.prompts;
    if (!write_imported(imported, LeftBehind::table, ReplaceExisting::ask, prompts)) return false;
    show_faults(graver(imported.notes), prompts);
    if (place == Place::under_open_model) {
        take_data_of(workbench_, imported);
    } else {
        take_imported(workbench_, imported, place == Place::fresh_with_bodies);
    }
    imported_ = std::move(imported);
    observer_.load_imported();
    return edit::line_loaded(workbench_.session.workspace);
}

bool ImportDesk::line_is_open() const {
    return imported_ && workbench_.session.workspace.source == imported_->workspace.source;
}

std::string ImportDesk::place_words() const {
    if (!imported_ || !index_) return {};
    return "Line " + index_->lines[imported_->line].name + ", " + std::to_string(imported_->line + 1) +
           " of " + std::to_string(index_->lines.size());
}

}  // namespace anomalis::flow
