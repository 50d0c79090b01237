#include "flow/take_import.h"

#include <utility>

#include "core/prompts.h"
#include "core/session.h"
#include "edit/workbench.h"
#include "flow/take_line.h"
#include "intake/load.h"

namespace anomalis::flow {

namespace {

/// Bodies are placed on stations, which the model that is opened has not yet.
void bring(const Workspace& former, Workspace& next, Prompts& prompts) {
    if (former.body_count == 0 || !edit::line_loaded(former)) return;
    if (intake::load_locations(next, prompts) < 0 || !edit::line_loaded(next)) return;
    Faults notes;
    bring_bodies(former, next, notes);
    show_faults(notes, prompts);
}

}  // namespace

void take_imported(edit::Workbench& workbench, const ImportedLine& imported, bool bodies) {
    Session& session = workbench.session;
    const MessageScope scope(session.prompts);
    Workspace next = imported.workspace;
    if (bodies) bring(session.workspace, next, session.prompts);
    const std::string& line = imported.workspace.source.line;
    start_untitled(workbench, std::move(next),
                   {.step = line.empty() ? "import" : "import of line " + line,
                    .title = imported.title,
                    .imported = imported.report});
}

}  // namespace anomalis::flow
