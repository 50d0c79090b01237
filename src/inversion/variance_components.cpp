#include "inversion/variance_components.h"

#include <algorithm>
#include <cmath>

#include "inversion/orthonormal_basis.h"
#include "inversion/residual_covariance.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;

constexpr double same_weight = 1.02;

double component_sigma(const ChannelFit& channel) {
    MatrixXd columns(channel.residual.size(), channel.columns.cols() + channel.regional.cols());
    columns << channel.columns, channel.regional;
    const ResidualCovariance noise =
        find_residual_covariance(channel.distance, channel.residual, columns, no_pace(), channel.spacing);
    if (noise.correlated == 0) return noise.white;
    const MatrixXd seen_by = orthonormal_basis_of_units(channel.columns);
    if (seen_by.cols() == 0) return noise.white;
    const double variance = seen_by.cwiseProduct(covariance_times(noise, channel.distance, seen_by)).sum() /
                            static_cast<double>(seen_by.cols());
    return std::sqrt(variance);
}

}  // namespace

std::vector<double> component_sigmas(std::span<const ChannelFit> channels) {
    std::vector<double> sigmas;
    for (const ChannelFit& channel : channels) {
        const double sigma = channel.sigma_given ? channel.sigma : component_sigma(channel);
        sigmas.push_back(sigma > 0 && std::isfinite(sigma) ? sigma : channel.sigma);
    }
    return sigmas;
}

bool sigmas_stand(std::span<const ChannelFit> channels, std::span<const double> next) {
    if (channels.empty()) return true;
    double least = next[0] / channels[0].sigma, most = least;
    for (std::size_t c = 1; c < channels.size(); ++c) {
        least = std::min(least, next[c] / channels[c].sigma);
        most = std::max(most, next[c] / channels[c].sigma);
    }
    return most <= same_weight * least;
}

}  // namespace anomalis::inversion
