#pragma once

#include <optional>
#include <string>

#include "intake/load_report.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis
namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// Another line takes the place of the present model. Nothing is asked: one step of Undo brings the former
// model back, with its file name, its line and whether it was saved.
namespace anomalis::flow {

/// What the new model is called while it has no file.
struct NewLine {
    std::string step;   ///< in the menu Edit: "import of line 5690"
    std::string title;  ///< in the caption: "line 5690 of osborne.csv"
    /// What was met in the survey file that the data were taken from. The report of the load of its data
    /// file then tells of it as well.
    std::optional<intake::LoadReport> imported = {};
};

/// Puts a workspace without a file of its own in place of the present one. It is unsaved, and a save asks
/// for its name. Its line is not loaded: `load_line` comes next.
void start_untitled(edit::Workbench& workbench, Workspace&& fresh, const NewLine& line);

/// A workspace as a session starts with, for a line of a new survey: no bodies, the formulas last chosen, the
/// earth's field not set. Its `definition` is that of the session's start.
Workspace workspace_of_new_line(const edit::Workbench& workbench);

/// A model without bodies for a data file, which is read as the present definition says (columns, first line,
/// read step): often a survey has many files of one kind.
void start_with_data_file(edit::Workbench& workbench, const std::string& path);

}  // namespace anomalis::flow
