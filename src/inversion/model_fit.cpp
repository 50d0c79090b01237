#include "inversion/model_fit.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/free_memory.h"
#include "core/numbers.h"
#include "core/saturating.h"
#include "inversion/fit_account.h"
#include "inversion/fit_rows.h"
#include "inversion/fit_weights.h"
#include "inversion/least_squares.h"
#include "inversion/parameters.h"
#include "inversion/restarts.h"
#include "inversion/rows_problem.h"
#include "inversion/trial_rows.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

/// The run around the rows: who watches, and what of it is in the workspace.
class WatchedFit : public RowsProblem {
  public:
    WatchedFit(const FittedModel& model, const RunRequest& request, FitRows& rows,
               std::span<const FitParameter> parameters, RunObserver& observer, const RunClock& clock,
               RunResult& result)
        : RowsProblem(model.workspace, rows, parameters, model.pacer),
          model_(model),
          request_(request),
          observer_(observer),
          clock_(clock),
          result_(result) {
        for (const FitParameter& parameter : parameters) shown_.push_back(parameter.value);
    }

    void residuals(std::vector<float>& values, Eigen::VectorXd& out) override {
        RowsProblem::residuals(values, out);
        observer_.evaluated();
    }
    void columns(std::span<const float> values, Eigen::MatrixXd& out) override {
        RowsProblem::columns(values, out);
        observer_.evaluated();
    }
    bool iteration_done(int iteration, std::span<const float> values) override {
        show(values);
        tell_evaluations();
        result_.iterations = iteration;
        observer_.progress({iteration, request_.max_iterations, result_.misfit_pair, clock_.seconds()});
        observer_.show_current_misfit(result_.misfit_pair);
        observer_.display_iteration();
        return !model_.inversion.stop_inversion;
    }

    /// The inversion takes over how many models were evaluated.
    void tell_evaluations() {
        const long before = std::exchange(told_evaluations_, rows_evaluated());
        model_.inversion.evaluations += told_evaluations_ - before;
    }
    /// The workspace takes the values over, with its rows and its misfit.
    void show(std::span<const float> values) {
        if (std::ranges::equal(values, shown_)) return;
        put(values);
        const MisfitPair misfit =
            model::evaluate_model_misfit(model_.workspace, model_.inversion, model_.workspace.mag.work,
                                         model_.workspace.grav.work, model_.faults, model_.pacer);
        accept_trial_rows(model_.workspace);
        shown_.assign(values.begin(), values.end());
        result_.misfit_pair = misfit;
    }
    /// The list and the bodies hold what was shown last.
    void go_back() { put(shown_); }

  private:
    void put(std::span<const float> values) {
        auto params = model_.inversion.inversion_params.span();
        for (std::size_t i = 0; i < values.size(); ++i) params[i].value = values[i];
        double penalty = 0;
        apply_all_parameters(penalty, model_);
    }

    const FittedModel& model_;
    const RunRequest& request_;
    RunObserver& observer_;
    const RunClock& clock_;
    RunResult& result_;
    std::vector<float> shown_;
    long told_evaluations_ = 0;
};

int status_of(FitEnd end) {
    if (end == FitEnd::iteration_limit) return run_limit;
    return end == FitEnd::no_decrease ? run_no_decrease : run_succeeded;
}

MisfitPair gravity_misfit(const FittedModel& model) {
    const Workspace& workspace = model.workspace;
    return model::channel_misfit(workspace, workspace.grav.data, model::misfit_scale_of(channel_grav),
                                 model.faults);
}

FitRequest fit_request(const FittedModel& model, const RunRequest& request) {
    FitRequest fit;
    for (const std::int32_t channel : {channel_mag, channel_grav})
        if (request.channel == channel || request.channel == channel_joint) fit.channels.push_back(channel);
    fit.target = model.inversion.inversion_target;
    const auto places = model.inversion.inversion_param_map.span();
    fit.places.assign(places.begin(), places.end());
    return fit;
}

std::vector<FitParameter> fit_parameters(const FittedModel& model) {
    const InversionState& inversion = model.inversion;
    std::vector<FitParameter> parameters;
    for (int i = 1; i <= inversion.inversion_params.count(); ++i) {
        const InversionParamPlace place = inversion.inversion_param_map[i];
        parameters.push_back(fit_parameter(model.workspace, model.workspace.body(place.body),
                                           place.param_code, inversion.inversion_params[i]));
    }
    return parameters;
}

