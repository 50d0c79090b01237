#include "inversion/ensemble/model_variants.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <span>
#include <utility>

#include "core/body_parameters.h"
#include "inversion/fit_weights.h"
#include "inversion/observed_rows.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr int most_steps = 25, most_weighings = 8;
/// Evidence beyond this is strong (Kass and Raftery 1995): a variant worse by more takes no part.
constexpr double strong_evidence = 6;
/// Residuals so few times what rounding makes tell no variant from another.
constexpr double few_roundings = 10;

/// Weights and errors are found where the fit stands.
class Variants {
  public:
    Variants(const FittedRun& fit, const VariantRequest& request, Faults& faults, Pacer& pacer)
        : fit_(fit), request_(request), faults_(faults), pacer_(pacer) {}

    std::vector<ModelVariant> find();

  private:
    void add_first();
    void add_degree(std::size_t channel, std::int32_t degree);
    void add_without(std::int32_t body);
    void settle(ModelVariant& variant);
    bool exact() const;
    void refit(ModelVariant& variant);
    std::vector<double> independent_data() const;
    bool regional_may_vary(std::size_t channel) const;
    void take(ModelVariant&& variant);
    void weigh();

    const FittedRun& fit_;
    const VariantRequest& request_;
    Faults& faults_;
    Pacer& pacer_;
    std::vector<ModelVariant> found_;
};

std::vector<float> values_of(const ModelVariant& variant) {
    std::vector<float> values;
    for (const FitParameter& parameter : variant.parameters) values.push_back(parameter.value);
    return values;
}

std::vector<std::int32_t> fitted_bodies(const FitRequest& request) {
    std::vector<std::int32_t> bodies;
    for (const InversionParamPlace& place : request.places)
        if (std::ranges::find(bodies, place.body) == bodies.end()) bodies.push_back(place.body);
    return bodies;
}

void Variants::add_first() {
    ModelVariant first;
    first.workspace = fit_.workspace;
    first.parameters = fit_.parameters;
    FitRequest request = fit_.request;
    first.drawn.assign(request.places.size(), false);
    first.open = fit_.open;
    if (request_.draw_strikes) {
        for (std::size_t i = 0; i < request.places.size(); ++i)
            first.drawn[i] = request.places[i].param_code == param_strike;
        for (const std::int32_t number : fitted_bodies(fit_.request)) {
            const ModelBody& body = fit_.workspace->body(number);
            const InversionParamPlace place{number, param_strike};
            if (!has_parameter(body.type, param_strike) ||
                std::ranges::find(request.places, place) != request.places.end())
                continue;
            request.places.push_back(place);
            first.parameters.push_back({.value = body.strike.value});
            first.drawn.push_back(true);
            first.open.push_back({});
        }
    }
    for (std::size_t i = 0; i < first.parameters.size(); ++i) {
        first.place.push_back(i);
        if (!first.drawn[i]) continue;
        FitParameter& strike = first.parameters[i];
        strike.lower = strike.upper = strike.value;
        strike.hold = 0;
    }
    first.rows = std::make_unique<FitRows>(*first.workspace, std::move(request), faults_, pacer_);
    const std::vector<float> values = values_of(first);
    weigh_by_noise(*first.workspace, first.rows->request().target, *first.rows);
    for (int k = 0; k < most_weighings && weigh_by_residuals(*first.rows, values); ++k) {
    }
    for (const std::int32_t channel : first.rows->request().channels)
        first.degrees.push_back(solved_degree(*first.workspace, channel, first.rows->request().target));
    settle(first);
    found_.push_back(std::move(first));
}

/// Errors, criterion and centre from the rows where the variant stands.
void Variants::settle(ModelVariant& variant) {
    const std::vector<float> values = values_of(variant);
    FitRows& rows = *variant.rows;
    VectorXd residuals(static_cast<Index>(rows.row_count()));
    MatrixXd columns(residuals.size(), static_cast<Index>(rows.parameter_count()));
    rows.residuals(values, residuals);
    rows.columns(values, columns);
    variant.errors =
        find_fit_errors(rows.channel_fits(columns, residuals), on_limits(variant.parameters, values), pacer_);
    Index at = 0;
    for (const FittedRows& channel : rows.channels()) {
        const Index count = channel.observed.size();
        const VectorXd own = residuals.segment(at, count);
        variant.centre.push_back(channel.observed + channel.sigma * own);
        variant.squares.push_back(own.squaredNorm());
        at += count;
    }
}

/// By channel: what a variant leaves out makes its residuals look more alike along the line than they are, so
/// the one that leaves the least alike tells the noise of all (as Mallows 1973 takes the fullest).
std::vector<double> Variants::independent_data() const {
    std::vector<double> independent(found_.front().squares.size(), 0);
    for (const ModelVariant& variant : found_)
        for (std::size_t c = 0; c < independent.size(); ++c)
            independent[c] = std::max(independent[c], variant.errors.channels[c].covariance.independent);
    return independent;
}

