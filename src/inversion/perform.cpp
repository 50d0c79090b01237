#include "inversion/perform.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "inversion/model_fit.h"
#include "inversion/parameters.h"
#include "inversion/sweep.h"
#include "inversion/trial_rows.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

/// A sweep must leave less than this part of the misfit, or the run ends.
constexpr double needed_gain = 0.99;

Array1<float> current_values(const InversionState& inversion) {
    Array1<float> values(inversion.inversion_params.count());
    for (int i = 1; i <= values.count(); ++i) values[i] = inversion.inversion_params[i].value;
    return values;
}

void size_parameter_arrays(InversionState& inversion, int count) {
    if (inversion.inversion_params.count() == count) return;
    inversion.inversion_params.assign(count);
    inversion.inversion_param_map.assign(count);
    inversion.start_params.assign(count);
    inversion.best_params.assign(count);
    inversion.best_model_available = false;
}

/// The observer's turns.
class ObserverPacer : public TurnPacer {
  public:
    explicit ObserverPacer(RunObserver& observer) : TurnPacer(observer.turn_units()), observer_(observer) {}

  protected:
    bool turn(double units) override { return observer_.working(units); }

  private:
    RunObserver& observer_;
};

/// One run from its set-up to its best model.
class Run {
  public:
    Run(const FittedModel& model, const RunRequest& request, RunObserver& observer, RunResult& result)
        : model_(model),
          workspace_(model.workspace),
          inversion_(model.inversion),
          request_(request),
          observer_(observer),
          result_(result) {}

    void perform() {
        // Before the channel is stored: the first run after a change of channel keeps the scale of the
        // previous one, test `Perform, the_first_run_after_a_change_of_channel_keeps_the_old_scale`.
        result_.status = setup_inversion(model_, request_.current_body, observer_);
        if (result_.status < 0) return;
        use_channels_that_are_there();
        if (request_.channel == channel_joint && request_.method == InversionMethod::sweep) {
            result_.status = run_failed;
            throw Fault("The sweep inverts one channel; both at once need the least-squares method");
        }
        inversion_.inversion_channel = request_.channel == channel_grav ? channel_grav : channel_mag;
        if (!fill_parameters()) return;
        begin();
        if (request_.method == InversionMethod::sweep) {
            run_sweeps();
        } else {
            fit_model(model_, request_, observer_, clock_, result_);
        }
        keep_if_best();
    }

    /// The run was left in the middle of an evaluation. The bodies hold what it accepted.
    void leave() {
        result_.status = run_limit;
        if (result_.initial_misfit) keep_if_best();
    }

  private:
    void use_channels_that_are_there();
    std::size_t target() const { return static_cast<std::size_t>(inversion_.inversion_target); }
    int scan(int mode);
    bool fill_parameters();
    MisfitPair evaluate_true_rows();
    void keep_best();
    void keep_if_best() {
        if (result_.misfit_pair[target()] < inversion_.best_misfit[target()]) keep_best();
    }
    void begin();
    void run_sweeps();
    bool sweep_once(SweepState& state, int limit);

    const FittedModel& model_;
    Workspace& workspace_;
    InversionState& inversion_;
    RunRequest request_;
    RunObserver& observer_;
    RunResult& result_;
    RunClock clock_;
};

/// A joint fit of a line with one channel is a fit of that channel.
void Run::use_channels_that_are_there() {
    if (request_.channel != channel_joint || (workspace_.has_mag() && workspace_.has_grav())) return;
    const bool gravity = workspace_.has_grav();
    request_.channel = gravity ? channel_grav : channel_mag;
    model_.faults.add(gravity ? "The line has no magnetics: gravity alone is fitted"
                              : "The line has no gravity: magnetics alone are fitted",
                      1, Severity::remark);
}

int Run::scan(int mode) {
    int count = 0;
    if (request_.entire_model) {
        setup_all_body_parameters(mode, request_.channel, count, model_, request_.method);
    } else {
        setup_body_parameters(mode, request_.channel, request_.current_body, count, model_, request_.method);
    }
    return count;
}

/// Counts and fills the list. Returns false when there is nothing to invert or the list cannot be made.
bool Run::fill_parameters() {
    const int count = scan(0);
    if (count == 0) {
        model_.faults.add("There are no parameters free to invert on");
        result_.status = run_succeeded;
        return false;
    }
    size_parameter_arrays(inversion_, count);
    if (scan(1) != count) {
        result_.status = run_failed;
        return false;
    }
    // A best model of other parameters would be restored into the wrong bodies.
    if (inversion_.best_param_map != inversion_.inversion_param_map && inversion_.best_misfit[0] != unset) {
        forget_best_model(inversion_);
        observer_.best_model(false);
    }
    inversion_.start_params = current_values(inversion_);
    result_.filled = true;
    return true;
}

