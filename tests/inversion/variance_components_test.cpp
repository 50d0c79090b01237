#include "inversion/variance_components.h"

#include <Eigen/Dense>
#include <cmath>
#include <gtest/gtest.h>

#include "core/pacer.h"
#include "inversion/fit_errors.h"
#include "inversion/noisy_line.h"

namespace anomalis::inversion {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

namespace {

/// A channel that sees three parameters as bells on the line, the third one `strength` times.
ChannelFit channel_with(const VectorXd& noise, double strength, std::int32_t code) {
    ChannelFit channel;
    channel.channel = code;
    channel.distance = equal_spacing(noise.size(), 10);
    channel.columns.resize(noise.size(), 3);
    const double extent = channel.distance.maxCoeff();
    for (Index i = 0; i < noise.size(); ++i)
        for (Index k = 0; k < 3; ++k) {
            const double t = (channel.distance[i] - extent * static_cast<double>(k + 1) / 4) / 150;
            channel.columns(i, k) = (k == 2 ? strength : 1) / (1 + t * t);
        }
    channel.regional = MatrixXd::Ones(noise.size(), 1);
    channel.residual = noise;
    return channel;
}

/// Fits the channels by their sigmas: what was noise becomes residual.
void fit(std::vector<ChannelFit>& channels, const std::vector<VectorXd>& noise) {
    MatrixXd normal = MatrixXd::Zero(3, 3);
    VectorXd right = VectorXd::Zero(3);
    std::vector<MatrixXd> columns;
    for (std::size_t c = 0; c < channels.size(); ++c) {
        const double weight = 1 / (channels[c].sigma * channels[c].sigma);
        columns.push_back(channels[c].columns.rowwise() - channels[c].columns.colwise().mean());
        normal += weight * columns[c].transpose() * columns[c];
        right += weight * columns[c].transpose() * noise[c];
    }
    const VectorXd found = normal.ldlt().solve(right);
    for (std::size_t c = 0; c < channels.size(); ++c) {
        channels[c].residual = noise[c] - channels[c].columns * found;
        channels[c].residual.array() -= channels[c].residual.mean();
    }
}

/// Weighs and fits until the sigmas stand; how often that was.
int weigh(std::vector<ChannelFit>& channels, const std::vector<VectorXd>& noise) {
    for (int turn = 1; turn <= 10; ++turn) {
        fit(channels, noise);
        const std::vector<double> next = component_sigmas(channels);
        const bool stand = sigmas_stand(channels, next);
        for (std::size_t c = 0; c < channels.size(); ++c) channels[c].sigma = next[c];
        if (stand) return turn;
    }
    return 11;
}

FitErrors errors_of(std::span<const ChannelFit> channels) {
    return find_fit_errors(channels, {false, false, false}, no_pace());
}

}  // namespace

TEST(VarianceComponents, both_channels_get_their_own_noise) {
    const std::vector<VectorXd> noise{white_noise(200, 4, 1), white_noise(120, 0.02, 2)};
    std::vector<ChannelFit> channels{channel_with(noise[0], 1, channel_mag),
                                     channel_with(noise[1], 0.01, channel_grav)};
    EXPECT_LE(weigh(channels, noise), 4);
    EXPECT_NEAR(channels[0].sigma, 4, 0.5);
    EXPECT_NEAR(channels[1].sigma, 0.02, 0.003);
}

TEST(VarianceComponents, a_second_channel_does_not_blur_what_the_first_knows) {
    for (const double loud : {0.01, 1.0, 100.0}) {
        const VectorXd distance = equal_spacing(200, 10);
        const std::vector<VectorXd> noise{
            correlated_noise(distance, NoiseKind::exponential, loud, 150, 3) + white_noise(200, loud / 10, 4),
            white_noise(200, 0.02, 5)};
        std::vector<ChannelFit> channels{channel_with(noise[0], 1, channel_mag),
                                         channel_with(noise[1], 1, channel_grav)};
        weigh(channels, noise);
        const FitErrors joint = errors_of(channels);
        std::vector<ChannelFit> alone{channels[1]};
        fit(alone, {noise[1]});
        const FitErrors gravity = errors_of(alone);
        for (std::size_t i = 0; i < 3; ++i) EXPECT_LE(joint.errors[i], 1.02 * gravity.errors[i]) << loud << i;
    }
}

TEST(VarianceComponents, correlated_residuals_count_as_fewer_data) {
    const VectorXd distance = equal_spacing(300, 10);
    const VectorXd noise =
        correlated_noise(distance, NoiseKind::exponential, 5, 100, 3) + white_noise(300, 1, 4);
    std::vector<ChannelFit> channels{channel_with(noise, 1, channel_mag)};
    fit(channels, {noise});
    const double rms = std::sqrt(channels[0].residual.squaredNorm() / 300);
    EXPECT_GT(component_sigmas(channels)[0], 2 * rms);
}

TEST(VarianceComponents, a_keyed_sigma_stays_and_so_does_one_without_residuals) {
    std::vector<ChannelFit> channels{channel_with(white_noise(100, 4, 1), 1, channel_mag),
                                     channel_with(VectorXd::Zero(100), 1, channel_grav)};
    channels[0].sigma = 0.5;
    channels[0].sigma_given = true;
    channels[1].sigma = 0.3;
    EXPECT_EQ(component_sigmas(channels), (std::vector<double>{0.5, 0.3}));
}

TEST(VarianceComponents, weights_stand_when_all_change_by_one_factor) {
    std::vector<ChannelFit> channels(2);
    channels[0].sigma = 1;
    channels[1].sigma = 0.1;
    EXPECT_TRUE(sigmas_stand(channels, std::vector<double>{3, 0.301}));
    EXPECT_FALSE(sigmas_stand(channels, std::vector<double>{3, 0.31}));
    EXPECT_TRUE(sigmas_stand({}, {}));
}

}  // namespace anomalis::inversion
