#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/faults.h"
#include "core/workspace.h"
#include "intake/load_report.h"
#include "intake/survey/survey_index.h"

namespace anomalis {
class Prompts;
}  // namespace anomalis

// From a line of a survey file to a model of its own: a table that needs no importer any more, and a
// workspace for it.
namespace anomalis::flow {

/// Whence the earth's field of an imported line comes.
enum class FieldChoice {
    from_place,  ///< IGRF at the middle of the line on the date of the survey; missing where these are not
                 ///< known
    keyed,       ///< `ImportChoices::field`
    none         ///< not set: somebody gives it later
};

/// What becomes of the main field in the magnetic channel: the table keeps the readings as they are, and the
/// workspace takes it out or puts it in at each load.
enum class MainFieldChange { none, removed, added };

/// What is said of an import beside roles, units, nulls (the layout) and coordinates (the index).
struct ImportChoices {
    std::string name;  ///< of the survey in the names of files; "": the base name of its file
    std::string date;  ///< "1990-07-01" or a decimal year; "": the date column, where there is one
    FieldChoice field_choice = FieldChoice::from_place;
    EarthField field;  ///< of `FieldChoice::keyed`
    MainFieldChange main_field = MainFieldChange::none;
    /// m, of a line whose file tells only one of sensor and ground; no value: a new line's own for flights,
    /// a pole of 2 m for magnetics on the ground, 0 for gravity.
    std::optional<float> sensor_offset;
    Formulas formulas = Formulas::exact;  ///< see `formulas_of_new_line`
};

/// A line as it is left behind, still in memory.
struct ImportedLine {
    std::size_t line = 0;              ///< its place in the index
    std::optional<std::size_t> piece;  ///< of the line; no value: all of it
    std::string title;                 ///< "line 5690 of osborne_12_lines.csv"
    std::string table_path;            ///< "FOLDER/NAME_LINE.csv"
    std::string table;                 ///< its text; "" where the survey file itself is the data file
    std::string workspace_path;        ///< "FOLDER/NAME_LINE.axm"
    Workspace workspace;               ///< without stations; its data file is the table
    intake::LoadReport report;         ///< of the survey file: rows, losses, nulls, line of how many
    Faults notes;                      ///< what there is to know, and what can hardly be meant
};

/// What a folder gets: the names of table and workspace of each line, made safe and different from each
/// other.
struct ImportNames {
    std::string table, workspace;  ///< without folder
};
ImportNames import_names(const intake::SurveyIndex& index, const ImportChoices& choices, std::size_t line,
                         std::optional<std::size_t> piece = {});

/// Reads a line (or a piece of it) and makes its table and its workspace in memory, for `folder`. Raises
/// Fault (a line of one station, a date that is none or outside the model, a piece that is not there),
/// FileFault, Stopped.
ImportedLine import_line(const intake::SurveyIndex& index, std::size_t line, std::optional<std::size_t> piece,
                         const ImportChoices& choices, const std::string& folder, Pacer& pacer = no_pace());

/// The same of a whole line, for files of the caller's choice: the table beside the workspace, with its base
/// name.
ImportedLine import_line_as(const intake::SurveyIndex& index, std::size_t line, const ImportChoices& choices,
                            const std::string& workspace_path, Pacer& pacer = no_pace());

/// The text of the workspace file of an imported line, which names its table beside it.
std::string workspace_text(const ImportedLine& line);

/// What happens where a file of that name with other contents is there.
enum class ReplaceExisting {
    ask,     ///< one question for all of them
    refuse,  ///< told, with the option that agrees; nothing is written
    agreed
};
/// What is left behind: a window keeps the workspace untitled until it is saved.
enum class LeftBehind { table, table_and_workspace };

/// Puts the files of an imported line in place, all of them or none. False when nothing was written: told, or
/// answered with No.
bool write_imported(const ImportedLine& line, LeftBehind what, ReplaceExisting replace, Prompts& prompts);

/// What was written of all lines.
struct ImportedAll {
    bool done = false;  ///< false: nothing was written, and why was told
    struct Written {
        std::size_t line = 0;
        std::string table_path, workspace_path;
        intake::LoadReport report;
        LineSource source;
        EarthField field;
    };
    std::vector<Written> lines;
};
/// All lines in one pass over the file, one after the other; tables and workspaces come into the folder when
/// all are made. Lines that cannot be modelled are told and left out. Raises Stopped, with nothing written.
ImportedAll import_all_lines(const intake::SurveyIndex& index, const ImportChoices& choices,
                             const std::string& folder, ReplaceExisting replace, Prompts& prompts,
                             Pacer& pacer = no_pace());

/// A workspace at `workspace_path` for a file of one line. A table that the usual way of loading reads as the
/// index did is its data file itself, and `table` is empty then; otherwise its table goes beside the
/// workspace. Raises as `import_line`, and Fault for a file of several lines.
ImportedLine new_workspace(const intake::SurveyIndex& index, const ImportChoices& choices,
                           const std::string& workspace_path, Pacer& pacer = no_pace());

// From line to line of one survey.

/// The place of a line of that name.
std::optional<std::size_t> find_line(const intake::SurveyIndex& index, const std::string& name);
/// Names of the index that are most like one that is not there, best first.
std::vector<std::string> near_line_names(const intake::SurveyIndex& index, const std::string& name,
                                         std::size_t most = 5);
/// Why a line cannot be imported: one station, no reading, ...; "" when it can.
std::string import_refusal(const intake::SurveyIndex& index, std::size_t line);
/// The next line that can be imported, `step` 1 on or -1 back; nothing at the end.
std::optional<std::size_t> neighbour_line(const intake::SurveyIndex& index, std::size_t line, int step);

/// A line goes on as its neighbour: filters, regionals, noises, spacings, gradient, formulas, drawing, the
/// sensor's height above ground, and a field that somebody keyed. Place and base levels are its own.
void keep_processing(const Workspace& from, Workspace& to);
/// Imports a line of the survey that the present one is of, and has it go on as that one.
ImportedLine next_line(const intake::SurveyIndex& index, std::size_t line, const ImportChoices& choices,
                       const std::string& folder, const Workspace& present, Pacer& pacer = no_pace());
/// The bodies of the former line, once the stations of the next one are loaded: along their strikes, to the
/// same depth below ground. What is to be said of it goes into `notes`. Returns how many came.
int bring_bodies(const Workspace& former, Workspace& next, Faults& notes);

}  // namespace anomalis::flow
