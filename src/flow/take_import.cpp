#include "flow/take_import.h"

#include <utility>

#include "core/prompts.h"
#include "core/session.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/open_flow.h"
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

/// Of the import, or as it was before where the import found none.
void take_field(const Workspace& from, Workspace& to) {
    const LineSource former = std::exchange(to.source, from.source);
    if (from.source.field_missing) {
        to.source.field_origin = former.field_origin;
        to.source.field_missing = former.field_missing;
    } else {
        to.field = from.field;
    }
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

void take_data_of(edit::Workbench& workbench, const ImportedLine& imported) {
    Workspace& present = workbench.session.workspace;
    const Workspace& line = imported.workspace;
    drop_stations(present);
    present.definition = line.definition;
    present.transform = line.transform;
    present.gap_distance = line.gap_distance;
    present.surface_elevation = line.surface_elevation;
    present.sensor_offset = line.sensor_offset;
    take_field(line, present);
    forget_mean_bases(workbench);
    workbench.reports = {};
    edit::note_change(workbench, {"data of " + imported.title, "", false});
    refresh_data_head(workbench);
}

}  // namespace anomalis::flow
