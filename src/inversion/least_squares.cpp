#include "inversion/least_squares.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <utility>

#include "inversion/least_squares_statistics.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double first_damping = 1e-2;
constexpr double most_damping = 1e10;
/// The fit has converged when the step without damping promises less than this part of the sum of squares.
constexpr double least_promise = 1e-3;
/// A damped step that promises less than this part ends the search for a better point.
constexpr double least_trial = 1e-5;
/// A difference should change the residuals by so many times what rounding does: far above it, and still
/// small against the response.
constexpr double clear_change = 2e4;
/// A sum of squares this close to what rounding makes leaves nothing to gain.
constexpr double perfect = 2;

std::span<double> span_of(VectorXd& v) {
    return {v.data(), static_cast<std::size_t>(v.size())};
}

class Solver {
  public:
    Solver(FitProblem& problem, std::span<const FitParameter> parameters)
        : problem_(problem),
          parameters_(parameters),
          count_(static_cast<Index>(parameters.size())),
          values_(parameters.size()),
          residuals_(static_cast<Index>(problem.residual_count())),
          trial_residuals_(residuals_.size()),
          jacobian_(residuals_.size(), count_) {
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            values_[i] = parameters[i].value;
            differences_.push_back(parameters[i].difference);
        }
    }

    FitOutcome run(int max_iterations);

  private:
    enum class Step { converged, better, none };

    const FitParameter& parameter(Index k) const { return parameters_[static_cast<std::size_t>(k)]; }
    double value(Index k) const { return static_cast<double>(values_[static_cast<std::size_t>(k)]); }
    double room_below(Index k) const { return static_cast<double>(parameter(k).lower) - value(k); }
    double room_above(Index k) const { return static_cast<double>(parameter(k).upper) - value(k); }
    bool crossed(Index k) const { return parameter(k).lower > parameter(k).upper; }

    void form_column(Index k);
    void form_jacobian();
    std::vector<bool> held() const;
    VectorXd damped_step(std::vector<bool> fixed) const;
    VectorXd solve(const std::vector<bool>& fixed, const VectorXd& given) const;
    double predicted_gain(const VectorXd& step) const;
    bool try_step(const VectorXd& step);
    Step improve();
    void describe(FitOutcome& outcome) const;
    bool perfect_fit() const;
    double most_promise(const std::vector<bool>& fixed) const;

    FitProblem& problem_;
    std::span<const FitParameter> parameters_;
    Index count_;
    std::vector<float> values_;
    std::vector<float> differences_;  ///< for the next Jacobian
    std::vector<float> formed_with_;  ///< of the present one
    VectorXd residuals_, trial_residuals_;
    double sum_of_squares_ = 0;
    MatrixXd jacobian_;
    MatrixXd triangle_;   ///< R of the Jacobian: as good as it for every length, and small
    VectorXd projected_;  ///< the residuals in the same axes
    VectorXd scale_;      ///< longest each column has been
    double damping_ = first_damping;
    double growth_ = 2;
};

/// The difference follows the response: the next one changes it clearly, however deep or large the body is.
void Solver::form_column(Index k) {
    const auto i = static_cast<std::size_t>(k);
    const FitParameter& p = parameter(k);
    float& difference = differences_[i];
    const float here = values_[i];
    float there = here + difference;
    if (there > p.upper && here - difference >= p.lower) there = here - difference;
    problem_.probe(i, there, span_of(trial_residuals_));
    trial_residuals_ -= residuals_;
    const double change = trial_residuals_.norm();
    jacobian_.col(k) = trial_residuals_ / (static_cast<double>(there) - static_cast<double>(here));
    if (!jacobian_.col(k).allFinite()) {
        jacobian_.col(k).setZero();
        return;
    }
    formed_with_[i] = difference;
    const double wanted = clear_change * problem_.rounding();
    const double factor = std::clamp(change > 0 ? wanted / change : 10.0, 0.1, 10.0);
    difference = std::clamp(static_cast<float>(static_cast<double>(difference) * factor), p.least_difference,
                            p.most_difference);
}

/// One evaluation of one body a column.
void Solver::form_jacobian() {
    formed_with_ = differences_;
    for (Index k = 0; k < count_; ++k) {
        if (crossed(k)) {
            jacobian_.col(k).setZero();
        } else {
            form_column(k);
        }
    }
    const Eigen::HouseholderQR<MatrixXd> qr(jacobian_);
    const Index rank = std::min(jacobian_.rows(), count_);
    triangle_ = qr.matrixQR().topRows(rank).triangularView<Eigen::Upper>();
    projected_ = (qr.householderQ().adjoint() * residuals_).head(rank);
    const VectorXd norms = triangle_.colwise().norm().transpose();
    scale_ = scale_.size() == 0 ? norms : scale_.cwiseMax(norms).eval();
}

/// Parameters that a limit keeps from going where the residuals want them, or that cannot move at all.
std::vector<bool> Solver::held() const {
    const VectorXd gradient = triangle_.transpose() * projected_;
    std::vector<bool> fixed(parameters_.size());
    for (Index k = 0; k < count_; ++k) {
        const bool low = room_below(k) >= 0 && gradient[k] >= 0;
        const bool high = room_above(k) <= 0 && gradient[k] <= 0;
        fixed[static_cast<std::size_t>(k)] = low || high || crossed(k) || scale_[k] == 0;
    }
    return fixed;
}

