#pragma once

#include <string>

#include "survey/plan/plan.h"

namespace anomalis::survey {

/// Reads a plan: TOML, JSON (".json"), or a CSV table (".csv") with one row a workspace. Files that it names
/// are found from its folder. Raises FileFault, or Fault with the file, the line or the key, what is wrong
/// and what there is: keys and columns that are not known (the nearest that is), a value of another kind or
/// out of its range, a line or a workspace that is named twice, two that write to one place, files that are
/// not there, a plan without a line.
SurveyPlan read_survey_plan(const std::string& path);

}  // namespace anomalis::survey
