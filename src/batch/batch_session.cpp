#include "batch/batch_session.h"

#include <ostream>
#include <utility>

#include "core/failure.h"
#include "core/shown_text.h"
#include "core/told_write.h"
#include "workspace_file/axm.h"

namespace anomalis::batch {

BatchSession::BatchSession(std::ostream& the_out, std::ostream& the_err)
    : prompts(the_err), session(prompts, Settings{}), out(the_out), err(the_err) {
    initialise_workspace(session.workspace, prompts);
}

void BatchSession::start_anew() {
    session.workspace = Workspace();
    session.inversion = InversionState();
    initialise_workspace(session.workspace, prompts);
}

OpenState BatchSession::open(const std::string& path) {
    read_.note(path, stamp_file(path));
    flow::OpenedWorkspace opened = flow::open_unattended(session, path, formulas);
    if (path == standard_input && opened.state != OpenState::unread) session.workspace.model_file = "-";
    if (opened.state != OpenState::unread) report = std::move(opened.report);
    return opened.state;
}

int BatchSession::write_workspace(const std::string& path) {
    if (!failures().empty() && !keep_going) {
        prompts.message("The fitted workspace was not written after what is told above (" + path +
                        "). --keep-going writes it");
        return -1;
    }
    const FileStamp* as_read = read_.find(path);
    if (as_read && !force && fate_of(*as_read, path) != FileFate::same) {
        prompts.message(
            "The workspace was changed by another program since it was read, and was not replaced (" + path +
            "). --force replaces it");
        return -1;
    }
    // One for a pipe names its data file as it is found from the current folder.
    if (path == standard_output)
        return write_result(path, workspace_file::model_parameters_text(0, session.workspace));
    return workspace_file::write_model_parameters(0, path, session.workspace, prompts);
}

int BatchSession::write_result(const std::string& path, const std::string& text) {
    return write_result(path, [&text](const TextSink& put) { put(text); });
}

int BatchSession::write_result(const std::string& path, const TextSource& source) {
    return report_failure(prompts, "An error occurred while writing the file: ", [&] {
        if (!path.empty()) return write_pieces_telling(prompts, path, source);
        std::ostream& stream = standard_output.empty() ? out : err;
        const bool clean = to_terminal || !standard_output.empty();
        const auto check = [&stream] {
            if (!stream) throw Fault("The output could not be written");
        };
        source([&](std::string_view piece) {
            clean ? stream << shown_lines(piece) : stream << piece;
            check();
        });
        stream.flush();
        check();
    });
}

}  // namespace anomalis::batch
