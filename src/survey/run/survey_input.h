#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "flow/import_survey.h"
#include "survey/plan/plan.h"

// What the lines of a plan are made from.
namespace anomalis::survey {

struct SurveyInput {
    std::optional<intake::SurveyIndex> index;  ///< of the survey file; none for workspaces
    std::vector<LineToDo> lines;               ///< in the order of the plan
};

/// Reads the survey file once, or looks for nothing where the lines are workspaces. Raises Fault: what the
/// plan says does not go with the file; FileFault.
SurveyInput open_survey(const SurveyPlan& plan);

/// What there is to know of a survey file before its lines are looked at, a sentence each: rows that are not
/// used, what its layout has to say.
std::vector<std::string> survey_remarks(const intake::SurveyIndex& index);

/// How much there is to do on a line, in no unit: its stations, or the bytes of a workspace's data.
double line_work(const SurveyInput& input, const LineToDo& line);

/// The digest of a line: of its data, of all that the plan says of it, of the program. Raises MachineFailure.
std::string line_digest(const SurveyPlan& plan, const SurveyInput& input, const LineToDo& line);

}  // namespace anomalis::survey
