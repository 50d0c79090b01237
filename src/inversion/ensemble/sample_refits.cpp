#include "inversion/ensemble/sample_refits.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numbers>

#include "core/core_shares.h"
#include "inversion/ensemble/noise_draw.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::VectorXd;

constexpr int most_steps = 15;
/// Starts spread by as much as the fit knows a parameter, at most by this part of its weak hold: what the
/// data leave open then ends where it began, and all of its range is seen.
constexpr double most_of_hold = 0.5;
constexpr double most_deviations = 2;
/// Towards an open side a size is tried up to such a factor from where its fit ended, and it stays where the
/// misfit grows by less than a fit feels at such a part of its standard error.
constexpr double open_factor = 10, unfelt = 0.3;
/// The noise itself is what the true model leaves: a fit that leaves more has not found the best one.
constexpr double same_misfit = 1.001;

/// One sample, with rows of its own: what was calculated before leaves no trace.
class Sample {
  public:
    Sample(std::span<const ModelVariant> variants, const RefitRequest& request, int number, Pacer& pacer)
        : request_(request),
          chance_(request.seed, static_cast<std::uint32_t>(number)),
          pacer_(pacer),
          keeps_curves_(number < request.curves),
          chosen_(choose(variants)),
          variant_(variants[chosen_]),
          rows_(*variant_.rows, pacer) {}

    SampleRefit draw() {
        const double noise = put_noise();
        std::vector<FitParameter> near = variant_.parameters;
        draw_strikes(near);
        FitOutcome best = fit(spread(near));
        const double most = noise * same_misfit;
        const double rounding = 10 * rows_.rounding();
        if (!(best.sum_of_squares <= std::max(most, rounding * rounding))) {
            // The true model itself is inside what this one may be.
            for (std::size_t i = 0; i < near.size(); ++i) near[i].value = variant_.parameters[i].value;
            FitOutcome other = fit(near);
            if (other.sum_of_squares < best.sum_of_squares) best = std::move(other);
        }
        try_open_sides(near, best);
        return describe(std::move(best.values));
    }

  private:
    std::size_t choose(std::span<const ModelVariant> variants);
    double put_noise();
    void draw_strikes(std::vector<FitParameter>& parameters);
    double alike_residuals() const;
    bool is_open_size(std::size_t i) const;
    double start_off(std::size_t i);
    void try_open_sides(const std::vector<FitParameter>& near, FitOutcome& best);
    std::vector<FitParameter> spread(std::vector<FitParameter> parameters);
    FitOutcome fit(const std::vector<FitParameter>& parameters);
    SampleRefit describe(std::vector<float> values);
    std::vector<float> curve(const FittedRows& channel, const VectorXd& calculated) const;

    const RefitRequest& request_;
    ChanceNumbers chance_;
    Pacer& pacer_;
    bool keeps_curves_;
    std::size_t chosen_;
    const ModelVariant& variant_;
    FitRows rows_;
};

std::size_t Sample::choose(std::span<const ModelVariant> variants) {
    double sum = 0;
    for (const ModelVariant& variant : variants) sum += variant.weight;
    double left = chance_.uniform() * sum;
    for (std::size_t i = 0; i + 1 < variants.size(); ++i) {
        left -= variants[i].weight;
        if (left < 0) return i;
    }
    return variants.size() - 1;
}

/// The observed rows become those of the fit with other noise. What that noise costs.
double Sample::put_noise() {
    double sum = 0;
    for (std::size_t c = 0; c < variant_.centre.size(); ++c) {
        FittedRows& channel = rows_.channels()[c];
        Eigen::MatrixXd noise = draw_noise(variant_.errors.channels[c].covariance, channel.distance, chance_);
        channel.observed = variant_.centre[c] + noise;
        project_off(channel.basis, noise);
        sum += noise.squaredNorm() / (channel.sigma * channel.sigma);
    }
    return sum;
}

/// What is known of a strike before, as a fit with a drawn prior takes it (Kitanidis 1995): it begins where
/// chance puts it, is held there as weakly as it is known, and goes where the data want it inside its range.
void Sample::draw_strikes(std::vector<FitParameter>& parameters) {
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (!variant_.drawn[i]) continue;
        FitParameter& strike = parameters[i];
        const auto middle = static_cast<double>(strike.value);
        strike.value = static_cast<float>(middle + request_.strike_within * (2 * chance_.uniform() - 1));
        strike.lower = static_cast<float>(middle - request_.strike_within);
        strike.upper = static_cast<float>(middle + request_.strike_within);
        strike.hold = request_.strike_within / std::numbers::sqrt3 / alike_residuals();
    }
}

/// The weak holds count each residual for itself. By so much more is an error than residuals that are
/// alike along the line let it look.
double Sample::alike_residuals() const {
    double squares = 0;
    int count = 0;
    for (std::size_t i = 0; i < variant_.parameters.size(); ++i) {
        const double ratio = variant_.errors.errors[i] / variant_.errors.unit_errors[i];
        if (!std::isfinite(ratio)) continue;
        squares += ratio * ratio;
        ++count;
    }
    return count > 0 ? std::max(std::sqrt(squares / count), 1.0) : 1;
}

bool Sample::is_open_size(std::size_t i) const {
    const FitParameter& p = variant_.parameters[i];
    return p.logarithmic && p.hold > 0 && p.lower < p.upper &&
           variant_.open[i].below != variant_.open[i].above;
}

