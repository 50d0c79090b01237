#include "inversion/fit_account.h"

#include <Eigen/Core>
#include <algorithm>
#include <cmath>
#include <ctime>
#include <iterator>
#include <utility>

#include "core/body_parameters.h"
#include "core/local_time.h"
#include "core/model_mark.h"
#include "inversion/fit_errors.h"
#include "inversion/fit_remarks.h"
#include "inversion/intervals.h"
#include "inversion/rows_refit.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// A misfit that grows by less than this part without a body is the same.
constexpr double same_misfit = 0.01;
/// A standard error beyond so many steps, and beyond the value, says that the parameter is open.
constexpr float open_steps = 10;
/// Residuals so few times what rounding makes have no likelihood to follow.
constexpr double few_roundings = 10;

/// Profiles take fits: as many as are felt no more than the fit itself. Few parameters are cheap to fit
/// again, and where a size is all but open each side of each of them takes some ten.
std::size_t affordable_refits(std::size_t parameters) {
    constexpr std::size_t least = 40, most = 160, work = 960, few = 60;
    if (parameters == 0 || parameters > few) return 0;
    return std::clamp(work / parameters, least, most);
}

class Account {
  public:
    Account(const FittedModel& model, const RunRequest& request, FitRows& rows,
            std::span<const FitParameter> parameters, const FitOutcome& outcome)
        : model_(model), request_(request), rows_(rows), parameters_(parameters), outcome_(outcome) {
        VectorXd residuals(static_cast<Index>(rows.row_count()));
        MatrixXd columns(residuals.size(), static_cast<Index>(rows.parameter_count()));
        rows.residuals(outcome.values, residuals);
        rows.columns(outcome.values, columns);
        rounding_ = rows.rounding();
        slopes_ = columns.colwise().norm().transpose();
        fits_ = rows.channel_fits(columns, residuals);
        errors_ = find_fit_errors(fits_, outcome.at_limit, model.pacer);
        mark_open();
        find_all_intervals();
    }

    FitStatistics statistics() const;
    /// What the figures say of the fit.
    std::vector<std::string> remarks() const;
    FitRecord record(const std::string& label) const;

  private:
    bool flat(std::size_t i) const;
    void mark_open();
    void find_all_intervals();
    FittedChannel fitted_channel(std::size_t c) const;

    const FittedModel& model_;
    const RunRequest& request_;
    FitRows& rows_;
    std::span<const FitParameter> parameters_;
    const FitOutcome& outcome_;
    double rounding_ = 0;
    VectorXd slopes_;
    std::vector<ChannelFit> fits_;
    FitErrors errors_;
    std::vector<Interval> intervals_;
};

/// A change of the size of the parameter does not stand out from rounding.
bool Account::flat(std::size_t i) const {
    const double size = std::max(std::abs(static_cast<double>(outcome_.values[i])), 1e-3);
    return slopes_[static_cast<Index>(i)] * size <= 8 * rounding_;
}

void Account::mark_open() {
    constexpr double none = FittedParameter::open;
    const std::size_t size = outcome_.values.size();
    for (std::size_t i = 0; i < size; ++i) {
        if (outcome_.at_limit[i] || !flat(i)) continue;
        errors_.undetermined[i] = true;
        errors_.errors[i] = none;
        for (std::size_t k = 0; k < size; ++k)
            errors_.correlation[i * size + k] = errors_.correlation[k * size + i] = none;
    }
}

void Account::find_all_intervals() {
    std::vector<IntervalParameter> places;
    for (std::size_t i = 0; i < parameters_.size(); ++i) {
        const FitParameter& p = parameters_[i];
        IntervalParameter& place = places.emplace_back();
        place.value = outcome_.values[i];
        if (p.lower > -no_limit) place.lower = p.lower;
        if (p.upper < no_limit) place.upper = p.upper;
    }
    RowsRefit refit(model_.workspace, rows_, parameters_, model_.pacer);
    const bool exact = std::sqrt(outcome_.sum_of_squares) <= few_roundings * rounding_;
    const bool at_its_best = outcome_.end != FitEnd::iteration_limit;
    const std::size_t refits = exact || !at_its_best ? 0 : affordable_refits(parameters_.size());
    intervals_ =
        refits > 0 ? find_intervals(errors_, places, refit, refits) : quadratic_intervals(errors_, places);
}

FitStatistics Account::statistics() const {
    FitStatistics statistics{errors_.errors, errors_.correlation, {}, {}};
    const auto params = model_.inversion.inversion_params.span();
    for (std::size_t i = 0; i < outcome_.values.size(); ++i) {
        const int number = static_cast<int>(i) + 1;
        const auto scale =
            static_cast<double>(std::max(std::abs(params[i].value), open_steps * std::abs(params[i].step)));
        if (errors_.undetermined[i] || errors_.errors[i] > scale) statistics.undetermined.push_back(number);
        if (outcome_.at_limit[i]) statistics.at_limit.push_back(number);
    }
    return statistics;
}

