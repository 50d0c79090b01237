#include "inversion/model_fit.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "inversion/least_squares.h"
#include "inversion/parameters.h"
#include "inversion/trial_rows.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

/// The first differences, as parts of the step and of a size, as the sweep's probes; and the least one, so
/// that it is not lost in the digits of the value.
constexpr float step_part = 0.01F;
constexpr float value_part = 1e-3F;
constexpr float least_value_part = 1e-5F;
constexpr float least_step_part = 1e-4F;
/// Single precision, as a part of the response.
constexpr double single_rounding = 6e-8;
/// A standard error beyond so many steps, and beyond the value, says that the parameter is open.
constexpr float open_steps = 10;

bool is_position(int param_code) {
    return param_code == param_distance || param_code == param_top;
}

FitParameter fit_parameter(const InversionParam& param, int param_code) {
    const float size = std::abs(param.value);
    // A step of 0 still needs a difference.
    const float step = param.step == 0 ? std::max(value_part * size, value_part) : std::abs(param.step);
    const float first =
        is_position(param_code) ? step_part * step : larger_of(step_part * step, value_part * size);
    const float least = larger_of(least_step_part * step, least_value_part * size);
    return {.value = param.value,
            .lower = param.lower > unset ? param.lower : -1e32F,
            .upper = param.upper > unset ? param.upper : 1e32F,
            .difference = larger_of(first, least),
            .least_difference = least,
            .most_difference = larger_of(step, least),
            .scale = larger_of(size, open_steps * step)};
}

/// One channel's part of the residuals.
struct FittedRow {
    bool gravity;
    double scale;
};

class ModelProblem : public FitProblem {
  public:
    ModelProblem(const FittedModel& model, const RunRequest& request, RunObserver& observer,
                 const RunClock& clock, RunResult& result)
        : model_(model), request_(request), observer_(observer), clock_(clock), result_(result) {
        const Workspace& workspace = model.workspace;
        if (workspace.first_station < 1 || workspace.last_station > workspace.station_count)
            throw Fault(FaultKind::subscript);
        const auto target = static_cast<std::size_t>(model.inversion.inversion_target);
        for (const int channel : {channel_mag, channel_grav})
            if (request.channel == channel || request.channel == channel_joint)
                rows_.push_back(
                    {channel == channel_grav, static_cast<double>(model::misfit_scale_of(channel)[target])});
        keep_values();
    }

    std::size_t residual_count() const override { return window() * rows_.size(); }
    double rounding() const override { return single_rounding * calculated_length_; }
    void residuals(std::span<const float> values, std::span<double> out) override;
    void probe(std::size_t index, float value, std::span<double> out) override;
    void accepted() override;
    bool iteration_done(int iteration) override;
    void set_values(std::span<const float> values);
    /// The list and the bodies hold the last accepted values again.
    void go_back() { set_values(accepted_values_); }

  private:
    std::size_t window() const {
        return static_cast<std::size_t>(model_.workspace.last_station - model_.workspace.first_station) + 1;
    }
    std::span<const float> fitted(const FittedRow& row, int stage) const;
    void collect(std::span<double> out) const;
    double calculated_length() const;
    void evaluate();
    void keep_values() {
        accepted_values_.clear();
        for (const InversionParam& param : model_.inversion.inversion_params.span())
            accepted_values_.push_back(param.value);
    }

    const FittedModel& model_;
    const RunRequest& request_;
    RunObserver& observer_;
    const RunClock& clock_;
    RunResult& result_;
    std::vector<FittedRow> rows_;
    MisfitPair last_misfit_{};
    std::vector<float> accepted_values_;
    bool begins_ = true;
    double calculated_length_ = 0;
    ModelBody saved_body_;
    int saved_number_ = 0;
};

std::span<const float> ModelProblem::fitted(const FittedRow& row, int stage) const {
    const Workspace& workspace = model_.workspace;
    const bool gradient = model_.inversion.inversion_target == target_gradient;
    const int number = gradient ? workspace.gradient_row_in_use() : workspace.residual_row;
    const ChannelTable& data = workspace.channel(row.gravity ? channel_grav : channel_mag).work;
    return data.row(number, stage).subspan(static_cast<std::size_t>(workspace.first_station - 1), window());
}

void ModelProblem::collect(std::span<double> out) const {
    std::size_t at = 0;
    for (const FittedRow& row : rows_) {
        const auto calculated = fitted(row, stage_calculated);
        const auto observed = fitted(row, stage_observed);
        for (std::size_t i = 0; i < calculated.size(); ++i)
            out[at++] = (static_cast<double>(calculated[i]) - static_cast<double>(observed[i])) / row.scale;
    }
}

