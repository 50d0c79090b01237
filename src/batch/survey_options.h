#pragma once

#include <string>

#include "batch/option_list.h"
#include "flow/import_survey.h"
#include "intake/survey/survey_corrections.h"

// How the commands that read survey files are told what is in them.
namespace anomalis::batch {

struct SurveyOptions {
    std::string file;
    std::string system;       ///< of the stations
    std::string file_system;  ///< of the file
    intake::ColumnChoices columns;
};

/// FILE, --crs, --file-crs, --role, --unit, --null.
void add_survey_options(OptionList& options, SurveyOptions& survey);

/// The layout as it was recognised and corrected. Raises Fault, FileFault.
intake::SurveyLayout survey_layout(const SurveyOptions& survey);
/// The lines of the file. Raises Fault, FileFault.
intake::SurveyIndex survey_index(const SurveyOptions& survey);

/// Raises Fault with names that are like it.
std::size_t line_of_name(const intake::SurveyIndex& index, const std::string& name);

class BatchSession;
/// What was not used of the file, and what its layout has to say.
void tell_survey(const intake::SurveyIndex& index, BatchSession& batch);

/// How an import is told of date, field and heights: --date, --field, --igrf, --sensor-height.
void add_import_choices(OptionList& options, flow::ImportChoices& choices);

}  // namespace anomalis::batch
