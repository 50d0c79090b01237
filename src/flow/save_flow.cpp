#include "flow/save_flow.h"

#include <algorithm>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/save_question.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/kept_files.h"
#include "flow/recent_files.h"
#include "flow/replace_questions.h"
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

void write_side_files(const std::string& path, const Workspace& workspace, Prompts& prompts,
                      const FileWriter& write) {
    const std::string beside = folder_name(path) + base_name(path);
    const std::string table = beside + "_model.csv";
    if (!refused_over_data_file("The model table", table, workspace, prompts))
        output::write_model_table_by(write, table, workspace, prompts);
    const std::string mesh = beside + "_model.msh";
    if (workspace.station_count > 0 && !refused_over_data_file("The mesh header", mesh, workspace, prompts))
        output::write_mesh_header_by(write, mesh, workspace, prompts);
}

std::optional<std::string> ask_for_path(Session& session) {
    FileRequest request = save_request;
    request.default_name = session.workspace.model_file;
    return ask_save_path(session.prompts, request);
}

/// One save, from the question for a name to the last file.
class Save {
  public:
    Save(edit::Workbench& workbench, const WindowLayout& layout)
        : workbench_(workbench), layout_(layout), writer_(workbench.session.prompts) {}

    SaveOutcome to_own_file() {
        const std::string path = session().workspace.model_file;
        return path.empty() ? SaveOutcome::nameless : write_or_ask(path);
    }

    SaveOutcome with_dialog() {
        by_dialog_ = true;
        const auto path = ask_for_path(session());
        return path ? write_or_ask(*path) : SaveOutcome::cancelled;
    }

  private:
    Session& session() { return workbench_.session; }

    SaveOutcome write_or_ask(const std::string& path) {
        const MessageScope scope(session().prompts);
        if (refused_over_data_file("The workspace", path, session().workspace, session().prompts))
            return SaveOutcome::failed;
        ReplaceAnswer answer = ask_about_changes(workbench_, path, by_dialog_);
        if (answer == ReplaceAnswer::go_on) {
            if (const auto outcome = write(path)) return *outcome;
            answer = ask_to_write_in_place(session().prompts, path);
        }
        if (answer == ReplaceAnswer::cancel) return SaveOutcome::cancelled;
        if (answer == ReplaceAnswer::elsewhere) return with_dialog();
        writer_.in_place = true;
        return write(path).value_or(SaveOutcome::failed);
    }

    /// No value when the file cannot be replaced safely: nothing was written.
    std::optional<SaveOutcome> write(const std::string& path) {
        Workspace& workspace = session().workspace;
        std::optional<SaveOutcome> outcome = SaveOutcome::failed;
        report_failure(session().prompts, output::write_failure_prefix, [&] {
            if (edit::line_loaded(workspace)) model::refresh_model(session());
            refresh_display_block(layout_, show::places_to_keep(workbench_.view), workspace.display);
            settle_end_widths(workspace);
            bool written = false;
            const auto write_workspace = [&](const std::string& file, std::string_view text) {
                written = write_unless_unsafe(file, text);
            };
            if (workspace_file::write_model_parameters(0, path, workspace, session().prompts,
                                                       write_workspace) != 0)
                return;
            outcome = written ? std::optional(SaveOutcome::saved) : std::nullopt;
            if (written) take_name(path);
        });
        return outcome;
    }

    bool write_unless_unsafe(const std::string& file, std::string_view text) {
        try {
            writer_(file, text);
        } catch (const NoSafeReplacement&) {
            return false;
        } catch (const FileFault&) {
            // A folder that cannot be flushed is told, but the new file may stand.
            if (fate_of(stamp_written(file, text), file) == FileFate::same) note_written(file, text);
            throw;
        }
        note_written(file, text);
        return true;
    }

    void note_written(const std::string& file, std::string_view text) {
        workbench_.known_files.note(file, stamp_written(file, text));
    }

    /// The workspace file stands, whatever becomes of the files beside it.
    void take_name(const std::string& path) {
        Workspace& workspace = session().workspace;
        workspace.model_file = path;
        workspace.model_file_date = file_date(path);
        edit::note_saved(workbench_);
        write_side_files(path, workspace, session().prompts,
                         [this](const std::string& file, std::string_view text) {
                             if (!may_replace_side_file(workbench_, file)) return;
                             writer_(file, text);
                             note_written(file, text);
                         });
        if (by_dialog_)
            add_to_recent_files(path, recent_files_section, session().settings, workbench_.recent_files,
                                session().prompts);
    }

    edit::Workbench& workbench_;
    const WindowLayout& layout_;
    SaveWriter writer_;
    bool by_dialog_ = false;  ///< the person named the file, and agreed to overwrite one that stood there
};

}  // namespace

SaveOutcome save_model(SaveMode mode, edit::Workbench& workbench, const WindowLayout& layout) {
    const std::string folder = current_folder();
    Save save(workbench, layout);
    const SaveOutcome outcome = mode == SaveMode::with_dialog ? save.with_dialog() : save.to_own_file();
    change_to_folder(folder);
    return outcome;
}

SaveOutcome save_by_button(edit::Workbench& workbench, const WindowLayout& layout) {
    const SaveOutcome outcome = save_model(SaveMode::to_model_file, workbench, layout);
    if (outcome == SaveOutcome::saved || outcome == SaveOutcome::nameless)
        workbench.session.model_changed = false;
    return outcome;
}

}  // namespace anomalis::flow