double ModelProblem::calculated_length() const {
    double sum = 0;
    for (const FittedRow& row : rows_)
        for (const float value : fitted(row, stage_calculated))
            sum += static_cast<double>(value) * static_cast<double>(value) / (row.scale * row.scale);
    return std::sqrt(sum);
}

void ModelProblem::evaluate() {
    last_misfit_ = model::evaluate_model_misfit(model_.workspace, model_.inversion, model_.workspace.mag.work,
                                                model_.workspace.grav.work, model_.faults, model_.pacer);
    observer_.evaluated();
}

void ModelProblem::residuals(std::span<const float> values, std::span<double> out) {
    saved_number_ = 0;
    set_values(values);
    // The trial rows of a run that begins hold the model as it stands.
    if (!begins_) evaluate();
    begins_ = false;
    collect(out);
    calculated_length_ = calculated_length();
}

void ModelProblem::set_values(std::span<const float> values) {
    auto params = model_.inversion.inversion_params.span();
    for (std::size_t i = 0; i < values.size(); ++i) params[i].value = values[i];
    double penalty = 0;
    apply_all_parameters(penalty, model_);
}

/// The body comes back from a copy, responses and all, so a column costs one body and not two.
void ModelProblem::probe(std::size_t index, float value, std::span<double> out) {
    InversionState& inversion = model_.inversion;
    const int number = static_cast<int>(index) + 1;
    const int body_number = inversion.inversion_param_map[number].body;
    ModelBody& body = model_.workspace.body(body_number);
    if (saved_number_ != body_number) saved_body_ = body;
    saved_number_ = body_number;
    InversionParam& param = inversion.inversion_params[number];
    const float kept = std::exchange(param.value, value);
    double penalty = 0;
    apply_parameter(number, penalty, model_);
    evaluate();
    collect(out);
    param.value = kept;
    body = saved_body_;
    // A parameter of one channel leaves the other channel's rows alone, so they must not hold this probe.
    if (rows_.size() > 1) drop_trial_rows(model_.workspace);
}

void ModelProblem::accepted() {
    accept_trial_rows(model_.workspace);
    keep_values();
    result_.misfit_pair = last_misfit_;
}

bool ModelProblem::iteration_done(int iteration) {
    result_.iterations = iteration;
    observer_.progress({iteration, request_.max_iterations, result_.misfit_pair, clock_.seconds()});
    observer_.show_current_misfit(result_.misfit_pair);
    observer_.display_iteration();
    return !model_.inversion.stop_inversion;
}

FitStatistics statistics_of(const FitOutcome& outcome) {
    FitStatistics statistics{outcome.errors, outcome.correlation, {}, {}};
    for (std::size_t i = 0; i < outcome.errors.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        if (outcome.undetermined[i]) statistics.undetermined.push_back(number);
        if (outcome.at_limit[i]) statistics.at_limit.push_back(number);
    }
    return statistics;
}

int status_of(FitEnd end) {
    if (end == FitEnd::iteration_limit) return run_limit;
    return end == FitEnd::no_decrease ? run_no_decrease : run_succeeded;
}

FitOutcome fit_or_go_back(ModelProblem& problem, std::span<const FitParameter> parameters, int limit) {
    try {
        return fit_least_squares(problem, parameters, limit);
    } catch (const Stopped&) {
        problem.go_back();
        throw;
    }
}

MisfitPair gravity_misfit(const FittedModel& model) {
    const Workspace& workspace = model.workspace;
    return model::channel_misfit(workspace, workspace.grav.data, model::misfit_scale_of(channel_grav),
                                 model.faults);
}

}  // namespace

void fit_model(const FittedModel& model, const RunRequest& request, RunObserver& observer,
               const RunClock& clock, RunResult& result) {
    const InversionState& inversion = model.inversion;
    std::vector<FitParameter> parameters;
    for (int i = 1; i <= inversion.inversion_params.count(); ++i)
        parameters.push_back(
            fit_parameter(inversion.inversion_params[i], inversion.inversion_param_map[i].param_code));
    const bool joint = request.channel == channel_joint;
    if (joint) result.initial_grav_misfit = gravity_misfit(model);
    start_trial_rows(model.workspace);
    ModelProblem problem(model, request, observer, clock, result);
    const FitOutcome outcome = fit_or_go_back(problem, parameters, std::max(request.max_iterations, 1));
    problem.set_values(outcome.values);
    result.status = status_of(outcome.end);
    result.statistics = statistics_of(outcome);
    if (joint) result.grav_misfit = gravity_misfit(model);
}

}  // namespace anomalis::inversion
