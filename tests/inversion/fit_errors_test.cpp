#include "inversion/fit_errors.h"

#include <Eigen/Dense>
#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

#include "core/pacer.h"
#include "inversion/noisy_line.h"
#include "inversion/student.h"

namespace anomalis::inversion {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

namespace {

/// A fit of a bell's size and place (linear, so that its estimates are known in one step) and of a slope.
struct LinearFit {
    ChannelFit channel;
    VectorXd truth;
    VectorXd estimates;
};

MatrixXd bell_columns(const VectorXd& distance) {
    MatrixXd columns(distance.size(), 2);
    const double middle = distance.mean();
    for (Index i = 0; i < distance.size(); ++i) {
        const double t = (distance[i] - middle) / 120;
        columns(i, 0) = 1 / (1 + t * t);
        columns(i, 1) = 2 * t / ((1 + t * t) * (1 + t * t));
    }
    return columns;
}

MatrixXd slope_columns(const VectorXd& distance, Index degree) {
    MatrixXd columns = MatrixXd::Ones(distance.size(), degree + 1);
    const double half = 0.5 * (distance.maxCoeff() - distance.minCoeff());
    const VectorXd t = (distance.array() - distance.mean()) / half;
    for (Index k = 1; k <= degree; ++k) columns.col(k) = columns.col(k - 1).cwiseProduct(t);
    return columns;
}

LinearFit fit(const VectorXd& noise, Index degree = 1, double spacing = 10) {
    LinearFit made;
    ChannelFit& channel = made.channel;
    channel.distance = equal_spacing(noise.size(), spacing);
    channel.columns = bell_columns(channel.distance);
    channel.regional = slope_columns(channel.distance, degree);
    MatrixXd all(noise.size(), channel.columns.cols() + channel.regional.cols());
    all << channel.columns, channel.regional;
    const VectorXd found = all.colPivHouseholderQr().solve(noise);
    made.truth = VectorXd::Zero(channel.columns.cols());
    made.estimates = found.head(channel.columns.cols());
    channel.residual = noise - all * found;
    return made;
}

FitErrors errors_of(const LinearFit& made) {
    return find_fit_errors({&made.channel, 1}, std::vector<bool>(2, false), no_pace());
}

struct Held {
    double part = 0;   ///< of the 90 % intervals, that hold the truth, 0
    double width = 0;  ///< half an interval against what the estimates are off by, both root mean squares
};

/// Of the seeds from 1 on.
template <typename Noise>
Held coverage(int lines, Noise noise) {
    int held = 0;
    std::array<double, 2> off{}, half{};
    for (int seed = 1; seed <= lines; ++seed) {
        const LinearFit made = fit(noise(static_cast<unsigned>(seed)));
        const FitErrors errors = errors_of(made);
        for (std::size_t i = 0; i < 2; ++i) {
            const double estimate = made.estimates[static_cast<Index>(i)];
            const double reach = errors.quantile[i] * errors.errors[i];
            held += std::abs(estimate) <= reach;
            off[i] += estimate * estimate;
            half[i] += reach * reach;
        }
    }
    return {static_cast<double>(held) / (2 * lines), std::sqrt(std::max(half[0] / off[0], half[1] / off[1]))};
}

}  // namespace

TEST(Student, quantiles_are_those_of_the_tables) {
    EXPECT_NEAR(student_quantile(1), 6.3138, 1e-4);
    EXPECT_NEAR(student_quantile(2), 2.9200, 1e-4);
    EXPECT_NEAR(student_quantile(3), 2.3534, 1e-3);
    EXPECT_NEAR(student_quantile(5), 2.0150, 1e-4);
    EXPECT_NEAR(student_quantile(10), 1.8125, 1e-4);
    EXPECT_NEAR(student_quantile(30), 1.6973, 1e-4);
    EXPECT_NEAR(student_quantile(1e9), 1.6449, 1e-4);
    EXPECT_GT(student_quantile(1.5), student_quantile(2));
    EXPECT_LT(student_quantile(1.5), student_quantile(1));
}

TEST(FitErrors, white_noise_gives_the_textbook_errors) {
    const LinearFit made = fit(white_noise(100, 3, 4));
    MatrixXd all(100, 4);
    all << made.channel.columns, made.channel.regional;
    const double variance = made.channel.residual.squaredNorm() / 96;
    const MatrixXd due = variance * (all.transpose() * all).inverse();
    const FitErrors errors = errors_of(made);
    for (std::size_t i = 0; i < 2; ++i) {
        const auto k = static_cast<Index>(i);
        EXPECT_NEAR(errors.errors[i], std::sqrt(due(k, k)), 1e-9);
        EXPECT_NEAR(errors.quantile[i], student_quantile(96), 1e-9);
        EXPECT_NEAR(errors.unit_errors[i], std::sqrt(due(k, k) / variance), 1e-9);
        EXPECT_EQ(errors.correlation[3 * i], 1);
    }
    EXPECT_NEAR(errors.correlation[1], due(0, 1) / std::sqrt(due(0, 0) * due(1, 1)), 1e-9);
    EXPECT_NEAR(errors.following(1, 0), due(1, 0) / due(0, 0), 1e-9);
    EXPECT_NEAR(errors.channels[0].chi_square, variance, 1e-9);
}

TEST(FitErrors, a_weight_does_not_change_the_errors) {
    LinearFit made = fit(white_noise(100, 3, 4));
    const FitErrors due = errors_of(made);
    made.channel.sigma = 3;
    made.channel.noise = 1.5;
    const FitErrors errors = errors_of(made);
    EXPECT_NEAR(errors.errors[0], due.errors[0], 1e-9);
    EXPECT_NEAR(errors.unit_errors[0], 3 * due.unit_errors[0], 1e-9);
    EXPECT_NEAR(errors.channels[0].chi_square, due.channels[0].chi_square / 2.25, 1e-9);
}

TEST(FitErrors, intervals_hold_the_truth_in_white_noise) {
    EXPECT_NEAR(coverage(100, [](unsigned seed) { return white_noise(60, 2, seed); }).part, 0.9, 0.04);
}

TEST(FitErrors, intervals_hold_the_truth_in_noise_that_is_correlated) {
    const VectorXd distance = equal_spacing(200, 10);
    for (const NoiseKind kind : {NoiseKind::exponential, NoiseKind::gaussian}) {
        const Held held = coverage(12, [&](unsigned seed) {
            return VectorXd(correlated_noise(distance, kind, 5, 100, seed) +
                            white_noise(200, 0.5, seed + 5000));
        });
        EXPECT_GE(held.part, 0.8);
        EXPECT_LT(held.width, 5);
    }
}

TEST(FitErrors, a_column_that_the_regional_can_be_is_undetermined) {
    LinearFit made = fit(white_noise(50, 1, 1));
    made.channel.columns.col(1) = 7 * made.channel.regional.col(0) + 3 * made.channel.regional.col(1);
    const FitErrors errors = errors_of(made);
    EXPECT_FALSE(errors.undetermined[0]);
    EXPECT_TRUE(errors.undetermined[1]);
    EXPECT_TRUE(std::isnan(errors.errors[1]));
    EXPECT_TRUE(std::isfinite(errors.errors[0]));
}

TEST(FitErrors, parameters_with_one_effect_are_undetermined_and_the_others_stand) {
    LinearFit made = fit(white_noise(50, 1, 1));
    made.channel.columns.conservativeResize(Eigen::NoChange, 3);
    made.channel.columns.col(2) = -2e4 * made.channel.columns.col(0);
    const FitErrors errors = find_fit_errors({&made.channel, 1}, {false, false, false}, no_pace());
    EXPECT_TRUE(errors.undetermined[0]);
    EXPECT_FALSE(errors.undetermined[1]);
    EXPECT_TRUE(errors.undetermined[2]);
    EXPECT_TRUE(std::isfinite(errors.errors[1]));
    EXPECT_TRUE(std::isnan(errors.correlation[2]));
}

TEST(FitErrors, two_columns_that_differ_little_are_determined_with_large_errors) {
    LinearFit made = fit(white_noise(50, 1, 1));
    made.channel.columns.conservativeResize(Eigen::NoChange, 3);
    made.channel.columns.col(2) =
        made.channel.columns.col(0) + 1e-4 * made.channel.columns.col(1).cwiseAbs2();
    const FitErrors errors = find_fit_errors({&made.channel, 1}, {false, false, false}, no_pace());
    EXPECT_FALSE(errors.undetermined[2]);
    EXPECT_GT(errors.errors[2], 1e3);
}

/// The third column is nearly the first one: what they share is known, how they share it is not.
TEST(FitErrors, nothing_is_expected_to_follow_along_a_direction_that_is_hardly_known) {
    const VectorXd distance = equal_spacing(200, 10);
    LinearFit made =
        fit(correlated_noise(distance, NoiseKind::exponential, 5, 100, 3) + white_noise(200, 0.5, 4));
    const FitErrors plain = errors_of(made);
    made.channel.columns.conservativeResize(Eigen::NoChange, 3);
    made.channel.columns.col(2) =
        made.channel.columns.col(0) + 1e-4 * made.channel.columns.col(1).cwiseAbs2();
    const FitErrors errors = find_fit_errors({&made.channel, 1}, {false, false, false}, no_pace());
    ASSERT_GT(errors.channels[0].covariance.correlated, 0);
    EXPECT_NEAR(errors.following(0, 2), 1, 0.1);
    EXPECT_NEAR(errors.following(1, 0), plain.following(1, 0) / 2, 0.1);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_GE(errors.growth[i], errors.quantile[i] * errors.errors[i] / errors.unit_errors[i] - 1e-9);
    EXPECT_NEAR(plain.growth[0], plain.quantile[0] * plain.errors[0] / plain.unit_errors[0], 1e-9);
}

TEST(FitErrors, a_held_parameter_has_no_error_and_does_not_widen_the_others) {
    const LinearFit made = fit(white_noise(50, 1, 1));
    const FitErrors both = errors_of(made);
    const FitErrors one = find_fit_errors({&made.channel, 1}, {false, true}, no_pace());
    EXPECT_TRUE(std::isnan(one.errors[1]));
    EXPECT_FALSE(one.undetermined[1]);
    EXPECT_TRUE(std::isnan(one.correlation[3]));
    EXPECT_NEAR(one.errors[0] / both.errors[0], 1, 0.1);
    const FitErrors none = find_fit_errors({&made.channel, 1}, {true, true}, no_pace());
    EXPECT_TRUE(std::isnan(none.errors[0]));
    EXPECT_GT(none.channels[0].covariance.white, 0);
}

TEST(FitErrors, hardly_more_data_than_unknowns_leave_the_errors_open) {
    const LinearFit made = fit(white_noise(6, 1, 1));
    const FitErrors errors = errors_of(made);
    EXPECT_TRUE(errors.too_few_data);
    EXPECT_TRUE(std::isnan(errors.errors[0]));
    EXPECT_FALSE(errors_of(fit(white_noise(8, 1, 1))).too_few_data);
}

TEST(FitErrors, stations_that_are_many_but_of_one_geology_say_little) {
    const VectorXd distance = equal_spacing(300, 1);
    const LinearFit one_geology =
        fit(correlated_noise(distance, NoiseKind::gaussian, 5, 60, 2) + white_noise(300, 0.02, 3), 3, 1);
    const LinearFit white = fit(white_noise(300, 5, 2), 3, 1);
    const FitErrors few = errors_of(one_geology), many = errors_of(white);
    EXPECT_LT(few.channels[0].covariance.independent, 20);
    EXPECT_GT(few.errors[0], 1.5 * many.errors[0]);
    EXPECT_GT(few.quantile[0], many.quantile[0]);
}

TEST(FitErrors, a_trend_that_is_all_there_is_leaves_the_errors_open) {
    const VectorXd distance = equal_spacing(12, 10);
    const LinearFit made = fit(correlated_noise(distance, NoiseKind::exponential, 5, 4000, 2), 3, 1);
    const FitErrors errors = errors_of(made);
    EXPECT_EQ(errors.too_few_data, errors.channels[0].covariance.independent < 3);
}

/// Each of two channels knows one of two parameters.
TEST(FitErrors, channels_with_other_noise_do_not_blur_each_other) {
    LinearFit loud = fit(white_noise(100, 50, 1)), still = fit(white_noise(100, 0.1, 2));
    const FitErrors alone = find_fit_errors({&still.channel, 1}, {true, false}, no_pace());
    loud.channel.columns.col(1).setZero();
    still.channel.columns.col(0).setZero();
    still.channel.channel = channel_grav;
    loud.channel.sigma = 50;
    still.channel.sigma = 0.1;
    const std::vector<ChannelFit> channels{loud.channel, still.channel};
    const FitErrors errors = find_fit_errors(channels, {false, false}, no_pace());
    EXPECT_NEAR(errors.errors[1] / alone.errors[1], 1, 0.02);
    EXPECT_NEAR(errors.channels[0].covariance.white, 50, 10);
    EXPECT_NEAR(errors.channels[1].covariance.white, 0.1, 0.02);
}

TEST(FitErrors, a_stop_is_heard_between_blocks) {
    class Stop : public Pacer {
      public:
        void done(double) override {
            if (++calls == 2) throw Stopped();
        }
        int calls = 0;
    };
    LinearFit made = fit(white_noise(400, 1, 1));
    made.channel.columns = MatrixXd::Zero(400, 200);
    for (Index k = 0; k < 200; ++k) made.channel.columns(2 * k, k) = 1;
    Stop stop;
    EXPECT_THROW(find_fit_errors({&made.channel, 1}, std::vector<bool>(200, false), stop), Stopped);
    EXPECT_EQ(stop.calls, 2);
}

}  // namespace anomalis::inversion
