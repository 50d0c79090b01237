#include "flow/open_flow.h"

#include <memory>
#include <utility>

#include "core/failure.h"
#include "core/leftovers.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "edit/body_form.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "edit/zoom.h"
#include "flow/recent_files.h"
#include "flow/take_line.h"
#include "intake/load.h"
#include "intake/load_report.h"
#include "intake/row_notes.h"
#include "inversion/parameters.h"
#include "model/refresh_model.h"
#include "show/page_layout.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

const FileRequest model_request{"Select the profile model file",
                                "Anomalis definition Files(*.axm)|*.axm|All files (*.*)|*.*", "", "axm"};
const FileRequest data_request{"Select the observed  data file",
                               "Data Files (*.dat;*.xyz;*.csv;*.txt)|*.dat;*.xyz;*.csv;*.txt|"
                               "All files (*.*)|*.*",
                               "", ""};

/// What every read leaves behind.
void forget_line(edit::Workbench& workbench) {
    Session& session = workbench.session;
    edit::settle_bodies(session.workspace);
    drop_stations(session.workspace);
    workbench.view.current_body = 1;
    edit::reset_view(session.workspace, workbench.view, session.prompts);
    forget_run(session.inversion);
}

/// What a whole file says beyond the workspace's own fields.
void take_settings_of_file(edit::Workbench& workbench) {
    workbench.base_from_mean = {};
    DisplaySettings& display = workbench.session.workspace.display;
    if (!display.valid) {
        // Those of the file before are none of this one's.
        display.show_body_label = display.maintain_aspect_ratio = 0;
        return;
    }
    workbench.view.show_axes = display.show_axes != 0;
    workbench.view.pane_fractions = workbench.view.pane_places =
        show::usable_places(display.splitter_fraction);
}

/// A read changes the model like an edit does. After a full one it is what the file holds.
void note_read(edit::Workbench& workbench, ReadMode mode, const std::string& path,
               std::shared_ptr<Workspace> former) {
    Session& session = workbench.session;
    const std::string step = "read " + file_name(path);
    if (former) {
        edit::note_other_model(workbench, step, std::move(former), "");
    } else {
        edit::note_change(workbench, {step, "", true});
    }
    if (mode != ReadMode::everything) return;
    workbench.reports = {};
    session.model_changed = false;
    edit::note_saved(workbench);
    add_to_recent_files(path, recent_files_section, session.settings, workbench.recent_files,
                        session.prompts);
}

/// The present model, to be brought back whole; none where its own file is read again, or its line is long.
std::shared_ptr<Workspace> kept_model(edit::Workbench& workbench, const std::string& path) {
    const Workspace& workspace = workbench.session.workspace;
    if (workspace.model_file == path || !edit::History::keeps_line(workspace)) return nullptr;
    edit::settle_history(workbench);
    return std::make_shared<Workspace>(workspace);
}

/// Of a table that an import left, the import tells too.
void take_report(edit::Workbench& workbench, const intake::RowNotes& rows) {
    const Workspace& workspace = workbench.session.workspace;
    intake::LoadReport report = intake::report_of_load(workspace, rows);
    const auto& imported = workbench.reports.imported;
    if (imported) report = intake::with_import(std::move(report), *imported);
    workbench.reports.load = std::make_shared<const intake::LoadReport>(std::move(report));
}

}  // namespace

OpenOutcome open_model(edit::Workbench& workbench, ReadMode mode) {
    const std::string folder = current_folder();
    FileRequest request = model_request;
    request.default_name = workbench.session.workspace.model_file;
    OpenOutcome outcome = OpenOutcome::failed;
    report_failure(workbench.session.prompts, "An error occurred while reading the file: ", [&] {
        const auto path = workbench.session.open_file_dialog(request);
        outcome = path ? open_model_file(workbench, mode, *path) : OpenOutcome::cancelled;
    });
    change_to_folder(folder);
    return outcome;
}

OpenOutcome open_model_file(edit::Workbench& workbench, ReadMode mode, const std::string& path) {
    Session& session = workbench.session;
    if (file_exists(path).empty()) {
        session.prompts.message("That file does not exist");
        return OpenOutcome::missing;
    }
    const MessageScope scope(session.prompts);
    remove_leftovers(folder_name(whole_path(path)));
    const FileStamp stamp = stamp_file(path);
    auto former = mode == ReadMode::everything ? kept_model(workbench, path) : nullptr;
    if (workspace_file::read_model_parameters(static_cast<int>(mode), session.workspace, path,
                                              session.settings, session.prompts) != 0)
        return OpenOutcome::failed;
    if (mode == ReadMode::everything) take_settings_of_file(workbench);
    forget_line(workbench);
    refresh_data_head(workbench);
    note_read(workbench, mode, path, std::move(former));
    if (mode == ReadMode::everything) workbench.known_files.note(path, stamp);
    return OpenOutcome::opened;
}

