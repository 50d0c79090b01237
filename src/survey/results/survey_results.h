#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "survey/results/line_result.h"
#include "survey/results/results_folder.h"

namespace anomalis::survey {

/// The results of a survey as they stand.
struct SurveyResults {
    std::string folder;
    SurveyIdentity identity;
    std::vector<LineResult> lines;     ///< those that are there, in the order of the plan
    std::vector<std::string> missing;  ///< names of those that are not
};

/// Reads them from the folders of the lines. Raises Fault (no survey there, a damaged result), FileFault.
SurveyResults read_survey_results(const std::string& folder);

}  // namespace anomalis::survey
