#pragma once

#include <string>

#include "survey/plan/plan.h"
#include "survey/results/results_folder.h"
#include "survey/run/survey_input.h"

// How whoever works on a results folder makes sure that it is of this survey. Private to this room.
namespace anomalis::survey {

/// `open_survey`; a survey file that is there and cannot be read is a MachineFailure.
SurveyInput open_input(const SurveyPlan& plan);

SurveyIdentity identity_of(const SurveyPlan& plan, const SurveyInput& input);

/// Raises Fault where the folder holds the results of another survey.
void refuse_other_survey(const std::string& folder, const SurveyIdentity& own);

/// The folder becomes one of this survey, as the plan is now. Raises MachineFailure.
void prepare_folder(const std::string& folder, const SurveyIdentity& identity);

}  // namespace anomalis::survey