/// The damped step of the parameters that are not fixed; those that are take what is `given`.
VectorXd Solver::solve(const std::vector<bool>& fixed, const VectorXd& given) const {
    std::vector<Index> moving;
    for (Index k = 0; k < count_; ++k)
        if (!fixed[static_cast<std::size_t>(k)]) moving.push_back(k);
    VectorXd step = given;
    const auto free = static_cast<Index>(moving.size());
    if (free == 0) return step;
    MatrixXd system(triangle_.rows() + free, free);
    system.topRows(triangle_.rows()) = triangle_(Eigen::all, moving);
    system.bottomRows(free) = (std::sqrt(damping_) * scale_(moving)).asDiagonal();
    VectorXd target = VectorXd::Zero(system.rows());
    target.head(triangle_.rows()) = -(projected_ + triangle_ * given);
    step(moving) = system.householderQr().solve(target);
    return step;
}

/// Parameters that would leave their limits go to them and the rest is solved again.
VectorXd Solver::damped_step(std::vector<bool> fixed) const {
    VectorXd given = VectorXd::Zero(count_);
    for (Index round = 0; round <= count_; ++round) {
        const VectorXd step = solve(fixed, given);
        bool inside = true;
        for (Index k = 0; k < count_; ++k) {
            if (fixed[static_cast<std::size_t>(k)]) continue;
            const double bounded = std::clamp(step[k], room_below(k), room_above(k));
            if (bounded == step[k]) continue;
            inside = false;
            given[k] = bounded;
            fixed[static_cast<std::size_t>(k)] = true;
        }
        if (inside) return step;
    }
    return given;
}

double Solver::predicted_gain(const VectorXd& step) const {
    return projected_.squaredNorm() - (projected_ + triangle_ * step).squaredNorm();
}

bool Solver::perfect_fit() const {
    return std::sqrt(sum_of_squares_) <= perfect * problem_.rounding();
}

/// What could be gained if the columns held all the way and no limit stood in it.
double Solver::most_promise(const std::vector<bool>& fixed) const {
    std::vector<Index> moving;
    for (Index k = 0; k < count_; ++k)
        if (!fixed[static_cast<std::size_t>(k)]) moving.push_back(k);
    if (moving.empty()) return 0;
    const MatrixXd columns = triangle_(Eigen::all, moving);
    const VectorXd left = projected_ - columns * columns.colPivHouseholderQr().solve(projected_);
    return projected_.squaredNorm() - left.squaredNorm();
}

bool Solver::try_step(const VectorXd& step) {
    std::vector<float> trial = values_;
    for (Index k = 0; k < count_; ++k) {
        if (step[k] == 0) continue;
        const FitParameter& p = parameter(k);
        trial[static_cast<std::size_t>(k)] =
            std::clamp(static_cast<float>(value(k) + step[k]), p.lower, p.upper);
    }
    if (trial == values_) return false;
    problem_.residuals(trial, span_of(trial_residuals_));
    const double sum = trial_residuals_.squaredNorm();
    if (!(sum < sum_of_squares_)) return false;
    values_ = trial;
    residuals_.swap(trial_residuals_);
    sum_of_squares_ = sum;
    problem_.accepted();
    return true;
}

/// Damping by the ratio of real to predicted gain (Nielsen 1999).
Solver::Step Solver::improve() {
    form_jacobian();
    const std::vector<bool> fixed = held();
    const double before = sum_of_squares_;
    const bool last_step = most_promise(fixed) < least_promise * before;
    while (damping_ < most_damping) {
        const VectorXd step = damped_step(fixed);
        const double promised = predicted_gain(step);
        if (!(promised > least_trial * before)) break;
        if (try_step(step)) {
            const double gain = before - sum_of_squares_;
            const double cube = std::pow(2 * std::min(gain / promised, 1.0) - 1, 3);
            damping_ = std::max(damping_ * std::max(1.0 / 3, 1 - cube), 1e-12);
            growth_ = 2;
            return last_step || perfect_fit() ? Step::converged : Step::better;
        }
        if (last_step) break;
        damping_ *= growth_;
        growth_ *= 2;
    }
    return Step::none;
}

FitOutcome Solver::run(int max_iterations) {
    FitOutcome outcome;
    problem_.residuals(values_, span_of(residuals_));
    sum_of_squares_ = residuals_.squaredNorm();
    bool improved = false;
    Step last = Step::better;
    outcome.end = FitEnd::iteration_limit;
    while (outcome.iterations < max_iterations) {
        last = improve();
        improved |= last != Step::none;
        const bool goes_on = problem_.iteration_done(++outcome.iterations);
        if (last != Step::better) {
            outcome.end = improved ? FitEnd::converged : FitEnd::no_decrease;
            break;
        }
        if (!goes_on) break;
    }
    // After a long step the columns belong to a place that was left.
    if (last == Step::better) form_jacobian();
    outcome.values = values_;
    outcome.sum_of_squares = sum_of_squares_;
    describe(outcome);
    return outcome;
}

void Solver::describe(FitOutcome& outcome) const {
    FitMatter matter;
    matter.triangle = {triangle_.data(), static_cast<std::size_t>(triangle_.size())};
    matter.rows = static_cast<std::size_t>(triangle_.rows());
    matter.residual_count = static_cast<std::size_t>(residuals_.size());
    matter.rounding = problem_.rounding();
    matter.parameters = parameters_;
    matter.differences = formed_with_;
    outcome.at_limit.assign(parameters_.size(), false);
    for (Index k = 0; k < count_; ++k)
        outcome.at_limit[static_cast<std::size_t>(k)] =
            crossed(k) || room_below(k) >= 0 || room_above(k) <= 0;
    describe_fit(matter, outcome);
}

}  // namespace

FitOutcome fit_least_squares(FitProblem& problem, std::span<const FitParameter> parameters,
                             int max_iterations) {
    return Solver(problem, parameters).run(max_iterations);
}

}  // namespace anomalis::inversion