OpenOutcome open_copy(edit::Workbench& workbench, const std::string& path) {
    Session& session = workbench.session;
    if (file_exists(path).empty()) {
        session.prompts.message("That file does not exist");
        return OpenOutcome::missing;
    }
    const MessageScope scope(session.prompts);
    Workspace copy = workspace_of_new_line(workbench);
    copy.source = {};
    if (workspace_file::read_model_parameters(static_cast<int>(ReadMode::everything), copy, path,
                                              session.settings, session.prompts) != 0)
        return OpenOutcome::failed;
    const std::string name = "copy of " + file_name(path);
    start_untitled(workbench, std::move(copy), {.step = name, .title = name});
    take_settings_of_file(workbench);
    // Nothing is lost with a copy that nobody worked on.
    session.model_changed = false;
    edit::note_saved(workbench);
    return OpenOutcome::opened;
}

OpenOutcome bring_back_model(edit::Workbench& workbench, const std::string& text,
                             const std::string& model_file) {
    Session& session = workbench.session;
    const MessageScope scope(session.prompts);
    if (workspace_file::read_model_parameters_text(static_cast<int>(ReadMode::everything), session.workspace,
                                                   text, model_file, session.settings, session.prompts) != 0)
        return OpenOutcome::failed;
    take_settings_of_file(workbench);
    forget_line(workbench);
    refresh_data_head(workbench);
    edit::note_change(workbench, {"bringing back the model", "", true});
    edit::note_unsaved(workbench);
    return OpenOutcome::opened;
}

OpenOutcome open_recent_file(edit::Workbench& workbench, int index) {
    if (index < 0 || index >= static_cast<int>(workbench.recent_files.size())) return OpenOutcome::cancelled;
    const std::string path = workbench.recent_files[static_cast<std::size_t>(index)];
    const MessageScope scope(workbench.session.prompts);
    OpenOutcome outcome = OpenOutcome::failed;
    report_failure(workbench.session.prompts, "An error occured while reading the model definitions: ", [&] {
        outcome = open_model_file(workbench, ReadMode::everything, path);
    });
    if (outcome == OpenOutcome::missing) return outcome;
    if (outcome == OpenOutcome::failed)
        workbench.session.prompts.message("The specified file did not have the correct format");
    change_to_folder(folder_name(path));
    return outcome;
}

bool choose_data_file(edit::Workbench& workbench) {
    Session& session = workbench.session;
    FileRequest request = data_request;
    request.default_name = session.workspace.definition.data_file;
    const auto path = session.open_file_dialog(request);
    if (!path) return false;
    if (session.first_dialog) change_to_folder(folder_name(*path));
    session.first_dialog = false;
    set_data_file(workbench, *path);
    return true;
}

void forget_mean_bases(edit::Workbench& workbench) {
    Workspace& workspace = workbench.session.workspace;
    if (workbench.base_from_mean[channel_mag]) workspace.mag.base = unset;
    if (workbench.base_from_mean[channel_grav]) workspace.grav.base = unset;
    workbench.base_from_mean = {};
}

void set_data_file(edit::Workbench& workbench, const std::string& path) {
    Session& session = workbench.session;
    Workspace& workspace = session.workspace;
    if (path != workspace.definition.data_file) {
        // Place and day of the survey may well be those of its other lines.
        workspace.source.file.clear();
        workspace.source.line.clear();
    }
    workspace.definition.data_file = path;
    workspace.definition.data_file_as_named.clear();
    workbench.reports = {};
    drop_stations(workspace);
    forget_mean_bases(workbench);
    edit::note_change(workbench, {"data file", "", false});
    refresh_data_head(workbench);
}

void refresh_data_head(edit::Workbench& workbench) {
    workbench.head = {};
    intake::show_data_file_head(workbench.session.workspace, workbench.head, workbench.session.prompts);
}

LoadResult line_on_show(const Workspace& workspace) {
    LoadResult result;
    result.loaded = edit::line_loaded(workspace);
    const int n = workspace.station_count;
    if (n <= 0) return result;
    const double length = workspace.distances.last();
    result.number_of_locations = format_number(workspace.station_count, "0");
    result.line_length = format_number(length, "0.00");
    result.line_spacing = format_number(length / n, "0.000");
    if (workspace.has_mag()) result.mag_base = format_number(workspace.mag.base, "0.00");
    if (workspace.has_grav()) result.grav_base = format_number(workspace.grav.base, "0.00");
    return result;
}

LoadResult load_line(edit::Workbench& workbench) {
    Session& session = workbench.session;
    Workspace& workspace = session.workspace;
    const MessageScope scope(session.prompts);
    const FileStamp stamp = stamp_file(workspace.definition.data_file, StampDepth::times);
    const auto unset_bases = edit::unset_base_levels(workspace);
    intake::RowNotes rows;
    const int status = intake::load_locations(workspace, session.prompts, &rows);
    if (status >= 0) edit::note_base_levels(workbench, unset_bases);
    if (status == 0) model::finish_load(session);
    take_report(workbench, rows);
    workbench.known_files.note(workspace.definition.data_file, stamp);
    edit::reset_view(workspace, workbench.view, session.prompts);
    edit::settle_history(workbench);
    return line_on_show(workspace);
}

std::string window_caption(const edit::Workbench& workbench) {
    const std::string& file = workbench.session.workspace.model_file;
    const std::string title = workbench.history.title();
    if (!file.empty()) return "Anomalis: " + file_name(file);
    return title.empty() ? "Anomalis" : "Anomalis: untitled, " + title;
}

}  // namespace anomalis::flow