double criterion_of(const ModelVariant& variant, std::span<const double> independent) {
    double sum = 0, data = 0, unknowns = 0;
    for (std::size_t c = 0; c < independent.size(); ++c) {
        sum += independent[c] * std::log(std::max(variant.squares[c], std::numeric_limits<double>::min()));
        data += independent[c];
        unknowns += static_cast<double>(variant.rows->channels()[c].basis.cols());
    }
    for (const FitParameter& parameter : variant.parameters) unknowns += parameter.lower < parameter.upper;
    return sum + unknowns * std::log(std::max(data, 2.0));
}

bool Variants::exact() const {
    const ModelVariant& first = found_.front();
    const double sum = std::accumulate(first.squares.begin(), first.squares.end(), 0.0);
    return std::sqrt(sum) <= few_roundings * first.rows->rounding();
}

void Variants::refit(ModelVariant& variant) {
    RowsProblem problem(*variant.workspace, *variant.rows, variant.parameters, pacer_);
    const FitOutcome outcome = fit_least_squares(problem, variant.parameters, most_steps);
    for (std::size_t i = 0; i < variant.parameters.size(); ++i)
        variant.parameters[i].value = outcome.values[i];
    settle(variant);
}

void Variants::take(ModelVariant&& variant) {
    refit(variant);
    found_.push_back(std::move(variant));
}

/// A channel whose long wavelengths no filter takes off can have a regional.
bool Variants::regional_may_vary(std::size_t channel) const {
    return request_.vary_regional && fit_.request.target == target_data &&
           fit_.workspace->processing.residual_filter_width <= 0 &&
           found_.front().rows->channels()[channel].observed.size() > most_regional_degree + 1;
}

void Variants::add_degree(std::size_t channel, std::int32_t degree) {
    const ModelVariant& first = found_.front();
    ModelVariant other;
    other.workspace = first.workspace;
    other.parameters = first.parameters;
    other.place = first.place;
    other.drawn = first.drawn;
    other.open = first.open;
    other.degrees = first.degrees;
    other.degrees[channel] = degree;
    other.rows = std::make_unique<FitRows>(*first.rows, pacer_);
    FittedRows& rows = other.rows->channels()[channel];
    rows.basis = polynomials(rows.distance, degree);
    take(std::move(other));
}

void Variants::add_without(std::int32_t body) {
    const ModelVariant& first = found_.front();
    ModelVariant other;
    other.workspace = std::make_shared<Workspace>(*first.workspace);
    other.workspace->body(body).turned_off = 1;
    other.degrees = first.degrees;
    other.missing_body = body;
    FitRequest request = first.rows->request();
    request.places.clear();
    for (std::size_t i = 0; i < first.parameters.size(); ++i) {
        const InversionParamPlace place = first.rows->request().places[i];
        if (place.body == body) continue;
        request.places.push_back(place);
        other.parameters.push_back(first.parameters[i]);
        other.drawn.push_back(first.drawn[i]);
        other.open.push_back(first.open[i]);
        other.place.push_back(i);
    }
    other.rows = std::make_unique<FitRows>(*other.workspace, std::move(request), faults_, pacer_);
    for (std::size_t c = 0; c < first.rows->channels().size(); ++c) {
        const FittedRows& from = first.rows->channels()[c];
        FittedRows& to = other.rows->channels()[c];
        to.sigma = from.sigma;
        to.sigma_given = from.sigma_given;
        to.noise = from.noise;
    }
    take(std::move(other));
}

/// What explains the line no better than the fit counts less; what does it better counts as much.
void Variants::weigh() {
    const std::vector<double> independent = independent_data();
    for (ModelVariant& variant : found_) variant.criterion = criterion_of(variant, independent);
    const double here = found_.front().criterion;
    for (ModelVariant& variant : found_)
        variant.weight = std::exp(-std::max(variant.criterion - here, 0.0) / 2);
    std::erase_if(found_, [here](const ModelVariant& one) { return one.criterion > here + strong_evidence; });
}

std::vector<ModelVariant> Variants::find() {
    add_first();
    if (exact()) return std::move(found_);
    const std::vector<std::int32_t> degrees = found_.front().degrees;
    for (std::size_t c = 0; c < degrees.size(); ++c) {
        if (!regional_may_vary(c)) continue;
        const bool floats = fit_.workspace->channel(fit_.request.channels[c]).float_base == 1;
        for (std::int32_t degree = floats ? 0 : no_regional; degree <= most_regional_degree; ++degree)
            if (degree != degrees[c]) add_degree(c, degree);
    }
    const std::vector<std::int32_t> bodies = fitted_bodies(fit_.request);
    if (request_.vary_bodies && bodies.size() > 1)
        for (const std::int32_t body : bodies) add_without(body);
    weigh();
    return std::move(found_);
}

}  // namespace

std::vector<ModelVariant> find_variants(const FittedRun& fit, const VariantRequest& request, Faults& faults,
                                        Pacer& pacer) {
    return Variants(fit, request, faults, pacer).find();
}

}  // namespace anomalis::inversion