/// Readings that are one and the same tell of no body.
std::vector<std::string> remarks_on_readings(const FitRows& rows) {
    std::vector<std::string> remarks;
    for (const FittedRows& channel : rows.channels()) {
        if (channel.observed.maxCoeff() > channel.observed.minCoeff()) continue;
        remarks.push_back("The " + std::string(channel.channel == channel_mag ? "magnetic" : "gravity") +
                          " readings are the same at every station of the window: they tell of no body");
    }
    return remarks;
}

void require_enough_rows(const FitRows& rows) {
    std::size_t unknowns = rows.parameter_count();
    for (const FittedRows& channel : rows.channels())
        unknowns += static_cast<std::size_t>(channel.basis.cols());
    if (rows.row_count() >= unknowns) return;
    throw Fault("There are " + std::to_string(rows.row_count()) + " stations for " +
                std::to_string(unknowns) + " unknowns: hold parameters or widen the window");
}

/// The residuals are hardly more than the noise that they are weighed by, or than rounding: no other model
/// fits better.
bool fits_to_the_noise(const FitRows& rows, const FitOutcome& outcome) {
    constexpr double most_chi_square = 1.2, few_roundings = 10;
    if (std::sqrt(outcome.sum_of_squares) <= few_roundings * rows.rounding()) return true;
    double freedom = static_cast<double>(rows.row_count()) - static_cast<double>(rows.parameter_count());
    for (const FittedRows& channel : rows.channels()) {
        if (!(channel.noise > 0)) return false;
        freedom -= static_cast<double>(channel.basis.cols());
    }
    return outcome.sum_of_squares <= most_chi_square * freedom;
}

/// "Of 4 starts 3 ended at this misfit, the others at an rms of 12.3 nT".
std::string remark_on_starts(const FitRows& rows, std::vector<double> sums) {
    constexpr double same = 1.02;
    std::ranges::sort(sums);
    const double least = std::max(sums.front(), std::numeric_limits<double>::min());
    std::vector<std::string> others;
    std::size_t here = 0;
    double last = least;
    for (const double sum : sums) {
        if (std::sqrt(sum / least) <= same) {
            ++here;
            continue;
        }
        if (std::sqrt(sum / last) <= same) continue;
        last = sum;
        const FittedRows& channel = rows.channels().front();
        const double rms = channel.sigma * std::sqrt(sum / static_cast<double>(rows.row_count()));
        others.push_back(rows.channels().size() > 1 ? format_number(std::sqrt(sum / least), "0.0")
                                                    : format_number(rms, "0.###"));
    }
    std::string text =
        "Of " + std::to_string(sums.size()) + " starts " + std::to_string(here) + " ended at this misfit";
    if (others.empty()) return text;
    constexpr std::size_t most_named = 3;
    others.resize(std::min(others.size(), most_named));
    std::string named;
    for (const std::string& one : others) named += (named.empty() ? "" : ", ") + one;
    if (rows.channels().size() > 1) return text + ", others at " + named + " times it";
    return text + ", others at an rms of " + named +
           (rows.channels().front().channel == channel_mag ? " nT" : " mGal");
}

/// Other starts may end better than the fit.
void take_best_start(const FittedModel& model, const RunRequest& request, FitRows& rows,
                     std::span<const FitParameter> parameters, FitOutcome& outcome,
                     std::vector<std::string>& remarks) {
    const bool cut_short =
        outcome.end == FitEnd::iteration_limit && request.max_iterations < default_iterations;
    if (request.starts <= 1 || cut_short || model.inversion.stop_inversion ||
        fits_to_the_noise(rows, outcome))
        return;
    constexpr std::size_t most_parameters = 200;
    if (parameters.size() > most_parameters) {
        remarks.push_back("Other starts are left out: there are more than 200 parameters");
        return;
    }
    const RestartRequest restart{request.starts - 1,
                                 std::max(request.max_iterations, default_iterations),
                                 parameters,
                                 outcome.values,
                                 outcome.sum_of_squares,
                                 model.inversion.stop_inversion};
    Restarts others = fit_from_starts(model.workspace, rows, restart, model.pacer);
    rows.count_evaluations(others.evaluations);
    std::vector<double> sums{outcome.sum_of_squares};
    for (const FitOutcome& end : others.ends)
        if (!end.values.empty()) sums.push_back(end.sum_of_squares);
    remarks.push_back(remark_on_starts(rows, std::move(sums)));
    for (FitOutcome& end : others.ends) {
        if (end.values.empty() || !(end.sum_of_squares < outcome.sum_of_squares)) continue;
        end.iterations = outcome.iterations;
        outcome = end;
    }
}

