#include "inversion/least_squares.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "inversion/bounded_step.h"
#include "inversion/eigen_spans.h"
#include "inversion/normal_matrix.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double first_damping = 1e-2;
constexpr double most_damping = 1e10;
/// What keeps columns that are all but dependent from ruling a step that is not damped.
constexpr double least_damping = 1e-9;
/// The fit has converged when the step without damping promises less than this part of the sum of squares.
constexpr double least_promise = 1e-4;
/// A damped step that promises less than this part ends the search for a better point.
constexpr double least_trial = 1e-6;
/// So many iterations one after the other that gain less than `least_promise` end the fit.
constexpr int most_idle = 3;
/// A sum of squares this close to what rounding makes leaves nothing to gain.
constexpr double perfect = 2;

class Solver {
  public:
    Solver(FitProblem& problem, std::span<const FitParameter> parameters)
        : problem_(problem),
          parameters_(parameters),
          count_(static_cast<Index>(parameters.size())),
          values_(parameters.size()),
          residuals_(static_cast<Index>(problem.residual_count())),
          trial_residuals_(residuals_.size()),
          columns_(residuals_.size(), count_) {
        std::ranges::transform(parameters, values_.begin(), &FitParameter::value);
    }

    FitOutcome run(int max_iterations);

  private:
    enum class Step { converged, better, none };

    const FitParameter& parameter(Index k) const { return parameters_[static_cast<std::size_t>(k)]; }
    float value(Index k) const { return values_[static_cast<std::size_t>(k)]; }
    double room(Index k, float limit) const;
    double away(Index k, const std::vector<float>& values) const;
    double hold_of(const std::vector<float>& values) const;
    void form_bounds();
    void form_normal();
    bool try_step(const VectorXd& step);
    /// What is made least in an iteration.
    double cost() const { return sum_of_squares_ + hold_of(values_); }
    double promise(const VectorXd& step) const {
        return -2 * system_.gradient.dot(step) -
               step.dot(system_.normal.selfadjointView<Eigen::Lower>() * step);
    }
    BoundedAnswer step_damped_by(double damping) {
        system_.damping = damping;
        return bounded_step(system_, problem_.pacer());
    }
    bool promises_little();
    Step improve();
    bool perfect_fit() const { return std::sqrt(sum_of_squares_) <= perfect * problem_.rounding(); }

    FitProblem& problem_;
    std::span<const FitParameter> parameters_;
    Index count_;
    std::vector<float> values_;
    VectorXd residuals_, trial_residuals_;
    double sum_of_squares_ = 0;
    MatrixXd columns_;
    VectorXd limit_below_, limit_above_;  ///< of a step
    BoundedStep system_;
    double one_residual_ = 0;  ///< mean square, for the weak holds of an iteration
    double damping_ = first_damping;
    double growth_ = 2;
    int idle_ = 0;
};

/// How far it is to a limit, in the steps of the parameter: not below 0 the wrong way.
double Solver::room(Index k, float limit) const {
    const FitParameter& p = parameter(k);
    if (!p.logarithmic) return static_cast<double>(limit) - static_cast<double>(value(k));
    const double ratio = (static_cast<double>(limit) - static_cast<double>(p.origin)) /
                         (static_cast<double>(value(k)) - static_cast<double>(p.origin));
    return ratio > 0 ? std::log(ratio) : -std::numeric_limits<double>::infinity();
}

/// How many of its holds a parameter is from its start.
double Solver::away(Index k, const std::vector<float>& values) const {
    const FitParameter& p = parameter(k);
    const auto here = static_cast<double>(values[static_cast<std::size_t>(k)]);
    const auto began = static_cast<double>(p.value), origin = static_cast<double>(p.origin);
    if (!(p.hold > 0)) return 0;
    if (!p.logarithmic) return (here - began) / p.hold;
    const double ratio = (here - origin) / (began - origin);
    return ratio > 0 ? std::log(ratio) / p.hold : 0.0;
}

double Solver::hold_of(const std::vector<float>& values) const {
    double sum = 0;
    for (Index k = 0; k < count_; ++k) sum += std::pow(away(k, values), 2);
    return one_residual_ * sum;
}

void Solver::form_bounds() {
    VectorXd most(count_);
    problem_.largest_steps(values_, {most.data(), values_.size()});
    limit_below_.resize(count_);
    limit_above_.resize(count_);
    for (Index k = 0; k < count_; ++k) {
        const FitParameter& p = parameter(k);
        double low = room(k, p.lower), high = room(k, p.upper);
        if (p.logarithmic && value(k) < p.origin) std::swap(low, high);
        if (p.lower > p.upper) low = high = 0;
        limit_below_[k] = std::min(low, 0.0);
        limit_above_[k] = std::max(high, 0.0);
        // Beyond the origin of a logarithm there is nothing.
        if (p.logarithmic && !std::isfinite(high)) limit_above_[k] = std::numeric_limits<double>::infinity();
        if (p.logarithmic) most[k] = std::log(most[k]);
    }
    system_.least = limit_below_.cwiseMax(-most);
    system_.most = limit_above_.cwiseMin(most);
}

