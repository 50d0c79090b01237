#pragma once

#include <string>
#include <vector>

#include "core/line_source.h"
#include "core/workspace.h"
#include "intake/load_report.h"
#include "intake/survey/survey_index.h"

namespace anomalis::batch {

class BatchPrompts;

/// A line that was imported, and what was left behind of it.
struct WrittenLine {
    std::string table, workspace;  ///< paths
    intake::LoadReport report;
    LineSource source;
    EarthField field;
};

/// What an import read and wrote, as one JSON object. A field that is not set is null.
std::string import_json_text(const intake::SurveyIndex& index, const std::vector<WrittenLine>& lines,
                             const BatchPrompts& told);

}  // namespace anomalis::batch
