#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "flow/import_survey.h"

// What an import asks of its index, and makes of a line that was read. Private to this room.
namespace anomalis::flow {

/// The names of the files of all lines, without folder and ending.
std::vector<std::string> line_file_names(const intake::SurveyIndex& index, const ImportChoices& choices);

/// "line 5690 of osborne_12_lines.csv"
std::string line_title(const intake::SurveyIndex& index, std::size_t line, std::optional<std::size_t> piece);

/// Where the files of one line go.
struct ImportPlace {
    std::string folder;  ///< with its separator, or ""
    std::string name;    ///< without ending
};
ImportPlace import_place(const std::string& folder, const std::string& name);

/// Table and workspace of a line that was read. Raises Fault.
ImportedLine make_import(const intake::SurveyIndex& index, std::size_t line, std::optional<std::size_t> piece,
                         intake::SurveyLine&& read, const ImportChoices& choices, const ImportPlace& place);

}  // namespace anomalis::flow
