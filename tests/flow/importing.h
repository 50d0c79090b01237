#pragma once

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "core/failure.h"
#include "flow/import_survey.h"
#include "intake/load.h"
#include "intake/row_notes.h"
#include "support/scripted_prompts.h"
#include "support/survey_lines.h"
#include "support/temp_folder.h"

namespace anomalis::flow {

/// A survey file, its index and the imports of it.
struct Importing {
    explicit Importing(const std::string& text, const std::string& system = "",
                       const std::string& name = "survey.csv")
        : path(folder.write(name, text)),
          index(intake::index_survey(intake::recognise_survey(path), {.from = "", .to = system})) {}

    ImportedLine line(std::size_t number, std::optional<std::size_t> piece = {}) const {
        return import_line(index, number, piece, choices, folder.folder());
    }
    std::string fault(std::size_t number) const {
        try {
            line(number);
        } catch (const Fault& fault) {
            return fault.what();
        }
        return "none";
    }
    bool write(const ImportedLine& line, ReplaceExisting replace = ReplaceExisting::refuse) {
        return write_imported(line, LeftBehind::table_and_workspace, replace, prompts);
    }
    int files() const { return folder.entries(); }

    TempFolder folder;
    std::string path;
    intake::SurveyIndex index;
    ImportChoices choices;
    ScriptedPrompts prompts;
};

/// The workspace with its line, as the first tab loads it.
inline Workspace loaded(const ImportedLine& line, ScriptedPrompts& prompts) {
    Workspace workspace = line.workspace;
    intake::RowNotes rows;
    EXPECT_EQ(intake::load_locations(workspace, prompts, &rows), 0);
    return workspace;
}

inline bool has_note(const ImportedLine& line, const std::string& words) {
    return std::ranges::any_of(line.notes.entries(), [&](const Faults::Entry& entry) {
        return entry.text.find(words) != std::string::npos;
    });
}

}  // namespace anomalis::flow
