#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "inversion/fitted_model.h"
#include "inversion/run_observer.h"

// A whole run: its set-up and refusals, the list, the trial rows, the best model.
namespace anomalis::inversion {

using anomalis::InversionMethod;

/// How a run ended. Below 0 it failed; the numbers are shown and reported.
enum RunStatus : int { run_failed = -1, run_succeeded = 0, run_limit = 1, run_no_decrease = 2 };

inline constexpr int default_iterations = 25;
inline constexpr int default_starts = 4;

struct RunRequest {
    bool entire_model = true;
    int current_body = 1;
    std::int32_t channel = channel_mag;
    int max_iterations = default_iterations;
    InversionMethod method = InversionMethod::sweep;
    /// Least squares: the fit, and others from starts around it that may find a better one.
    int starts = default_starts;
};

/// Runs from the start of a run.
class RunClock {
  public:
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// What is asked for beside a fit; entries follow the list of parameters.
struct FitStatistics {
    /// Standard errors in the units of the parameters; not a number for a parameter that stands on a limit
    /// or that the data do not determine.
    std::vector<double> errors;
    /// Correlation coefficients, row by row; not a number where an error is.
    std::vector<double> correlation;
    std::vector<int> undetermined;  ///< list indices from 1: the data do not determine these
    std::vector<int> at_limit;      ///< list indices from 1: these ended on a limit, which holds them
};

struct RunResult {
    int status = run_succeeded;
    bool filled = false;  ///< the list was filled, so the start values can come back
    int iterations = 0;
    std::int64_t evaluations = 0;
    std::optional<MisfitPair> initial_misfit;
    MisfitPair misfit_pair{};
    /// A joint fit: the same of gravity.
    std::optional<MisfitPair> initial_grav_misfit, grav_misfit;
    std::optional<FitStatistics> statistics;
    int stopped_at_limits = 0;  ///< least squares: so many parameters ended on a limit
    /// Least squares: what is kept of the fit with the workspace.
    std::optional<FitRecord> record;
    Faults faults;  ///< what there is to tell of the run, the lack of free parameters among it
};

/// Scale, station window and first misfit of a run. Returns 0 when ready, -1 when refused: no stations, no
/// bodies, no current body.
int setup_inversion(const FittedModel& model, int current_body, RunObserver& observer);

/// The run. The bodies hold the last accepted state when it returns, after a fault whatever was reached.
/// Raises nothing: what went wrong is in the faults of `result`. A stop is asked for by
/// `inversion.stop_inversion`; the run ends with its iteration. An observer whose `working` asks for it ends
/// it in the middle of an evaluation, with the same status and the values of the last accepted step.
void perform_inversion(Workspace& workspace, InversionState& inversion, const RunRequest& request,
                       RunObserver& observer, RunResult& result);

/// The outcome as it is shown: of a status alone, and with the limits that a fit stopped at.
std::string status_label(int status);
std::string status_label(const RunResult& result);

}  // namespace anomalis::inversion
