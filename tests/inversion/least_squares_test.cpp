#include "inversion/least_squares.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

namespace anomalis::inversion {

namespace {

/// Residuals of a formula over 50 points.
class Formula : public FitProblem {
  public:
    using Residual = std::function<double(std::span<const float>, double)>;
    explicit Formula(Residual residual) : residual_(std::move(residual)) {}

    std::size_t residual_count() const override { return 50; }
    double rounding() const override { return 1e-9; }
    void residuals(std::span<const float> values, std::span<double> out) override {
        ++evaluations;
        state_.assign(values.begin(), values.end());
        fill(out);
    }
    void probe(std::size_t index, float value, std::span<double> out) override {
        ++evaluations;
        const float kept = state_[index];
        state_[index] = value;
        probed.push_back(value);
        fill(out);
        state_[index] = kept;
    }
    void accepted() override { ++acceptances; }
    bool iteration_done(int iteration) override { return iteration < stop_after; }

    int evaluations = 0, acceptances = 0, stop_after = 1000000;
    std::vector<float> probed;

  private:
    void fill(std::span<double> out) {
        for (std::size_t i = 0; i < out.size(); ++i) out[i] = residual_(state_, static_cast<double>(i) / 50);
    }
    Residual residual_;
    std::vector<float> state_;
};

FitParameter parameter(float value, float lower = -1e32F, float upper = 1e32F) {
    return {.value = value,
            .lower = lower,
            .upper = upper,
            .difference = 1e-3F,
            .least_difference = 1e-4F,
            .most_difference = 1e-2F,
            .scale = 100};
}

double bell(std::span<const float> v, double x) {
    return static_cast<double>(v[0]) * std::exp(-std::pow((x - static_cast<double>(v[1])) / 0.2, 2));
}
double misfit_of_bell(std::span<const float> v, double x) {
    return bell(v, x) - 3 * std::exp(-std::pow((x - 0.4) / 0.2, 2));
}
/// The line 2 + 3 x, and a scatter whose mean square is 1.
double scattered_line(std::span<const float> v, double x) {
    const double scatter = static_cast<int>(std::lround(x * 50)) % 2 == 0 ? 1.0 : -1.0;
    return static_cast<double>(v[0]) + static_cast<double>(v[1]) * x - (2 + 3 * x + scatter);
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
    EXPECT_GT(problem.acceptances, 0);
}

TEST(LeastSquares, limits_hold_and_the_rest_is_fitted_beside_them) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(2, 0, 2.5F), parameter(0.5F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.values[0], 2.5F);
    EXPECT_NEAR(outcome.values[1], 0.4, 1e-3);
    EXPECT_EQ(outcome.at_limit, (std::vector<bool>{true, false}));
    EXPECT_TRUE(std::isnan(outcome.errors[0]));
    EXPECT_FALSE(outcome.undetermined[0]);
    for (const float probe : problem.probed) EXPECT_LE(probe, 2.5F) << "differences stay inside as well";
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
    // Straight line through n points: var(a) = s2 sum(x2) / d, var(b) = s2 n / d, d = n sum(x2) - sum(x)^2.
    double sum = 0, squares = 0;
    for (int i = 0; i < 50; ++i) {
        sum += i / 50.0;
        squares += i / 50.0 * (i / 50.0);
    }
    const double d = 50 * squares - sum * sum;
    const double variance = outcome.sum_of_squares / 48;
    EXPECT_NEAR(outcome.errors[0], std::sqrt(variance * squares / d), 1e-3 * outcome.errors[0]);
    EXPECT_NEAR(outcome.errors[1], std::sqrt(variance * 50 / d), 1e-3 * outcome.errors[1]);
    EXPECT_NEAR(outcome.correlation[1], -sum / std::sqrt(50 * squares), 1e-3);
    EXPECT_EQ(outcome.correlation[1], outcome.correlation[2]);
    EXPECT_EQ(outcome.correlation[0], 1);
    EXPECT_EQ(outcome.undetermined, (std::vector<bool>{false, false}));
}

TEST(LeastSquares, a_parameter_without_effect_is_undetermined_and_stays) {
    Formula problem(misfit_of_bell);
    const std::vector<FitParameter> start{parameter(2), parameter(0.5F), parameter(7)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.undetermined, (std::vector<bool>{false, false, true}));
    EXPECT_EQ(outcome.values[2], 7.0F);
    EXPECT_NEAR(outcome.values[0], 3, 1e-4);
    EXPECT_TRUE(std::isnan(outcome.errors[2]));
    EXPECT_TRUE(std::isnan(outcome.correlation[2]));
    EXPECT_FALSE(std::isnan(outcome.errors[0]));
}

TEST(LeastSquares, parameters_that_act_only_as_a_product_are_undetermined) {
    Formula problem([](std::span<const float> v, double x) {
        const float values[] = {v[0] * v[2], v[1]};
        return misfit_of_bell(values, x);
    });
    const std::vector<FitParameter> start{parameter(2), parameter(0.5F), parameter(1.2F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.undetermined, (std::vector<bool>{true, false, true}));
    EXPECT_NEAR(outcome.values[0] * outcome.values[2], 3, 1e-3);
    EXPECT_NEAR(outcome.values[1], 0.4, 1e-4);
}

TEST(LeastSquares, an_error_beyond_the_scale_leaves_a_parameter_undetermined) {
    Formula problem(scattered_line);
    std::vector<FitParameter> start{parameter(0), parameter(0)};
    start[0].scale = 0.01F;
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_EQ(outcome.undetermined, (std::vector<bool>{true, false}));
    EXPECT_FALSE(std::isnan(outcome.errors[0]));
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
    EXPECT_EQ(problem.acceptances, 0);
}

TEST(LeastSquares, residuals_that_are_no_number_are_never_accepted) {
    Formula problem([](std::span<const float> v, double x) {
        return v[1] < 0.45F ? std::nan("") : misfit_of_bell(v, x);
    });
    const std::vector<FitParameter> start{parameter(2), parameter(0.5F)};
    const FitOutcome outcome = fit_least_squares(problem, start, 50);
    EXPECT_GE(outcome.values[1], 0.45F);
    EXPECT_TRUE(std::isfinite(outcome.sum_of_squares));
}

TEST(LeastSquares, more_parameters_than_residuals_are_borne) {
    Formula problem([](std::span<const float> v, double x) {
        double sum = -1;
        for (std::size_t k = 0; k < v.size(); ++k)
            sum += static_cast<double>(v[k]) * std::cos(x * static_cast<double>(k));
        return sum;
    });
    const std::vector<FitParameter> start(60, parameter(0.1F));
    const FitOutcome outcome = fit_least_squares(problem, start, 5);
    EXPECT_EQ(outcome.values.size(), 60U);
    EXPECT_LT(outcome.sum_of_squares, 1);
}

}  // namespace anomalis::inversion
