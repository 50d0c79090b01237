#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "flow/import_survey.h"
#include "survey/plan/plan.h"
#include "survey/results/line_result.h"
#include "survey/run/line_answer.h"
#include "survey/run/run_survey.h"

namespace anomalis {
class Pacer;
}  // namespace anomalis

// One line of a survey from first to last.
namespace anomalis::survey {

class LineFolder;

struct LineJob {
    const PlannedLine& planned;
    const intake::SurveyIndex* index = nullptr;  ///< of the survey file; null for a workspace
    std::size_t line = 0;                        ///< in the index
    const flow::ImportChoices* choices = nullptr;
};

/// What a line needs of whoever runs it.
struct LineServices {
    GeographicPlaces& places;
    /// Asked again and again; true leaves the line.
    std::function<bool()> stop;
    /// See `DrawPicture`; empty where no picture can be drawn.
    DrawPicture draw;
    Pacer& pacer;
};

/// What a line is called in tables: "line 5690 of osborne_12_lines.csv", or its workspace.
std::string source_of(const LineJob& job);

/// Does the commands of a line in a folder of its own, each in a session of its own, as they are done one by
/// one; the result has neither digest nor files yet. What a line cannot do is a failed result. Raises
/// MachineFailure, and Stopped where it was left.
LineResult run_line(const LineJob& job, const LineFolder& folder, LineServices& services);

}  // namespace anomalis::survey