std::vector<std::string> Account::remarks() const {
    std::vector<std::string> names;
    for (const InversionParamPlace& place : rows_.request().places)
        names.push_back(std::string(param_name(place.param_code)) + " of body " + std::to_string(place.body));
    return fit_remarks(errors_, fits_, names);
}

FittedChannel Account::fitted_channel(std::size_t c) const {
    const ChannelErrors& own = errors_.channels[c];
    return {.stations = static_cast<std::int32_t>(fits_[c].residual.size()),
            .rms = own.rms,
            .noise = fits_[c].sigma,
            .noise_given = fits_[c].sigma_given,
            .chi_square = own.chi_square,
            .correlation = own.covariance.length(),
            .independent = own.covariance.independent,
            .regional = model_.workspace.channel(fits_[c].channel).regional};
}

FitRecord Account::record(const std::string& label) const {
    const Workspace& workspace = model_.workspace;
    FitRecord record;
    record.date = local_time_text(std::time(nullptr), "%Y-%m-%dT%H:%M:%S");
    record.formulas = workspace.formulas;
    record.method = InversionMethod::least_squares;
    record.channel = request_.channel;
    record.target = model_.inversion.inversion_target;
    record.first_distance = workspace.distances[workspace.first_station];
    record.last_distance = workspace.distances[workspace.last_station];
    record.outcome = label;
    record.correlation = errors_.correlation;
    for (std::size_t i = 0; i < outcome_.values.size(); ++i) {
        const InversionParamPlace place = rows_.request().places[i];
        record.parameters.push_back({.body = place.body,
                                     .param_code = place.param_code,
                                     .value = outcome_.values[i],
                                     .error = errors_.errors[i],
                                     .lower = intervals_[i].lower,
                                     .upper = intervals_[i].upper,
                                     .undetermined = errors_.undetermined[i],
                                     .at_limit = outcome_.at_limit[i]});
    }
    for (std::size_t c = 0; c < fits_.size(); ++c)
        (fits_[c].channel == channel_mag ? record.mag : record.grav) = fitted_channel(c);
    record.model_mark = model_mark(workspace);
    return record;
}

/// Names of the parameters that ended on a limit, and of those whose limits cross.
struct LimitNames {
    std::string stopped, crossed;
    int stopped_count = 0;
};
LimitNames limit_names(const FitRows& rows, std::span<const FitParameter> parameters,
                       const FitOutcome& outcome) {
    LimitNames names;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (!outcome.at_limit[i]) continue;
        const bool crossed = parameters[i].lower > parameters[i].upper;
        std::string& text = crossed ? names.crossed : names.stopped;
        text += (text.empty() ? "" : ", ") + parameter_place(rows.request().places[i]);
        if (!crossed) ++names.stopped_count;
    }
    return names;
}

}  // namespace

std::string parameter_place(const InversionParamPlace& place) {
    return std::string(param_name(place.param_code)) + " of body " + std::to_string(place.body);
}

std::vector<std::string> unneeded_bodies(FitRows& rows, const FitOutcome& outcome) {
    std::vector<std::string> sentences;
    std::vector<std::int32_t> bodies;
    for (const InversionParamPlace& place : rows.request().places)
        if (std::ranges::find(bodies, place.body) == bodies.end()) bodies.push_back(place.body);
    if (bodies.size() < 2 || !(outcome.sum_of_squares > 0)) return sentences;
    const double most = outcome.sum_of_squares * (1 + same_misfit) * (1 + same_misfit);
    for (const std::int32_t body : bodies)
        if (rows.sum_of_squares_without(body, outcome.values) < most)
            sentences.push_back("Body " + std::to_string(body) +
                                " is not needed: without it the misfit is the same");
    return sentences;
}

void give_account(const FittedModel& model, const RunRequest& request, FitRows& rows,
                  std::span<const FitParameter> parameters, const FitOutcome& outcome,
                  std::vector<std::string> remarks, RunResult& result) {
    const LimitNames names = limit_names(rows, parameters, outcome);
    result.stopped_at_limits = names.stopped_count;
    if (!names.stopped.empty()) remarks.push_back("Stopped at a limit: " + names.stopped);
    if (!names.crossed.empty()) remarks.push_back("The limits of " + names.crossed + " cross: held");
    std::ranges::move(unneeded_bodies(rows, outcome), std::back_inserter(remarks));
    const Account account(model, request, rows, parameters, outcome);
    std::ranges::move(account.remarks(), std::back_inserter(remarks));
    result.statistics = account.statistics();
    result.record = account.record(status_label(result));
    result.record->remarks = std::move(remarks);
}

}  // namespace anomalis::inversion
