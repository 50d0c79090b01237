#include "batch/batch_session.h"

#include <ostream>

#include "core/failure.h"
#include "core/told_write.h"
#include "intake/load.h"
#include "model/refresh_model.h"
#include "workspace_file/axm.h"

namespace anomalis::batch {

BatchSession::BatchSession(std::ostream& the_out, std::ostream& the_err)
    : prompts(the_err), session(prompts, Settings{}), out(the_out), err(the_err) {
    initialise_workspace(session.workspace, prompts);
}

OpenState BatchSession::open(const std::string& path) {
    const MessageScope scope(prompts);
    Workspace& workspace = session.workspace;
    if (workspace_file::read_model_parameters(0, workspace, path, session.settings, prompts,
                                              workspace_file::Damaged::kept) != 0)
        return OpenState::unread;
    if (formulas) workspace.formulas = *formulas;
    const int status = intake::load_locations(workspace, prompts);
    if (workspace.station_count == 0) return OpenState::no_data;
    model::finish_load(session);
    if (status != 0) return OpenState::no_length;
    // An interrupt ends the program here: nobody watches, so nothing is left.
    model::refresh_model(session);
    return OpenState::ready;
}

void BatchSession::explain_silence() {
    if (!prompts.messages().empty()) return;
    err << "No stations were found in " << session.workspace.definition.data_file << '\n';
}

int BatchSession::write_result(const std::string& path, const std::string& text) {
    return report_failure(prompts, "An error occurred while writing the file: ", [&] {
        if (!path.empty()) return write_file_telling(prompts, path, text);
        if (!(out << text).flush()) throw Fault("The output could not be written");
    });
}

}  // namespace anomalis::batch
