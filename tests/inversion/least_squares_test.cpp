#include "inversion/least_squares.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

#include "inversion/fit_errors.h"

namespace anomalis::inversion {

namespace {

/// Residuals of a formula over 50 points.
class Formula : public FitProblem {
  public:
    using Residual = std::function<double(std::span<const double>, double)>;
    explicit Formula(Residual residual) : residual_(std::move(residual)) {}

    std::size_t residual_count() const override { return 50; }
    double rounding() const override { return 1e-9; }
    void residuals(std::vector<float>& values, Eigen::VectorXd& out) override {
        ++evaluations;
        tried.push_back(values);
        out = at(std::vector<double>(values.begin(), values.end()));
    }
    void columns(std::span<const float> values, Eigen::MatrixXd& out) override {
        std::vector<double> v(values.begin(), values.end());
        for (std::size_t k = 0; k < v.size(); ++k) {
            const double here = v[k];
            v[k] = here + difference;
            const Eigen::VectorXd ahead = at(v);
            v[k] = here - difference;
            out.col(static_cast<Eigen::Index>(k)) = (ahead - at(v)) / (2 * difference);
            v[k] = here;
        }
    }
    void largest_steps(std::span<const float>, std::span<double> out) const override {
        std::ranges::fill(out, largest_step);
    }
    bool iteration_done(int iteration, std::span<const float>) override { return iteration < stop_after; }

    int evaluations = 0, stop_after = 1000000;
    double largest_step = 1e30;
    std::vector<std::vector<float>> tried;

  private:
    static constexpr double difference = 1e-5;
    Eigen::VectorXd at(const std::vector<double>& v) const {
        Eigen::VectorXd out(50);
        for (Eigen::Index i = 0; i < 50; ++i) out[i] = residual_(v, static_cast<double>(i) / 50);
        return out;
    }
    Residual residual_;
};

FitParameter parameter(float value, float lower = -no_limit, float upper = no_limit) {
    return {.value = value, .lower = lower, .upper = upper};
}

/// What the columns at the end say of a problem.
FitErrors described(Formula& problem, const FitOutcome& outcome) {
    ChannelFit fit;
    fit.distance = Eigen::VectorXd::LinSpaced(50, 0, 49);
    std::vector<float> values = outcome.values;
    problem.residuals(values, fit.residual);
    fit.columns.resize(50, static_cast<Eigen::Index>(values.size()));
    problem.columns(values, fit.columns);
    fit.regional.resize(50, 0);
    return find_fit_errors(std::span(&fit, 1), outcome.at_limit, no_pace());
}

double bell(std::span<const double> v, double x) {
    return v[0] * std::exp(-std::pow((x - v[1]) / 0.2, 2));
}
double misfit_of_bell(std::span<const double> v, double x) {
    return bell(v, x) - 3 * std::exp(-std::pow((x - 0.4) / 0.2, 2));
}
/// The line 2 + 3 x, and a scatter whose mean square is 1.
double scattered_line(std::span<const double> v, double x) {
    const double scatter = static_cast<int>(std::lround(x * 50)) % 2 == 0 ? 1.0 : -1.0;
    return v[0] + v[1] * x - (2 + 3 * x + scatter);
}

}  // namespace

TEST(LeastSquares, a_curved_problem_is_solved_to_the_digits_of_singles) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(2), parameter(0.5F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.end, FitEnd::converged);
    EXPECT_NEAR(outcome.values[0], 3, 1e-4);
    EXPECT_NEAR(outcome.values[1], 0.4, 1e-5);
    EXPECT_LT(outcome.iterations, 12);
}

TEST(LeastSquares, limits_hold_and_the_rest_is_fitted_beside_them) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(2, 0, 2.5F), parameter(0.5F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.values[0], 2.5F);
    EXPECT_NEAR(outcome.values[1], 0.4, 1e-3);
    EXPECT_EQ(outcome.at_limit, (std::vector<bool>{true, false}));
    const FitErrors description = described(problem, outcome);
    EXPECT_TRUE(std::isnan(description.errors[0]));
    EXPECT_FALSE(description.undetermined[0]);
    for (const std::vector<float>& values : problem.tried) EXPECT_LE(values[0], 2.5F);
}

TEST(LeastSquares, a_parameter_leaves_its_limit_when_the_residuals_want_it) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(2, 2, 10), parameter(0.5F, 0, 0.5F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_NEAR(outcome.values[0], 3, 1e-4);
    EXPECT_NEAR(outcome.values[1], 0.4, 1e-5);
}

TEST(LeastSquares, crossed_limits_hold_the_value) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(2, 5, 1), parameter(0.5F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.values[0], 2.0F);
    EXPECT_TRUE(outcome.at_limit[0]);
    EXPECT_NEAR(outcome.values[1], 0.4, 1e-3);
}

