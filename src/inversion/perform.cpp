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

MisfitPair evaluate_true_rows(Session& session) {
    Faults faults;
    const MisfitPair misfit = model::evaluate_model_misfit(session, session.workspace.mag.data,
                                                           session.workspace.grav.data, faults);
    show_faults(faults, session.prompts);
    session.prompts.yield();
    return misfit;
}

int scan(int mode, const RunRequest& request, Session& session) {
    int count = 0;
    if (request.entire_model) {
        setup_all_body_parameters(mode, request.channel, count, session);
    } else {
        setup_body_parameters(mode, request.channel, request.current_body, count, session);
    }
    return count;
}

void size_parameter_arrays(InversionState& inversion, int count) {
    if (inversion.inversion_params.count() == count) return;
    inversion.inversion_params.assign(count);
    inversion.inversion_param_map.assign(count);
    inversion.start_params.assign(count);
    inversion.best_params.assign(count);
    inversion.best_model_available = false;
}

void keep_best(Session& session, const MisfitPair& misfit, RunObserver& observer) {
    InversionState& inversion = session.inversion;
    inversion.best_misfit = misfit;
    inversion.best_params = current_values(inversion);
    inversion.best_param_map = inversion.inversion_param_map;
    inversion.best_model_available = true;
    observer.best_model(true);
}

/// Counts and fills the list. Returns false when there is nothing to invert or the list cannot be made.
bool fill_parameters(const RunRequest& request, Session& session, RunObserver& observer, RunResult& result) {
    InversionState& inversion = session.inversion;
    const int count = scan(0, request, session);
    if (count == 0) {
        session.prompts.message("There are no parameters free to invert on");
        result.status = run_succeeded;
        return false;
    }
    size_parameter_arrays(inversion, count);
    session.prompts.yield();
    if (scan(1, request, session) != count) {
        result.status = run_failed;
        return false;
    }
    // A best model of other parameters would be restored into the wrong bodies.
    if (inversion.best_param_map != inversion.inversion_param_map && inversion.best_misfit[0] != unset) {
        forget_best_model(inversion);
        observer.best_model(false);
    }
    inversion.start_params = current_values(inversion);
    result.filled = true;
    return true;
}

void begin(Session& session, RunObserver& observer, RunResult& result) {
    Workspace& workspace = session.workspace;
    session.prompts.yield();
    start_trial_rows(workspace);
    result.misfit_pair = evaluate_true_rows(session);
    result.initial_misfit = result.misfit_pair;
    if (session.inversion.best_misfit[0] == unset) keep_best(session, result.misfit_pair, observer);
}

void run_sweeps(Session& session, const RunRequest& request, RunObserver& observer, RunResult& result,
                const RunClock& clock) {
    const auto target = static_cast<std::size_t>(session.inversion.inversion_target);
    const int limit = std::max(request.max_iterations, 1);
    SweepState state{result.misfit_pair};
    bool ended = false;
    while (!ended) {
        const auto previous = static_cast<double>(result.misfit_pair[target]);
        sweep_parameters(session, state);
        result.misfit_pair = state.misfit_pair;
        observer.show_iteration(++result.iterations);
        if (result.iterations == limit || session.inversion.stop_inversion) {
            result.status = run_limit;
            ended = true;
        }
        if (!(static_cast<double>(result.misfit_pair[target]) < needed_gain * previous)) {
            result.status = run_no_decrease;
            ended = true;
        }
        observer.show_current_misfit(evaluate_true_rows(session));
        observer.progress({result.iterations, limit, result.misfit_pair, clock.seconds()});
        if (ended) break;
        observer.display_iteration();
        observer.show_current_misfit(result.misfit_pair);
        session.prompts.yield();
    }
}

}  // namespace

int setup_inversion(Session& session, int current_body, RunObserver& observer) {
    Workspace& workspace = session.workspace;
    InversionState& inversion = session.inversion;
    int status = run_failed;
    const int failed =
        report_failure(session.prompts, "An error occurred while seting up the inversion: ", [&] {
            if (workspace.station_count <= 0) return;
            model::set_misfit_scale(inversion);
            if (workspace.first_station >= workspace.last_station) {
                workspace.first_station = 1;
                workspace.last_station = workspace.station_count;
            }
            const std::int64_t count = std::int64_t{workspace.last_station} - workspace.first_station + 1;
            if (count < 1) return;
            inversion.fit_station_count = static_cast<std::int32_t>(std::min<std::int64_t>(count, INT32_MAX));
            if (workspace.body_count < 1 || current_body < 1 || current_body > workspace.body_count) return;
            Faults faults;
            const MisfitPair misfit = model::calculate_misfit(workspace, inversion, faults);
            show_faults(faults, session.prompts);
            if (!std::isfinite(misfit[0]) || !std::isfinite(misfit[1]))
                throw Fault("The misfit is not a number");
            observer.show_initial_misfit(misfit);
            status = run_succeeded;
        });
    return failed ? run_failed : status;
}

void perform_inversion(Session& session, const RunRequest& request, RunObserver& observer,
                       RunResult& result) {
    const RunClock clock;
    const std::int64_t evaluations_before = session.inversion.evaluations;
    report_failure(session.prompts, "An error occurred performing the inversion: ", [&] {
        // Before the channel is stored: the first run after a change of channel keeps the scale of the
        // previous one, test `Perform, the_first_run_after_a_change_of_channel_keeps_the_old_scale`.
        result.status = setup_inversion(session, request.current_body, observer);
        if (result.status < 0) return;
        if (request.channel == channel_joint && request.method == InversionMethod::sweep) {
            result.status = run_failed;
            throw Fault("The sweep inverts one channel; both at once need the least-squares method");
        }
        session.inversion.inversion_channel = request.channel == channel_grav ? channel_grav : channel_mag;
        if (!fill_parameters(request, session, observer, result)) return;
        begin(session, observer, result);
        if (request.method == InversionMethod::sweep) {
            run_sweeps(session, request, observer, result, clock);
        } else {
            fit_model(session, request, observer, clock, result);
        }
        const auto target = static_cast<std::size_t>(session.inversion.inversion_target);
        if (result.misfit_pair[target] < session.inversion.best_misfit[target])
            keep_best(session, result.misfit_pair, observer);
    });
    result.evaluations = session.inversion.evaluations - evaluations_before;
}

std::string status_label(int status) {
    if (status < 0) return "Inversion failed: " + format_number(std::int32_t{status}, "0");
    if (status == run_limit) return "Iteration limit reached";
    if (status == run_no_decrease) return "Misfit did not decrease";
    return "Inversion succeeded";
}

}  // namespace anomalis::inversion
