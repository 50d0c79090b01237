#pragma once

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit
namespace anomalis {
struct Workspace;
}  // namespace anomalis

// Saving a workspace: which dialogs come first, which files are written beside it, what counts as saved.
namespace anomalis::flow {

/// What only the window knows of the layout that a workspace file keeps.
struct WindowLayout {
    double tab_width = 0;      ///< twips, of the tab control
    double window_height = 0;  ///< twips
    bool show_axes = true;
};

/// Whether a save asks for its file or takes the one that the model has.
enum class SaveMode : int { with_dialog = 0, to_model_file = 1 };

enum class SaveOutcome {
    cancelled,
    nameless,  ///< nothing was written: the model has no file yet
    failed,    ///< told; the old file stands
    saved
};

/// Writes the workspace, and beside it the model table and, with stations, the mesh header; these two replace
/// old ones without a question, unless somebody else wrote them since they were saved here, and their failure
/// is told and leaves the save a success. Curves and positions are brought up to date first, so that a second
/// save gives the same bytes. A file that somebody else wrote since it was read or saved here, and one that
/// cannot be replaced safely, are asked about: "Save as..." goes on with the dialog. The current folder
/// stays.
SaveOutcome save_model(SaveMode mode, edit::Workbench& workbench, const WindowLayout& layout);

/// The button's save: to the model's own file, then the model counts as unchanged, unless nothing was saved.
/// Without a file nothing is written and the model counts as unchanged all the same; it stays unsaved.
SaveOutcome save_by_button(edit::Workbench& workbench, const WindowLayout& layout);

/// What the status bar says after a save without a name.
inline constexpr const char* nameless_save_text =
    "No file name yet: use File, Save Data Format and Model Definitions";

}  // namespace anomalis::flow
