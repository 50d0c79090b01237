#include <filesystem>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "core/failure.h"
#include "core/shown_text.h"
#include "flow/new_line_choice.h"

namespace anomalis::batch {

namespace {

/// What two files would have to go through, and what nobody could read again.
void refuse_streams(const flow::ImportedLine& line, const NewOptions& options, const BatchSession& batch) {
    if (line.table.empty() && options.survey.file == batch.standard_input)
        throw Fault(
            "A workspace reads its data again from their file: name the table instead of -, or use import, "
            "which leaves a table of its own");
    if (!line.table.empty() && options.output == batch.standard_output)
        throw Fault(
            "The table needs changes before a workspace can read it, and two files go into no stream: name "
            "the workspace instead of -");
}

/// Nobody knows in which folder the output of a stream will lie.
void name_from_the_root(Workspace& workspace) {
    workspace.definition.data_file = std::filesystem::absolute(workspace.definition.data_file).string();
}

}  // namespace

bool run_new(const NewOptions& options, BatchSession& batch) {
    bool written = false;
    std::string text;
    report_failure(batch.prompts, "The workspace cannot be made: ", [&] {
        const intake::SurveyIndex index = survey_index(options.survey);
        tell_survey(index, batch);
        flow::ImportChoices choices = options.choices;
        choices.formulas = batch.formulas.value_or(flow::formulas_of_new_line(batch.session.settings));
        flow::ImportedLine line = flow::new_workspace(index, choices, options.output);
        show_faults(line.notes, batch.prompts);
        refuse_streams(line, options, batch);
        if (options.output == batch.standard_output) name_from_the_root(line.workspace);
        written = flow::write_imported(
            line, flow::LeftBehind::table_and_workspace,
            options.force ? flow::ReplaceExisting::agreed : flow::ReplaceExisting::refuse, batch.prompts);
        text = shown_text(line.workspace_path) + ": " + std::to_string(line.report.stations) +
               " stations of " + shown_text(line.workspace.definition.data_file) + "\n";
    });
    return written && batch.write_result("", text) == 0;
}

}  // namespace anomalis::batch
