#pragma once

#include <optional>
#include <string>
#include <vector>

#include "flow/import_survey.h"
#include "intake/load_report.h"

// What an import says to a person.
namespace anomalis::flow {

/// What stands over a column of the preview, one a line: name, role, unit, the first null.
/// Always four.
std::vector<std::string> column_heading(const intake::SurveyColumn& column);
/// Numbers as they are keyed: "-99999 -1e+32"; "" for none.
std::string nulls_text(const std::vector<double>& nulls);

/// What is missing before lines can be read, and what to do; "" when nothing is.
std::string missing_roles(const intake::SurveyLayout& layout);

/// Which system the coordinates get, and why.
std::string system_words(const intake::SurveyLayout& layout, const intake::SurveyIndex* index,
                         const std::string& keyed);
/// Systems that are offered while one is keyed: "EPSG:32754 - WGS 84 / UTM zone 54S".
std::vector<std::string> suggested_systems(const std::string& keyed);

/// The earth's field that the import will set, or why it cannot: for a line, or the first one.
std::string field_words(const intake::SurveyIndex& index, std::optional<std::size_t> line,
                        const ImportChoices& choices);

/// What one pass over the file has found, for the strip below.
std::vector<intake::ReportItem> reading_items(const intake::SurveyIndex& index);

/// "Survey line", "Tie", "Folds back in 3 pieces", "One station".
std::string kind_words(const intake::SurveyLineInfo& line);

}  // namespace anomalis::flow