MisfitPair Run::evaluate_true_rows() {
    const MisfitPair misfit = model::evaluate_model_misfit(workspace_, inversion_, workspace_.mag.data,
                                                           workspace_.grav.data, model_.faults, model_.pacer);
    observer_.evaluated();
    return misfit;
}

void Run::keep_best() {
    inversion_.best_misfit = result_.misfit_pair;
    inversion_.best_params = current_values(inversion_);
    inversion_.best_param_map = inversion_.inversion_param_map;
    inversion_.best_model_available = true;
    observer_.best_model(true);
}

void Run::begin() {
    start_trial_rows(workspace_);
    result_.misfit_pair = evaluate_true_rows();
    result_.initial_misfit = result_.misfit_pair;
    if (inversion_.best_misfit[0] == unset) keep_best();
}

void Run::run_sweeps() {
    const int limit = std::max(request_.max_iterations, 1);
    SweepState state{result_.misfit_pair};
    while (sweep_once(state, limit)) {
        observer_.show_current_misfit(result_.misfit_pair);
        observer_.display_iteration();
    }
}

/// Returns false when the run ends with this sweep.
bool Run::sweep_once(SweepState& state, int limit) {
    const auto previous = static_cast<double>(result_.misfit_pair[target()]);
    try {
        sweep_parameters(model_, state, observer_);
    } catch (const Stopped&) {
        result_.misfit_pair = state.misfit_pair;
        throw;
    }
    result_.misfit_pair = state.misfit_pair;
    ++result_.iterations;
    bool goes_on = true;
    if (result_.iterations == limit || inversion_.stop_inversion) {
        result_.status = run_limit;
        goes_on = false;
    }
    if (!(static_cast<double>(result_.misfit_pair[target()]) < needed_gain * previous)) {
        result_.status = run_no_decrease;
        goes_on = false;
    }
    observer_.show_current_misfit(evaluate_true_rows());
    observer_.progress({result_.iterations, limit, result_.misfit_pair, clock_.seconds()});
    return goes_on;
}

/// The set-up, or -1 where it is refused.
int set_up(const FittedModel& model, int current_body, RunObserver& observer) {
    Workspace& workspace = model.workspace;
    InversionState& inversion = model.inversion;
    if (workspace.station_count <= 0) return run_failed;
    model::set_misfit_scale(inversion);
    if (workspace.first_station >= workspace.last_station) {
        workspace.first_station = 1;
        workspace.last_station = workspace.station_count;
    }
    const std::int64_t count = std::int64_t{workspace.last_station} - workspace.first_station + 1;
    if (count < 1) return run_failed;
    inversion.fit_station_count = static_cast<std::int32_t>(std::min<std::int64_t>(count, INT32_MAX));
    if (workspace.body_count < 1 || current_body < 1 || current_body > workspace.body_count)
        return run_failed;
    const MisfitPair misfit = model::calculate_misfit(workspace, inversion, model.faults);
    if (!std::isfinite(misfit[0]) || !std::isfinite(misfit[1])) throw Fault("The misfit is not a number");
    observer.show_initial_misfit(misfit);
    return run_succeeded;
}

}  // namespace

int setup_inversion(const FittedModel& model, int current_body, RunObserver& observer) {
    int status = run_failed;
    report_failure(model.faults, "An error occurred while seting up the inversion: ", [&] {
        status = set_up(model, current_body, observer);
    });
    return status;
}

void perform_inversion(Workspace& workspace, InversionState& inversion, const RunRequest& request,
                       RunObserver& observer, RunResult& result) {
    const std::int64_t evaluations_before = inversion.evaluations;
    ObserverPacer pacer(observer);
    const FittedModel model{workspace, inversion, result.faults, pacer};
    Run run(model, request, observer, result);
    const int fault = report_failure(result.faults, "An error occurred performing the inversion: ", [&] {
        try {
            run.perform();
        } catch (const Stopped&) {
            run.leave();
        }
    });
    // A sweep that faults ends with what it has reached; a fit that does has found nothing.
    if (fault != 0 && request.method == InversionMethod::least_squares) result.status = run_failed;
    result.evaluations = inversion.evaluations - evaluations_before;
}

std::string status_label(int status) {
    if (status < 0) return "Inversion failed: " + format_number(std::int32_t{status}, "0");
    if (status == run_limit) return "Iteration limit reached";
    if (status == run_no_decrease) return "Misfit did not decrease";
    return "Inversion succeeded";
}

std::string status_label(const RunResult& result) {
    if (result.status != run_succeeded || result.stopped_at_limits == 0) return status_label(result.status);
    return "Stopped at the limit of " + std::to_string(result.stopped_at_limits) +
           (result.stopped_at_limits == 1 ? " parameter" : " parameters");
}

}  // namespace anomalis::inversion