void Solver::form_normal() {
    problem_.columns(values_, columns_);
    for (Index k = 0; k < count_; ++k) {
        const FitParameter& p = parameter(k);
        if (p.logarithmic) columns_.col(k) *= static_cast<double>(value(k)) - static_cast<double>(p.origin);
        if (!all_finite(columns_.col(k))) columns_.col(k).setZero();
    }
    system_.normal = normal_matrix(columns_, problem_.pacer());
    system_.gradient = columns_.transpose() * residuals_;
    one_residual_ = sum_of_squares_ / static_cast<double>(std::max<Index>(residuals_.size(), 1));
    for (Index k = 0; k < count_; ++k) {
        const double hold = parameter(k).hold;
        if (!(hold > 0)) continue;
        system_.normal(k, k) += one_residual_ / (hold * hold);
        system_.gradient[k] += one_residual_ * away(k, values_) / hold;
    }
}

bool Solver::try_step(const VectorXd& step) {
    std::vector<float> trial = values_;
    for (Index k = 0; k < count_; ++k) {
        if (step[k] == 0) continue;
        const FitParameter& p = parameter(k);
        const auto here = static_cast<double>(value(k));
        const auto origin = static_cast<double>(p.origin);
        const double there = p.logarithmic ? origin + (here - origin) * std::exp(step[k]) : here + step[k];
        trial[static_cast<std::size_t>(k)] = std::clamp(static_cast<float>(there), p.lower, p.upper);
    }
    if (trial == values_) return false;
    problem_.residuals(trial, trial_residuals_);
    const double sum = trial_residuals_.squaredNorm();
    if (!(sum + hold_of(trial) < cost())) return false;
    values_ = trial;
    residuals_.swap(trial_residuals_);
    sum_of_squares_ = sum;
    return true;
}

/// Even if the columns held all the way to the limits.
bool Solver::promises_little() {
    system_.least.swap(limit_below_);
    system_.most.swap(limit_above_);
    const BoundedAnswer answer = step_damped_by(least_damping);
    system_.least.swap(limit_below_);
    system_.most.swap(limit_above_);
    return answer.settled && promise(answer.step) < least_promise * cost();
}

Solver::Step Solver::improve() {
    form_normal();
    form_bounds();
    const double before = cost();
    const bool last_step = promises_little();
    if (last_step && try_step(step_damped_by(least_damping).step)) return Step::converged;
    while (damping_ < most_damping) {
        const VectorXd step = step_damped_by(damping_).step;
        const double promised = promise(step);
        if (!(promised > least_trial * before)) break;
        if (try_step(step)) {
            const double gain = before - cost();
            const double cube = std::pow(2 * std::min(gain / promised, 1.0) - 1, 3);
            damping_ = std::max(damping_ * std::max(1.0 / 3, 1 - cube), least_damping);
            growth_ = 2;
            idle_ = gain < least_promise * before ? idle_ + 1 : 0;
            return last_step || perfect_fit() || idle_ >= most_idle ? Step::converged : Step::better;
        }
        damping_ *= growth_;
        growth_ *= 2;
    }
    return Step::none;
}

FitOutcome Solver::run(int max_iterations) {
    FitOutcome outcome;
    problem_.residuals(values_, residuals_);
    sum_of_squares_ = residuals_.squaredNorm();
    // The problem may have put amplitudes at their best already.
    bool improved = !std::ranges::equal(values_, parameters_, {}, {}, &FitParameter::value);
    outcome.end = FitEnd::iteration_limit;
    while (outcome.iterations < max_iterations) {
        const Step last = perfect_fit() ? Step::none : improve();
        improved |= last != Step::none;
        const bool goes_on = problem_.iteration_done(++outcome.iterations, values_);
        if (last != Step::better) {
            outcome.end = improved ? FitEnd::converged : FitEnd::no_decrease;
            break;
        }
        if (!goes_on) break;
    }
    outcome.values = values_;
    outcome.sum_of_squares = sum_of_squares_;
    outcome.at_limit = on_limits(parameters_, values_);
    return outcome;
}

}  // namespace

FitOutcome fit_least_squares(FitProblem& problem, std::span<const FitParameter> parameters,
                             int max_iterations) {
    return Solver(problem, parameters).run(max_iterations);
}

std::vector<bool> on_limits(std::span<const FitParameter> parameters, std::span<const float> values) {
    std::vector<bool> on(parameters.size());
    for (std::size_t i = 0; i < on.size(); ++i) {
        const FitParameter& p = parameters[i];
        on[i] = p.lower > p.upper || values[i] <= p.lower || values[i] >= p.upper;
    }
    return on;
}

}  // namespace anomalis::inversion
