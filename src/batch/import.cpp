#include <filesystem>
#include <system_error>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/import_json.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/shown_text.h"
#include "flow/new_line_choice.h"
#include "intake/load.h"
#include "intake/row_notes.h"
#include "workspace_file/axm.h"

namespace anomalis::batch {

namespace {

namespace fs = std::filesystem;

/// A folder that is made for what comes into it, and is gone again when nothing does.
class OutputFolder {
  public:
    explicit OutputFolder(std::string path) : path_(std::move(path)) {
        if (folder_exists(path_)) return;
        std::error_code error;
        made_ = fs::create_directory(path_, error);
        if (error) throw FileFault(error.value(), path_);
    }
    ~OutputFolder() {
        std::error_code ignored;
        if (made_) fs::remove(path_, ignored);  // a folder with files in it stays
    }
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

  private:
    std::string path_;
    bool made_ = false;
};

/// The line that is meant: the only one that there is goes without a name.
std::size_t chosen_line(const intake::SurveyIndex& index, const std::string& name) {
    if (!name.empty()) return line_of_name(index, name);
    if (index.lines.size() == 1) return 0;
    std::string names;
    constexpr std::size_t most = 5;
    for (std::size_t i = 0; i < index.lines.size() && i < most; ++i)
        names += (names.empty() ? "" : ", ") + index.lines[i].name;
    if (index.lines.size() > most) names += ", ...";
    throw Fault(file_name(index.layout.path) + " has " + std::to_string(index.lines.size()) + " lines (" +
                names + "): choose one with --line, or --all");
}

flow::ReplaceExisting replacing(bool force) {
    return force ? flow::ReplaceExisting::agreed : flow::ReplaceExisting::refuse;
}

WrittenLine written_line(const flow::ImportedLine& line) {
    return {.table = line.table_path,
            .workspace = line.workspace_path,
            .report = line.report,
            .source = line.workspace.source,
            .field = line.workspace.field};
}

std::string line_text(const WrittenLine& line) {
    std::string text = line.report.line.empty() ? shown_text(file_name(line.report.file))
                                                : "line " + shown_text(line.report.line);
    text += ": " + std::to_string(line.report.stations) + " stations, " +
            format_number(line.report.length_m, "0") + " m";
    if (!line.source.field_missing)
        text += ", field " + format_number(line.field.intensity, "0") + " nT, inclination " +
                format_number(line.field.inclination, "0.0") + ", declination " +
                format_number(line.field.declination, "0.0");
    return text + " -> " + shown_text(line.workspace) + "\n";
}

/// Each line loaded as any other workspace is, with what the import met before.
void report_loads(std::vector<WrittenLine>& lines, BatchSession& batch) {
    for (WrittenLine& line : lines) {
        Workspace workspace;
        initialise_workspace(workspace, batch.prompts);
        intake::RowNotes rows;
        if (workspace_file::read_model_parameters(0, workspace, line.workspace, batch.session.settings,
                                                  batch.prompts) != 0)
            continue;
        intake::load_locations(workspace, batch.prompts, &rows);
        line.report = with_import(intake::report_of_load(workspace, rows), line.report);
    }
}

std::vector<WrittenLine> import_one(const ImportOptions& options, const flow::ImportChoices& choices,
                                    const intake::SurveyIndex& index, BatchSession& batch) {
    const auto piece = options.piece > 0 ? std::optional(static_cast<std::size_t>(options.piece) - 1)
                                         : std::optional<std::size_t>();
    const flow::ImportedLine line =
        flow::import_line(index, chosen_line(index, options.line), piece, choices, options.folder);
    show_faults(line.notes, batch.prompts);
    if (!flow::write_imported(line, flow::LeftBehind::table_and_workspace, replacing(options.force),
                              batch.prompts))
        return {};
    return {written_line(line)};
}

std::vector<WrittenLine> import_all(const ImportOptions& options, const flow::ImportChoices& choices,
                                    const intake::SurveyIndex& index, BatchSession& batch) {
    const flow::ImportedAll all =
        flow::import_all_lines(index, choices, options.folder, replacing(options.force), batch.prompts);
    std::vector<WrittenLine> written;
    for (const flow::ImportedAll::Written& line : all.lines)
        written.push_back({.table = line.table_path,
                           .workspace = line.workspace_path,
                           .report = line.report,
                           .source = line.source,
                           .field = line.field});
    return written;
}

}  // namespace

bool run_import(const ImportOptions& options, BatchSession& batch) {
    std::vector<WrittenLine> written;
    std::optional<intake::SurveyIndex> index;
    report_failure(batch.prompts, "The survey cannot be imported: ", [&] {
        index = survey_index(options.survey);
        tell_survey(*index, batch);
        flow::ImportChoices choices = options.choices;
        choices.formulas = batch.formulas.value_or(flow::formulas_of_new_line(batch.session.settings));
        const OutputFolder folder(options.folder);
        written = options.all ? import_all(options, choices, *index, batch)
                              : import_one(options, choices, *index, batch);
    });
    if (!index) return false;
    std::string text;
    if (options.json) {
        report_loads(written, batch);
        text = import_json_text(*index, written, batch.prompts);
    } else {
        for (const WrittenLine& line : written) text += line_text(line);
    }
    return batch.write_result("", text) == 0 && !written.empty();
}

}  // namespace anomalis::batch
