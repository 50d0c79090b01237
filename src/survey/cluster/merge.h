#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "survey/plan/plan.h"
#include "survey/results/line_result.h"
#include "survey/results/results_folder.h"
#include "survey/results/tables.h"

// The end of a survey that was done in parts.
namespace anomalis::survey {

/// Whether what is kept of a line, counted from 0 in the order of the plan, is of the plan and the input as
/// they are now. Empty: nobody can say, and what is there counts.
using LineIsCurrent = std::function<bool(std::size_t line, const LineResult& kept)>;

enum class MergeOutcome {
    all_done,
    some_failed,   ///< as lines; they are rows of the tables
    lines_missing  ///< no tables were written
};
struct MergeResult {
    MergeOutcome outcome = MergeOutcome::all_done;
    std::size_t taken = 0;             ///< lines that came from other folders
    std::vector<std::string> missing;  ///< names of lines
    TableCounts counts;
    std::string why;  ///< of `lines_missing`: what, where and what to do
};

/// Takes into `folder` the lines that other results folders of the same plan have, and writes the tables when
/// all lines of the plan are there and whole. Other folders stay as they are. It may be ended at any moment
/// and done again: a line is taken whole or not at all.
/// Raises Fault before anything is written: a folder without a survey, of another survey or another plan, a
/// line that two folders have from different input; MachineFailure where the machine fails.
MergeResult merge_lines(const SurveyIdentity& identity, const std::string& folder,
                        const std::vector<std::string>& others, const LineIsCurrent& is_current = {});

/// The same for a plan: of its lines those count whose data, options and program are as they are now.
MergeResult merge_survey(const SurveyPlan& plan, const std::string& folder,
                         const std::vector<std::string>& others);

}  // namespace anomalis::survey