/// On the axis of the solver: of a size, in its logarithm. Amplitudes follow the rest. What is open to one
/// side begins near its bound on the other: where the data feel it, the fit finds its way from there.
double Sample::start_off(std::size_t i) {
    const FitParameter& p = variant_.parameters[i];
    const double by = std::clamp(chance_.normal(), -most_deviations, most_deviations);
    const double size = static_cast<double>(p.value) - static_cast<double>(p.origin);
    if (is_open_size(i)) {
        const double ratio = (variant_.open[i].bound - static_cast<double>(p.origin)) / size;
        if (ratio > 0) return std::log(ratio) * (0.5 + 0.5 * chance_.uniform());
    }
    const double error = variant_.errors.errors[i] / (p.logarithmic ? std::abs(size) : 1);
    const double most = most_of_hold * p.hold;
    return by * (std::isfinite(error) ? std::min(error, most) : most);
}

/// A size that the noise of this sample leaves open may be anywhere towards that side.
void Sample::try_open_sides(const std::vector<FitParameter>& near, FitOutcome& best) {
    std::vector<FitParameter> moved = near;
    double most = best.sum_of_squares;
    bool any = false;
    for (std::size_t i = 0; i < moved.size(); ++i) {
        FitParameter& p = moved[i];
        p.value = best.values[i];
        if (!is_open_size(i)) continue;
        any = true;
        const double way = std::log(open_factor) * chance_.uniform();
        const double size = static_cast<double>(p.value) - static_cast<double>(p.origin);
        const double there = size * std::exp(variant_.open[i].below == (size > 0) ? -way : way);
        p.value = std::clamp(static_cast<float>(static_cast<double>(p.origin) + there), p.lower, p.upper);
        const double felt = unfelt * variant_.errors.growth[i] / variant_.errors.quantile[i];
        if (std::isfinite(felt)) most += felt * felt;
    }
    if (!any) return;
    FitOutcome other = fit(moved);
    if (other.sum_of_squares <= most) best = std::move(other);
}

std::vector<FitParameter> Sample::spread(std::vector<FitParameter> parameters) {
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        FitParameter& p = parameters[i];
        const double off = start_off(i);
        if (p.lower >= p.upper || variant_.drawn[i]) continue;
        const double size = static_cast<double>(p.value) - static_cast<double>(p.origin);
        const double there = p.logarithmic ? static_cast<double>(p.origin) + size * std::exp(off)
                                           : static_cast<double>(p.value) + off;
        p.value = std::clamp(static_cast<float>(there), p.lower, p.upper);
    }
    return parameters;
}

FitOutcome Sample::fit(const std::vector<FitParameter>& parameters) {
    RowsProblem problem(*variant_.workspace, rows_, parameters, pacer_);
    return fit_least_squares(problem, parameters, most_steps);
}

SampleRefit Sample::describe(std::vector<float> values) {
    SampleRefit told{.variant = chosen_, .values = std::move(values), .rms = {}, .curves = {}};
    for (std::size_t c = 0; c < variant_.centre.size(); ++c)
        rows_.channels()[c].observed = variant_.rows->channels()[c].observed;
    VectorXd residuals(static_cast<Index>(rows_.row_count()));
    rows_.residuals(told.values, residuals);
    Index at = 0;
    for (const FittedRows& channel : rows_.channels()) {
        const Index count = channel.observed.size();
        told.rms.push_back(channel.sigma * residuals.segment(at, count).norm() /
                           std::sqrt(static_cast<double>(count)));
        at += count;
    }
    if (!keeps_curves_) return told;
    for (FittedRows& channel : rows_.channels()) {
        channel.observed.setZero();
        channel.basis.resize(channel.basis.rows(), 0);
    }
    rows_.residuals(told.values, residuals);
    at = 0;
    for (const FittedRows& channel : rows_.channels()) {
        const Index count = channel.observed.size();
        told.curves.push_back(curve(channel, channel.sigma * residuals.segment(at, count)));
        at += count;
    }
    return told;
}

std::vector<float> Sample::curve(const FittedRows& channel, const VectorXd& calculated) const {
    VectorXd values = calculated;
    if (rows_.request().target == target_gradient) {
        const VectorXd raw = channel.fixed + channel.raw.rowwise().sum();
        for (Index i = 0; i < values.size(); ++i)
            values[i] = raw[static_cast<Index>(channel.chain.raw_place(static_cast<std::size_t>(i)))];
    }
    // A base that floats lays the mean of the window on 0.
    if (variant_.workspace->channel(channel.channel).float_base == 1) values.array() -= values.mean();
    std::vector<float> singles(static_cast<std::size_t>(values.size()));
    std::ranges::transform(values, singles.begin(), [](double v) { return static_cast<float>(v); });
    return singles;
}

}  // namespace

std::vector<std::optional<SampleRefit>> refit_samples(std::span<const ModelVariant> variants,
                                                      const RefitRequest& request, Pacer& pacer) {
    std::vector<std::optional<SampleRefit>> samples(static_cast<std::size_t>(std::max(request.samples, 0)));
    std::atomic<int> done = 0;
    const auto core = [&](CoreShare& share) {
        while (const std::optional<int> number = share.next()) {
            samples[static_cast<std::size_t>(*number)] =
                Sample(variants, request, *number, share.pacer()).draw();
            ++done;
        }
    };
    const auto leave = [&] { return request.leave && request.leave(done); };
    share_among_cores(
        {.first = 0, .last = request.samples, .cores = request.cores, .core = core, .leave = leave}, pacer);
    return samples;
}

}  // namespace anomalis::inversion
