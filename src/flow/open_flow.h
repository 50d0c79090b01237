#pragma once

#include <optional>
#include <string>

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit
namespace anomalis {
struct Workspace;
}  // namespace anomalis

// What surrounds the reading of a file: which dialogs come first, what is forgotten after it, what is shown.
namespace anomalis::flow {

enum class OpenOutcome {
    cancelled,
    missing,  ///< told; nothing changed
    failed,   ///< told; nothing changed
    opened
};

/// How much of a workspace file is read; the number is the reader's mode.
enum class ReadMode : int { everything = 0, bodies_alone = 3 };

/// Asks for a workspace file and reads it. The current folder stays.
OpenOutcome open_model(edit::Workbench& workbench, ReadMode mode);

/// Reads a workspace file. The stations are dropped: only a load of the data brings curves and bodies on
/// show, so opening never depends on the data file.
OpenOutcome open_model_file(edit::Workbench& workbench, ReadMode mode, const std::string& path);

/// Reads a file of the recent-files list (index 0 is the newest), which then stands on top of it. The folder
/// of the file becomes the current one, also when it cannot be read. A file that vanished is told and stays
/// in the list.
OpenOutcome open_recent_file(edit::Workbench& workbench, int index);

/// Opens a workspace file, such as an example, as an untitled copy: the file is read and never written. Its
/// data file stays where it is.
OpenOutcome open_copy(edit::Workbench& workbench, const std::string& path);

/// Takes a whole model from the text of a workspace file that is no longer, or not yet, what `model_file`
/// holds: it goes by that name, and is unsaved.
OpenOutcome bring_back_model(edit::Workbench& workbench, const std::string& text,
                             const std::string& model_file);

/// Asks for an observed data file. The first one of a session without a working folder of its own makes its
/// folder the current one. Returns false after a cancel: nothing has changed.
bool choose_data_file(edit::Workbench& workbench);

/// Makes a file the observed data file of the present model: its head is read, the stations are dropped, and
/// base levels that were the mean of the file before are taken anew.
void set_data_file(edit::Workbench& workbench, const std::string& path);

/// Base levels that were the mean of the data before are taken anew at the next load.
void forget_mean_bases(edit::Workbench& workbench);

/// Reads the head of the data file; a missing file leaves it empty.
void refresh_data_head(edit::Workbench& workbench);

/// What the boxes show after a load. Texts are blank where nothing was loaded.
struct LoadResult {
    bool loaded = false;  ///< a line that can be modelled
    std::string number_of_locations, line_length, line_spacing;
    std::optional<std::string> mag_base, grav_base;  ///< of the channels that the file has
};

/// Loads the observed data, chooses the inversion channel and shows the whole line again.
LoadResult load_line(edit::Workbench& workbench);

/// The same of the line that stands, without a load: after a step that brought it back.
LoadResult line_on_show(const Workspace& workspace);

/// The window's caption: the file of the model, or what an untitled one goes by.
std::string window_caption(const edit::Workbench& workbench);

}  // namespace anomalis::flow
