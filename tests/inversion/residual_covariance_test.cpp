#include "inversion/residual_covariance.h"

#include <Eigen/Dense>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "inversion/noisy_line.h"

namespace anomalis::inversion {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

namespace {

/// Two bells, their slopes by place and width, and a slope across the line.
MatrixXd body_columns(const VectorXd& distance) {
    MatrixXd columns(distance.size(), 8);
    const double extent = distance.maxCoeff();
    for (Index i = 0; i < distance.size(); ++i) {
        for (Index body = 0; body < 2; ++body) {
            const double t = (distance[i] - extent * (body == 0 ? 0.35 : 0.7)) / 150;
            const double bell = 1 / (1 + t * t);
            columns(i, 3 * body) = bell;
            columns(i, 3 * body + 1) = t * bell * bell;
            columns(i, 3 * body + 2) = t * t * bell * bell;
        }
        columns(i, 6) = 1;
        columns(i, 7) = distance[i] / extent;
    }
    return columns;
}

VectorXd left_by(const MatrixXd& columns, const VectorXd& values) {
    return values - columns * columns.colPivHouseholderQr().solve(values);
}

MatrixXd whole(const ResidualCovariance& covariance, const VectorXd& distance) {
    return covariance_times(covariance, distance, MatrixXd::Identity(distance.size(), distance.size()));
}

}  // namespace

TEST(ResidualCovariance, white_noise_is_called_correlated_seldom) {
    const VectorXd distance = equal_spacing(200, 20);
    const MatrixXd columns = body_columns(distance);
    int correlated = 0;
    double sum = 0;
    for (unsigned seed = 1; seed <= 30; ++seed) {
        const ResidualCovariance found =
            find_residual_covariance(distance, left_by(columns, white_noise(200, 2, seed)), columns);
        correlated += found.correlated > 0;
        sum += found.white * found.white;
    }
    EXPECT_LE(correlated, 1);
    EXPECT_NEAR(sum / 30, 4, 0.25);
}

TEST(ResidualCovariance, exponential_noise_is_found_behind_the_columns) {
    const VectorXd distance = equal_spacing(400, 10);
    const MatrixXd columns = body_columns(distance);
    double variance = 0, length = 0;
    for (unsigned seed = 1; seed <= 8; ++seed) {
        const VectorXd noise = correlated_noise(distance, NoiseKind::exponential, 5, 100, seed) +
                               white_noise(400, 0.5, seed + 1000);
        const ResidualCovariance found = find_residual_covariance(distance, left_by(columns, noise), columns);
        ASSERT_GT(found.correlated, 0) << seed;
        variance += found.correlated * found.correlated / 8;
        length += std::log(found.length()) / 8;
        EXPECT_LT(found.independent, 120) << seed;
    }
    EXPECT_NEAR(variance, 25, 12);
    EXPECT_NEAR(std::exp(length), 100, 35);
}

TEST(ResidualCovariance, gaussian_noise_is_taken_by_the_smoother_kinds) {
    const VectorXd distance = equal_spacing(400, 10);
    const MatrixXd columns = body_columns(distance);
    double variance = 0;
    for (unsigned seed = 1; seed <= 5; ++seed) {
        const VectorXd noise = correlated_noise(distance, NoiseKind::gaussian, 5, 100, seed) +
                               white_noise(400, 0.5, seed + 1000);
        const ResidualCovariance found = find_residual_covariance(distance, left_by(columns, noise), columns);
        EXPECT_GE(found.smoothness, 1) << seed;
        EXPECT_NEAR(found.white, 0.5, 0.15) << seed;
        variance += found.correlated * found.correlated / 5;
    }
    EXPECT_NEAR(std::sqrt(variance), 5, 2);
}

TEST(ResidualCovariance, the_order_of_the_stations_does_not_matter) {
    const VectorXd distance = equal_spacing(150, 10);
    const VectorXd noise =
        correlated_noise(distance, NoiseKind::exponential, 5, 60, 3) + white_noise(150, 1, 4);
    const MatrixXd columns = MatrixXd::Ones(150, 1);
    const ResidualCovariance due = find_residual_covariance(distance, noise, columns);
    const ResidualCovariance back = find_residual_covariance(distance.reverse(), noise.reverse(), columns);
    EXPECT_NEAR(back.white, due.white, 1e-9);
    EXPECT_NEAR(back.correlated, due.correlated, 1e-9);
    const VectorXd reversed = distance.reverse();
    EXPECT_LT((whole(due, reversed) - whole(due, distance).reverse()).norm(), 1e-9);
}

TEST(ResidualCovariance, products_are_those_of_the_written_out_matrix) {
    VectorXd distance(5);
    distance << 30, 0, 12, 12, 55;
    for (int smoothness = 0; smoothness <= 2; ++smoothness) {
        ResidualCovariance covariance;
        covariance.white = 2;
        covariance.correlated = 3;
        covariance.smoothness = smoothness;
        covariance.rate = 0.05;
        MatrixXd due(5, 5);
        for (Index i = 0; i < 5; ++i)
            for (Index j = 0; j < 5; ++j) {
                const double t = 0.05 * std::abs(distance[i] - distance[j]);
                const double polynomial = smoothness == 0 ? 1 : smoothness == 1 ? 1 + t : 1 + t + t * t / 3;
                due(i, j) = 9 * polynomial * std::exp(-t) + (i == j ? 4 : 0);
            }
        EXPECT_LT((whole(covariance, distance) - due).norm(), 1e-12) << smoothness;
    }
}

/// The likelihood of the filter against the textbook's, over lengths: the found point is its summit.
TEST(ResidualCovariance, the_found_point_is_the_summit_of_the_written_out_likelihood) {
    VectorXd distance = equal_spacing(80, 10);
    for (Index i = 0; i < 80; ++i) distance[i] += 3 * std::sin(static_cast<double>(i));
    MatrixXd columns(80, 2);
    columns << VectorXd::Ones(80), distance;
    const VectorXd noise =
        correlated_noise(distance, NoiseKind::exponential, 5, 80, 7) + white_noise(80, 1, 8);
    const ResidualCovariance found = find_residual_covariance(distance, noise, columns);
    ASSERT_GT(found.correlated, 0);
    const auto likelihood = [&](double white, double correlated, double rate) {
        ResidualCovariance trial = found;
        trial.white *= white;
        trial.correlated *= correlated;
        trial.rate *= rate;
        const MatrixXd c = whole(trial, distance);
        const Eigen::LLT<MatrixXd> triangle(c);
        const MatrixXd inverse_columns = triangle.solve(columns);
        const MatrixXd normal = columns.transpose() * inverse_columns;
        const VectorXd inverse_noise = triangle.solve(noise);
        const VectorXd weighted = columns.transpose() * inverse_noise;
        return -triangle.matrixLLT().diagonal().array().log().sum() - 0.5 * std::log(normal.determinant()) -
               0.5 * (noise.dot(inverse_noise) - weighted.dot(normal.ldlt().solve(weighted)));
    };
    const double summit = likelihood(1, 1, 1);
    for (const double factor : {0.8, 1.25}) {
        EXPECT_LT(likelihood(factor, 1, 1), summit + 0.02) << factor;
        EXPECT_LT(likelihood(1, factor, 1), summit + 0.02) << factor;
        EXPECT_LT(likelihood(1, 1, factor), summit + 0.02) << factor;
        EXPECT_LT(likelihood(factor, factor, 1), summit - 0.5) << factor;
    }
}

TEST(ResidualCovariance, lines_of_any_number_of_stations_are_answered) {
    for (const Index count : {1, 2, 3, 7, 12}) {
        const ResidualCovariance found = find_residual_covariance(
            equal_spacing(count, 10), white_noise(count, 1, 5), MatrixXd::Ones(count, 2));
        EXPECT_EQ(found.correlated, 0) << count;
        EXPECT_TRUE(std::isfinite(found.white)) << count;
    }
    const Index many = 100000;
    const VectorXd distance = equal_spacing(many, 1);
    const VectorXd noise =
        correlated_noise(distance, NoiseKind::exponential, 5, 2000, 1) + white_noise(many, 2, 2);
    const ResidualCovariance found = find_residual_covariance(distance, noise, MatrixXd::Ones(many, 1));
    EXPECT_NEAR(found.correlated, 5, 1.5);
    EXPECT_NEAR(found.length() / 2000, 1, 0.6);
}

TEST(ResidualCovariance, residuals_of_0_and_stations_in_one_place_are_answered) {
    const VectorXd distance = equal_spacing(50, 10);
    EXPECT_EQ(find_residual_covariance(distance, VectorXd::Zero(50), MatrixXd::Ones(50, 1)).correlated, 0);
    const ResidualCovariance found =
        find_residual_covariance(VectorXd::Zero(50), white_noise(50, 1, 1), MatrixXd::Ones(50, 1));
    EXPECT_EQ(found.correlated, 0);
    EXPECT_NEAR(found.white, 1, 0.4);
}

}  // namespace anomalis::inversion
