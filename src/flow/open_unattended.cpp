#include "flow/open_unattended.h"

#include <functional>

#include "core/session.h"
#include "intake/load.h"
#include "intake/row_notes.h"
#include "model/refresh_model.h"
#include "model/unnamed_types.h"
#include "model/usable_field.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

/// Tells what `note` puts into a record of faults.
template <class Note>
void tell_noted(Session& session, Note&& note) {
    Faults faults;
    note(faults);
    show_faults(faults, session.prompts);
}

/// Returns what `intake::load_locations` does.
using Load = std::function<int(Workspace&, Prompts&, intake::RowNotes*)>;

OpenedWorkspace load_by(const Load& load, Session& session) {
    const MessageScope scope(session.prompts);
    Workspace& workspace = session.workspace;
    tell_noted(session, [&](Faults& faults) { model::note_unnamed_types(workspace, faults); });
    intake::RowNotes rows;
    const int status = load(workspace, session.prompts, &rows);
    OpenedWorkspace opened{OpenState::no_data, intake::report_of_load(workspace, rows)};
    tell_noted(session,
               [&](Faults& faults) { intake::tell_rows(rows, workspace.definition.data_file, faults); });
    if (workspace.station_count == 0) return opened;
    model::finish_load(session);
    if (status != 0) {
        tell_noted(session, [&](Faults& faults) {
            faults.add("The stations of " + workspace.definition.data_file +
                           " lie at one place: nothing can be modelled along them",
                       1, Severity::doubt);
        });
        opened.state = OpenState::no_length;
        return opened;
    }
    // An interrupt ends the program here: nobody watches, so nothing is left.
    model::refresh_model(session);
    tell_noted(session, [&](Faults& faults) { model::note_unusable_field(workspace, faults); });
    opened.state = OpenState::ready;
    return opened;
}

}  // namespace

OpenedWorkspace open_unattended(Session& session, const std::string& path,
                                const std::optional<Formulas>& formulas) {
    const MessageScope scope(session.prompts);
    Workspace& workspace = session.workspace;
    if (workspace_file::read_model_parameters(0, workspace, path, session.settings, session.prompts,
                                              workspace_file::Damaged::kept) != 0)
        return {};
    if (formulas) workspace.formulas = *formulas;
    return load_unattended(session);
}

OpenedWorkspace load_unattended(Session& session) {
    return load_by(intake::load_locations, session);
}

OpenedWorkspace load_unattended(Session& session, const intake::LineColumns& line) {
    return load_by(
        [&line](Workspace& workspace, Prompts& prompts, intake::RowNotes* rows) {
            return intake::load_columns(line, workspace, prompts, rows);
        },
        session);
}

}  // namespace anomalis::flow