TEST(LeastSquares, errors_and_correlation_of_a_straight_line_are_the_textbook_ones) {
    Formula problem(scattered_line);
    const std::vector<FitParameter> start{parameter(0), parameter(0)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    const FitErrors found = described(problem, outcome);
    // Straight line through n points: var(a) = s2 sum(x2) / d, var(b) = s2 n / d, d = n sum(x2) - sum(x)^2.
    double sum = 0, squares = 0;
    for (int i = 0; i < 50; ++i) {
        sum += i / 50.0;
        squares += i / 50.0 * (i / 50.0);
    }
    const double d = 50 * squares - sum * sum;
    const double variance = outcome.sum_of_squares / 48;
    EXPECT_NEAR(found.errors[0], std::sqrt(variance * squares / d), 1e-3 * found.errors[0]);
    EXPECT_NEAR(found.errors[1], std::sqrt(variance * 50 / d), 1e-3 * found.errors[1]);
    EXPECT_NEAR(found.correlation[1], -sum / std::sqrt(50 * squares), 1e-3);
    EXPECT_EQ(found.correlation[1], found.correlation[2]);
    EXPECT_EQ(found.correlation[0], 1);
    EXPECT_EQ(found.undetermined, (std::vector<bool>{false, false}));
}

TEST(LeastSquares, a_parameter_without_effect_is_undetermined_and_stays) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(2), parameter(0.5F), parameter(7)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    const FitErrors found = described(problem, outcome);
    EXPECT_EQ(found.undetermined, (std::vector<bool>{false, false, true}));
    EXPECT_EQ(outcome.values[2], 7.0F);
    EXPECT_NEAR(outcome.values[0], 3, 1e-4);
    EXPECT_TRUE(std::isnan(found.errors[2]));
    EXPECT_TRUE(std::isnan(found.correlation[2]));
    EXPECT_FALSE(std::isnan(found.errors[0]));
}

TEST(LeastSquares, parameters_that_act_only_as_a_product_are_undetermined) {
    Formula problem([](std::span<const double> v, double x) {
        const double values[] = {v[0] * v[2], v[1]};
        return misfit_of_bell(values, x);
    });
    const std::vector<FitParameter> start{parameter(2), parameter(0.5F), parameter(1.2F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(described(problem, outcome).undetermined, (std::vector<bool>{true, false, true}));
    EXPECT_NEAR(outcome.values[0] * outcome.values[2], 3, 1e-3);
    EXPECT_NEAR(outcome.values[1], 0.4, 1e-4);
}

TEST(LeastSquares, the_iteration_limit_and_a_stop_end_it) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(1), parameter(0.55F)};
    EXPECT_EQ(fit_least_squares(problem, start, 1).end, FitEnd::iteration_limit);
    problem.stop_after = 1;
    const FitOutcome stopped = fit_least_squares(problem, start, 50);
    EXPECT_EQ(stopped.end, FitEnd::iteration_limit);
    EXPECT_EQ(stopped.iterations, 1);
}

TEST(LeastSquares, from_the_best_place_there_is_no_decrease) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(3), parameter(0.4F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.end, FitEnd::no_decrease);
    EXPECT_EQ(outcome.values, (std::vector<float>{3, 0.4F}));
}

TEST(LeastSquares, residuals_that_are_no_number_are_never_accepted) {
    Formula problem([](std::span<const double> v, double x) {
        return v[1] < 0.45 ? std::nan("") : misfit_of_bell(v, x);
    });
    const std::vector<FitParameter> start{parameter(2), parameter(0.5F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_GE(outcome.values[1], 0.45F);
    EXPECT_TRUE(std::isfinite(outcome.sum_of_squares));
}

TEST(LeastSquares, more_parameters_than_residuals_are_borne) {
    Formula problem([](std::span<const double> v, double x) {
        double sum = -1;
        for (std::size_t k = 0; k < v.size(); ++k) sum += v[k] * std::cos(x * static_cast<double>(k));
        return sum;
    });
    const std::vector<FitParameter> start(60, parameter(0.1F));
    const FitOutcome outcome = fit_least_squares(problem, start, 5);
    EXPECT_EQ(outcome.values.size(), 60U);
    EXPECT_LT(outcome.sum_of_squares, 1);
}

TEST(LeastSquares, a_logarithmic_parameter_keeps_its_side_of_the_origin) {
    // The first full step would take the width below 0.
    Formula problem([](std::span<const double> v, double x) {
        return v[0] * std::exp(-std::pow((x - 0.4) / v[1], 2)) - 3 * std::exp(-std::pow((x - 0.4) / 0.05, 2));
    });
    const std::vector<FitParameter> start{parameter(2), {.value = 0.5F, .lower = 1e-3F, .logarithmic = true}};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    for (const std::vector<float>& values : problem.tried) EXPECT_GT(values[1], 0);
    EXPECT_NEAR(outcome.values[1], 0.05, 1e-4);
    // Counted downwards from an origin above.
    Formula below([](std::span<const double> v, double x) { return x / (10 - v[0]) - x / 3; });
    const std::vector<FitParameter> top{{.value = -20, .upper = 8, .logarithmic = true, .origin = 10}};
    EXPECT_NEAR(fit_least_squares(below, top, 50).values[0], 7, 1e-4);
}

TEST(LeastSquares, no_step_is_longer_than_allowed) {
    Formula problem([](std::span<const double> v, double x) { return (v[0] - 40) * (1 + x); });
    problem.largest_step = 3;
    const std::vector<FitParameter> start{parameter(0)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_NEAR(outcome.values[0], 40, 1e-3);
    float before = 0;
    for (const std::vector<float>& values : problem.tried) {
        EXPECT_LE(std::abs(values[0] - before), 3.0001F);
        before = values[0];
    }
}

}  // namespace anomalis::inversion
