#include "inversion/intervals.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

namespace anomalis::inversion {

namespace {

/// Two parameters of which the sum of squares is a formula; the second is refitted by a search.
class FormulaRefit : public Refit {
  public:
    using Sum = std::function<double(double, double)>;
    explicit FormulaRefit(Sum sum) : sum_(std::move(sum)) {}

    double sum_of_squares(std::span<const double> values) override {
        ++evaluations;
        return sum_(values[0], values[1]);
    }
    double refit(std::size_t parameter, double value, std::span<const double> start) override {
        ++refits;
        const auto at = [&](double other) {
            return parameter == 0 ? sum_(value, other) : sum_(other, value);
        };
        double best = start[1 - parameter];
        for (double step = 4; step > 1e-7; step /= 2)
            for (int turn = 0; turn < 200; ++turn) {
                if (at(best + step) < at(best)) {
                    best += step;
                } else if (at(best - step) < at(best)) {
                    best -= step;
                } else {
                    break;
                }
            }
        return at(best);
    }

    int evaluations = 0, refits = 0;

  private:
    Sum sum_;
};

/// Both errors 1, without correlation, the threshold 1.645 unit errors.
FitErrors plain_errors() {
    FitErrors errors;
    errors.errors = {1, 1};
    errors.unit_errors = {1, 1};
    errors.quantile = errors.growth = {1.645, 1.645};
    errors.correlation = {1, 0, 0, 1};
    errors.undetermined = {false, false};
    errors.following = Eigen::MatrixXd::Identity(2, 2);
    return errors;
}

double square(double x) {
    return x * x;
}

}  // namespace

TEST(Intervals, where_the_columns_are_true_they_are_quadratic_and_cost_no_refit) {
    FormulaRefit refit([](double a, double b) { return 7 + square(a - 3) + square(b); });
    const std::vector<IntervalParameter> parameters{{.value = 3}, {.value = 0}};
    const auto intervals = find_intervals(plain_errors(), parameters, refit, 100);
    EXPECT_NEAR(intervals[0].lower, 3 - 1.645, 1e-12);
    EXPECT_NEAR(intervals[0].upper, 3 + 1.645, 1e-12);
    EXPECT_FALSE(intervals[0].profiled);
    EXPECT_EQ(refit.refits, 0);
    EXPECT_EQ(refit.evaluations, 5);
}

/// Noise that is correlated widens the errors and not the sum of squares.
TEST(Intervals, the_threshold_follows_the_errors) {
    FitErrors errors = plain_errors();
    errors.errors = {3, 3};
    errors.growth = {3 * 1.645, 3 * 1.645};
    FormulaRefit refit([](double a, double b) { return square(a) + square(b); });
    const std::vector<IntervalParameter> parameters{{.value = 0}, {.value = 0}};
    const auto intervals = find_intervals(errors, parameters, refit, 100);
    EXPECT_NEAR(intervals[0].upper, 3 * 1.645, 1e-12);
    EXPECT_EQ(refit.refits, 0);
}

/// In the logarithm of the first parameter the problem is plain.
TEST(Intervals, a_curved_profile_gives_the_interval_of_its_own_axis) {
    FormulaRefit refit([](double a, double b) {
        return (a > 0 ? square(2 * std::log(a / 2)) : 1e9) + square(b - std::log(std::max(a, 1e-9) / 2));
    });
    const std::vector<IntervalParameter> parameters{{.value = 2, .lower = 0}, {.value = 0}};
    FitErrors errors = plain_errors();
    errors.following << 1, 0, 0.5, 1;
    const auto intervals = find_intervals(errors, parameters, refit, 100);
    EXPECT_TRUE(intervals[0].profiled);
    EXPECT_NEAR(intervals[0].lower, 2 * std::exp(-1.645 / 2), 0.05);
    EXPECT_NEAR(intervals[0].upper, 2 * std::exp(1.645 / 2), 0.1);
}

TEST(Intervals, a_side_on_which_the_profile_stays_low_is_open) {
    FormulaRefit refit([](double a, double b) { return square(std::max(a - 1, 0.0)) + square(b); });
    const std::vector<IntervalParameter> parameters{{.value = 1, .lower = 0}, {.value = 0}};
    const auto intervals = find_intervals(plain_errors(), parameters, refit, 100);
    EXPECT_TRUE(std::isnan(intervals[0].lower));
    EXPECT_NEAR(intervals[0].upper, 2.645, 0.1);
    EXPECT_NEAR(intervals[1].lower, -1.645, 1e-9);
}

TEST(Intervals, a_profile_that_never_rises_is_open_without_a_limit_too) {
    FormulaRefit refit([](double a, double b) { return 1 - std::exp(-std::abs(a)) + square(b); });
    const std::vector<IntervalParameter> parameters{{.value = 0}, {.value = 0}};
    const auto intervals = find_intervals(plain_errors(), parameters, refit, 100);
    EXPECT_TRUE(std::isnan(intervals[0].lower));
    EXPECT_TRUE(std::isnan(intervals[0].upper));
    EXPECT_LE(refit.refits, 16);
}

/// The width of a thin body adds by a high power, and the first refit goes far beyond the end.
TEST(Intervals, a_steep_profile_is_followed_to_its_end) {
    FormulaRefit refit([](double a, double b) { return std::pow(a / 2, 8) + square(b); });
    FitErrors errors = plain_errors();
    errors.errors[0] = 100;
    const std::vector<IntervalParameter> parameters{{.value = 1, .lower = 0}, {.value = 0}};
    const auto intervals = find_intervals(errors, parameters, refit, 100);
    EXPECT_TRUE(std::isnan(intervals[0].lower));
    EXPECT_NEAR(intervals[0].upper, 2 * std::pow(1.645, 0.25), 0.05);
}

/// A size whose errors are far beyond it, as the susceptibility of a body that is all but thin.
TEST(Intervals, a_size_is_followed_by_factors_down_to_a_hundredth) {
    FormulaRefit refit([](double a, double b) { return (a > 0 ? square(std::log10(a)) : 1e9) + square(b); });
    FitErrors errors = plain_errors();
    errors.errors[0] = 1e4;
    const std::vector<IntervalParameter> parameters{{.value = 1, .lower = 0}, {.value = 0}};
    const auto intervals = find_intervals(errors, parameters, refit, 100);
    EXPECT_NEAR(std::log10(intervals[0].lower), -1.645, 0.05);
    EXPECT_NEAR(std::log10(intervals[0].upper), 1.645, 0.05);
    FormulaRefit wider(
        [](double a, double b) { return (a > 0 ? square(0.5 * std::log10(a)) : 1e9) + square(b); });
    const auto open = find_intervals(errors, parameters, wider, 100);
    EXPECT_TRUE(std::isnan(open[0].lower));
    EXPECT_TRUE(std::isnan(open[0].upper));
}

/// A refit begins where no size stands on its limit.
TEST(Intervals, what_follows_stays_off_its_limit) {
    class Watched : public FormulaRefit {
      public:
        using FormulaRefit::FormulaRefit;
        double refit(std::size_t parameter, double value, std::span<const double> start) override {
            if (parameter == 0) least_start = std::min(least_start, start[1]);
            return FormulaRefit::refit(parameter, value, start);
        }
        double least_start = 1;
    };
    Watched refit([](double a, double b) { return std::pow(a, 4) + square(b - 1); });
    FitErrors errors = plain_errors();
    errors.following(1, 0) = 50;
    const std::vector<IntervalParameter> parameters{{.value = 0}, {.value = 1, .lower = 0}};
    find_intervals(errors, parameters, refit, 100);
    EXPECT_GT(refit.refits, 0);
    EXPECT_GT(refit.least_start, 0.1);
    EXPECT_LT(refit.least_start, 0.5);
}

TEST(Intervals, refits_are_bounded) {
    FormulaRefit refit([](double a, double b) { return std::pow(a, 4) + std::pow(b, 4); });
    const std::vector<IntervalParameter> parameters{{.value = 0}, {.value = 0}};
    const auto intervals = find_intervals(plain_errors(), parameters, refit, 3);
    EXPECT_EQ(refit.refits, 3);
    EXPECT_NEAR(intervals[1].upper, 1.645, 1e-12);
    EXPECT_FALSE(intervals[1].profiled);
}

/// A size that is not known to a factor of a hundred is open, and does not end on its limit.
TEST(Intervals, without_a_refit_left_a_size_keeps_the_logarithm_of_its_axis) {
    FormulaRefit refit([](double a, double b) { return std::pow(a, 4) + std::pow(b, 4); });
    FitErrors errors = plain_errors();
    const auto end_of_size = [&](double size) {
        const std::vector<IntervalParameter> parameters{{.value = size, .lower = 0}, {.value = 0}};
        return find_intervals(errors, parameters, refit, 0)[0];
    };
    EXPECT_NEAR(end_of_size(1).lower, std::exp(-1.645), 1e-3);
    EXPECT_NEAR(end_of_size(1).upper, std::exp(1.645), 1e-2);
    EXPECT_TRUE(std::isnan(end_of_size(0.1).lower));
    EXPECT_TRUE(std::isnan(end_of_size(0.1).upper));
}

TEST(Intervals, what_is_held_or_open_has_none) {
    FitErrors errors = plain_errors();
    errors.errors[1] = std::nan("");
    FormulaRefit refit([](double a, double b) { return square(a) + square(b); });
    const std::vector<IntervalParameter> parameters{{.value = 0}, {.value = 0}};
    const auto intervals = find_intervals(errors, parameters, refit, 100);
    EXPECT_TRUE(std::isfinite(intervals[0].lower));
    EXPECT_TRUE(std::isnan(intervals[1].lower));
    EXPECT_TRUE(std::isnan(intervals[1].upper));
}

TEST(Intervals, quadratic_ones_end_at_physical_limits) {
    const std::vector<IntervalParameter> parameters{{.value = 1, .lower = 0}, {.value = -1, .lower = 0}};
    const auto intervals = quadratic_intervals(plain_errors(), parameters);
    EXPECT_EQ(intervals[0].lower, 0);
    EXPECT_NEAR(intervals[0].upper, 2.645, 1e-12);
    EXPECT_EQ(intervals[1].lower, -1);
}

}  // namespace anomalis::inversion
