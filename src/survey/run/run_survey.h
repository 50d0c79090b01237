#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "survey/plan/plan.h"
#include "survey/results/line_result.h"

namespace anomalis {
class Session;
}  // namespace anomalis

namespace anomalis::survey {

/// Part `number` of `count`, from 1.
struct Shard {
    int number = 1, count = 1;
};

struct RunOptions {
    std::string folder;
    int jobs = 0;  ///< lines at a time; 0: as many as there are cores
    Shard shard;
    bool again_failed = false;  ///< lines that failed are tried again
};

struct SurveyProgress {
    std::size_t lines = 0;  ///< of this run
    std::size_t done = 0;   ///< finished now, failures included
    std::size_t kept = 0;   ///< were done before
    std::size_t failed = 0;
    double seconds = 0;  ///< since the start, by a clock that never jumps
    std::string last;    ///< the line that ended last
};

/// Who watches a run. Called on the thread that called `run_survey`.
class SurveyObserver {
  public:
    virtual ~SurveyObserver() = default;
    virtual void progress(const SurveyProgress&) {}
    /// What there is to know of the survey file, before its lines are looked at.
    virtual void remark(const std::string&) {}
    /// A line has ended.
    virtual void line_done(const LineResult&) {}
    /// Asked again and again; true: lines under way are left, what is being written is finished.
    virtual bool stop() { return false; }
};

/// Draws the picture of a session's model to a file; raises Fault, FileFault. Called by one thread at a time.
using DrawPicture = std::function<void(Session&, const RenderStep&, const std::string& path)>;

enum class RunOutcome {
    all_done,
    some_failed,
    stopped,   ///< somebody asked for it
    try_again  ///< no room, no file access; what is done stays done
};
struct RunResult {
    RunOutcome outcome = RunOutcome::all_done;
    SurveyProgress progress;
    std::string why;  ///< of `try_again`: what, where and what to do
};

/// Does the lines of a plan that are not done yet, on all cores; when all are there and the run was no shard,
/// the tables (survey/results/tables.h). A line is done again when its data, what the plan says of it or the
/// program has changed. Raises Fault for what is wrong before anything runs: a folder of another survey, a
/// line that the file does not have, a shard that there is not; FileFault for a survey file that is missing.
RunResult run_survey(const SurveyPlan& plan, const RunOptions& options, SurveyObserver& observer,
                     const DrawPicture& draw = {});

}  // namespace anomalis::survey
