#include <utility>

#include "core/failure.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "flow/import_files.h"
#include "flow/import_lines.h"

namespace anomalis::flow {

namespace {

/// Makes the files of each line as it comes from the survey file.
class ImportingAll : public intake::LineTaker {
  public:
    ImportingAll(const intake::SurveyIndex& index, const ImportChoices& choices, const std::string& folder,
                 StagedFiles& files, Faults& notes, ImportedAll& all)
        : index_(index),
          choices_(choices),
          folder_(folder),
          files_(files),
          notes_(notes),
          all_(all),
          names_(line_file_names(index, choices)) {}

    void take(std::size_t line, intake::SurveyLine&& read) override {
        if (const std::string why = import_refusal(index_, line); !why.empty()) {
            notes_.add(why + ". It was left out", 1, Severity::remark);
            return;
        }
        const ImportedLine imported =
            make_import(index_, line, {}, std::move(read), choices_, import_place(folder_, names_[line]));
        for (const Faults::Entry& entry : imported.notes.entries())
            notes_.add(entry.text, entry.count, entry.severity);
        files_.add(imported.table_path, imported.table);
        files_.add(imported.workspace_path, workspace_text(imported));
        all_.lines.push_back({.line = line,
                              .table_path = imported.table_path,
                              .workspace_path = imported.workspace_path,
                              .report = imported.report,
                              .source = imported.workspace.source,
                              .field = imported.workspace.field});
    }

  private:
    const intake::SurveyIndex& index_;
    const ImportChoices& choices_;
    const std::string& folder_;
    StagedFiles& files_;
    Faults& notes_;
    ImportedAll& all_;
    std::vector<std::string> names_;
};

}  // namespace

ImportedAll import_all_lines(const intake::SurveyIndex& index, const ImportChoices& choices,
                             const std::string& folder, ReplaceExisting replace, Prompts& prompts,
                             Pacer& pacer) {
    ImportedAll all;
    Faults notes;
    report_failure(prompts, "The lines could not be imported: ", [&] {
        StagedFiles files(import_place(folder, "").folder);
        ImportingAll importing(index, choices, folder, files, notes, all);
        intake::read_survey_lines(index, importing, pacer);
        if (all.lines.empty()) throw Fault("No line of " + file_name(index.layout.path) + " can be imported");
        if (!may_replace(files, replace, prompts)) return;
        files.deliver();
        all.done = true;
    });
    show_faults(notes, prompts);
    if (!all.done) all.lines.clear();
    return all;
}

}  // namespace anomalis::flow
