#pragma once

#include <functional>
#include <string>

#include "survey/plan/plan.h"
#include "survey/run/run_survey.h"

namespace anomalis::survey {

/// "find (at most 5 bodies), invert, uncertainty (300 models)"; "import" or "read" where a plan asks for
/// nothing else.
std::string steps_text(const LineOptions& options, bool imported);

/// How a line of a plan stands in a results folder.
enum class LineState {
    missing,
    kept,     ///< done, and nothing has changed since
    failed,   ///< the same, and it failed
    changed,  ///< its data, its options or the program have changed since
};
struct PlannedWork {
    const LineToDo* line = nullptr;
    LineState state = LineState::missing;
    bool to_do = true;
};

/// What `run_survey` would do, in the order of the plan. Writes nothing. Raises as it does.
void list_planned_work(const SurveyPlan& plan, const RunOptions& options,
                       const std::function<void(const PlannedWork&)>& take);

}  // namespace anomalis::survey