/// Each channel of a joint fit is weighed by what its residuals say, which the fit changes again.
void fit_until_weights_stand(WatchedFit& fit, FitRows& rows, std::span<const FitParameter> parameters,
                             FitOutcome& outcome) {
    constexpr int most_rounds = 8, most_iterations = 20;
    for (int round = 0; round < most_rounds && weigh_by_residuals(rows, outcome.values); ++round) {
        std::vector<FitParameter> from(parameters.begin(), parameters.end());
        for (std::size_t i = 0; i < from.size(); ++i) from[i].value = outcome.values[i];
        RowsProblem problem(fit.workspace(), rows, from, fit.pacer());
        const FitOutcome again = fit_least_squares(problem, from, most_iterations);
        outcome.values = again.values;
        outcome.at_limit = again.at_limit;
        outcome.sum_of_squares = again.sum_of_squares;
    }
}

/// The columns of the parameters three times over (raw, filtered, in the steps of the fit), and the raw rows
/// of the bodies that they are of. Before work begins that could not be ended.
void require_room(const FittedModel& model, const FitRequest& request) {
    const Workspace& workspace = model.workspace;
    // A window may reach beyond the line, which is told elsewhere.
    const std::int32_t first = std::max(workspace.first_station, 1);
    const std::int32_t last = std::min(workspace.last_station, workspace.station_count);
    const auto stations = static_cast<std::uint64_t>(last < first ? 0 : last - first + 1);
    const std::uint64_t channels = request.channels.size();
    const std::uint64_t columns = saturating_sum(saturating_product(4, request.places.size()), 16);
    const std::uint64_t values = saturating_product(saturating_product(columns, channels), stations);
    require_free_memory(saturating_product(values, sizeof(double)),
                        "the columns of " + std::to_string(request.places.size()) + " parameters at " +
                            std::to_string(stations) + " stations",
                        "hold parameters or take a shorter window of stations");
}

}  // namespace

void fit_model(const FittedModel& model, const RunRequest& request, RunObserver& observer,
               const RunClock& clock, RunResult& result) {
    const bool joint = request.channel == channel_joint;
    if (joint) result.initial_grav_misfit = gravity_misfit(model);
    require_room(model, fit_request(model, request));
    start_trial_rows(model.workspace);
    const std::vector<FitParameter> parameters = fit_parameters(model);
    FitRows rows(model.workspace, fit_request(model, request), model.faults, model.pacer);
    weigh_by_noise(model.workspace, model.inversion.inversion_target, rows);
    result.status = run_failed;
    std::vector<std::string> remarks = remarks_on_readings(rows);
    require_enough_rows(rows);
    result.status = run_succeeded;
    WatchedFit fit(model, request, rows, parameters, observer, clock, result);
    bool fitted = false;
    try {
        FitOutcome outcome = fit_least_squares(fit, parameters, std::max(request.max_iterations, 1));
        fit.show(outcome.values);
        observer.stage(RunStage::starts);
        take_best_start(model, request, rows, parameters, outcome, remarks);
        observer.stage(RunStage::weights);
        fit_until_weights_stand(fit, rows, parameters, outcome);
        fit.show(outcome.values);
        result.status = status_of(outcome.end);
        observer.stage(RunStage::errors);
        fitted = true;
        give_account(model, request, rows, parameters, outcome, std::move(remarks), result);
    } catch (const Stopped&) {
        fit.go_back();
        if (fitted)
            model.faults.add("Stopped before the errors were found: the values stand, without errors", 1,
                             Severity::remark);
        throw;
    }
    fit.tell_evaluations();
    if (joint) result.grav_misfit = gravity_misfit(model);
}

}  // namespace anomalis::inversion
