#include "flow/save_flow.h"

#include <algorithm>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/save_question.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/recent_files.h"
#include "model/refresh_model.h"
#include "output/tables.h"
#include "show/page_layout.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

constexpr double form_beyond_tab = 300;  // twips

const FileRequest save_request{"Select the AXM model file to create",
                               "AXM Model Files (*.axm)|*.axm|All files (*.*)|*.*", "", "axm"};

void refresh_display_block(const WindowLayout& layout, const edit::PaneFractions& places,
                           DisplaySettings& display) {
    display.valid = true;
    display.form_width = round_to_even(layout.tab_width + form_beyond_tab);
    display.form_height = round_to_even(layout.window_height);
    display.show_axes = layout.show_axes ? 1 : 0;
    display.splitter_fraction = {};
    std::copy(places.begin(), places.end(), display.splitter_fraction.begin());
}

/// The record is what its file will hold.
void settle_end_widths(Workspace& workspace) {
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = workspace.body(number);
        body.end_width_a = body.end_width_b = body.width.value;
    }
}

void write_side_files(const std::string& path, const Workspace& workspace, Prompts& prompts) {
    const std::string beside = folder_name(path) + base_name(path);
    output::write_model_table(beside + "_model.csv", workspace, prompts);
    if (workspace.station_count > 0) output::write_mesh_header(beside + "_model.msh", workspace, prompts);
}

/// The path to save to; no value ends the save with `outcome`.
std::optional<std::string> path_to_save(SaveMode mode, Session& session, SaveOutcome& outcome) {
    const std::string& model_file = session.workspace.model_file;
    if (mode == SaveMode::to_model_file) {
        outcome = SaveOutcome::nameless;
        return model_file.empty() ? std::nullopt : std::optional(model_file);
    }
    outcome = SaveOutcome::cancelled;
    FileRequest request = save_request;
    request.default_name = model_file;
    return ask_save_path(session.prompts, request);
}

/// True when the workspace file was written, whatever became of the files beside it.
bool write_model(const std::string& path, edit::Workbench& workbench, const WindowLayout& layout) {
    Session& session = workbench.session;
    Workspace& workspace = session.workspace;
    bool written = false;
    report_failure(session.prompts, output::write_failure_prefix, [&] {
        if (edit::line_loaded(workspace)) model::refresh_model(session);
        refresh_display_block(layout, show::places_to_keep(workbench.view), workspace.display);
        settle_end_widths(workspace);
        if (workspace_file::write_model_parameters(0, path, workspace, session.prompts) != 0) return;
        written = true;
        workspace.model_file = path;
        workspace.model_file_date = file_date(path);
        edit::note_saved(workbench);
        write_side_files(path, workspace, session.prompts);
    });
    return written;
}

}  // namespace

SaveOutcome save_model(SaveMode mode, edit::Workbench& workbench, const WindowLayout& layout) {
    Session& session = workbench.session;
    const std::string folder = current_folder();
    SaveOutcome outcome = SaveOutcome::cancelled;
    if (const auto path = path_to_save(mode, session, outcome)) {
        const MessageScope scope(session.prompts);
        outcome = write_model(*path, workbench, layout) ? SaveOutcome::saved : SaveOutcome::failed;
        if (outcome == SaveOutcome::saved && mode == SaveMode::with_dialog)
            add_to_recent_files(*path, recent_files_section, session.settings, workbench.recent_files,
                                session.prompts);
    }
    change_to_folder(folder);
    return outcome;
}

SaveOutcome save_by_button(edit::Workbench& workbench, const WindowLayout& layout) {
    const SaveOutcome outcome = save_model(SaveMode::to_model_file, workbench, layout);
    if (outcome != SaveOutcome::failed) workbench.session.model_changed = false;
    return outcome;
}

}  // namespace anomalis::flow
