#include "inversion/fit_errors.h"

#include <Eigen/Core>
#include <algorithm>
#include <cmath>
#include <limits>

#include "inversion/dense_steps.h"
#include "inversion/normal_matrix.h"
#include "inversion/orthonormal_basis.h"
#include "inversion/student.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double no_number = std::numeric_limits<double>::quiet_NaN();
/// What of a column the regional leaves, as a part of it, when it is all the regional's.
constexpr double flat = 1e-6;
/// An eigenvalue of the normal matrix of unit columns below this part of the largest is rounding.
constexpr double fine_null_eigenvalue = 1e-13;
/// The same of columns that are coarse.
constexpr double coarse_null_eigenvalue = 1e-6;
/// A parameter with more than this share (squared) of such directions is undetermined itself.
constexpr double null_share = 0.01;
/// So many rows more than unknowns must there be, and so many independent data in all. How little a handful
/// of those says of the noise is in the intervals already.
constexpr double least_spare = 3;
/// Of more parameters nobody follows profiles.
constexpr Index most_profiled = 60;
/// Beside the largest eigenvalue of the normal matrix of unit columns.
constexpr double weak_direction = 1e-3;

/// One channel without its regional, in units of its sigma.
struct WeightedColumns {
    MatrixXd columns;  ///< rows by used parameters, each divided by the scale of the parameter
    double sigma = 1;
    double regional_count = 0;
    MatrixXd normal;  ///< its lower half
};

class Errors {
  public:
    Errors(std::span<const ChannelFit> channels, const std::vector<bool>& held, Pacer& pacer)
        : channels_(channels), pacer_(pacer), size_(held.size()) {
        result_.errors.assign(size_, no_number);
        result_.correlation.assign(size_ * size_, no_number);
        result_.undetermined.assign(size_, false);
        result_.quantile.assign(size_, student_quantile(1e9));
        result_.unit_errors.assign(size_, no_number);
        result_.growth.assign(size_, no_number);
        const auto count = static_cast<Index>(size_);
        result_.following = MatrixXd::Zero(count, count);
        weigh(held);
        invert();
        describe_channels();
        propagate();
    }

    FitErrors result() && { return std::move(result_); }

  private:
    void weigh(const std::vector<bool>& held);
    void invert();
    MatrixXd inverse_normal(const MatrixXd& normal);
    MatrixXd without_null_directions(const MatrixXd& normal);
    void describe_channels();
    bool too_few_data() const;
    void propagate();
    void propagate_channel(std::size_t c, MatrixXd& covariance, MatrixXd& slopes) const;
    void fill(const MatrixXd& covariance, const MatrixXd& slopes);
    MatrixXd strong_inverse() const;
    void find_following();
    VectorXd strong_growth() const;
    double null_eigenvalue() const {
        return std::ranges::any_of(channels_, &ChannelFit::coarse) ? coarse_null_eigenvalue
                                                                   : fine_null_eigenvalue;
    }
    std::size_t place(Index a) const { return static_cast<std::size_t>(used_[static_cast<std::size_t>(a)]); }
    Index count() const { return static_cast<Index>(used_.size()); }

    std::span<const ChannelFit> channels_;
    Pacer& pacer_;
    std::size_t size_;
    std::vector<Index> used_;  ///< parameters, from 0
    VectorXd scale_;           ///< of the used parameters: change that the weighted residuals feel as 1
    std::vector<WeightedColumns> weighted_;
    MatrixXd normal_, inverse_;  ///< of the scaled parameters
    FitErrors result_;
};

/// Takes the regional off the columns and keeps those that it leaves something of.
void Errors::weigh(const std::vector<bool>& held) {
    VectorXd left = VectorXd::Zero(static_cast<Index>(size_)), whole = left;
    for (const ChannelFit& channel : channels_) {
        WeightedColumns weighted{channel.columns, channel.sigma, 0, {}};
        if (channel.regional.cols() > 0) {
            const MatrixXd basis = orthonormal_basis(channel.regional);
            weighted.regional_count = static_cast<double>(basis.cols());
            weighted.columns -= basis * (basis.transpose() * channel.columns);
        }
        weighted.columns /= channel.sigma;
        left += weighted.columns.colwise().squaredNorm().transpose();
        whole += channel.columns.colwise().squaredNorm().transpose() / (channel.sigma * channel.sigma);
        weighted_.push_back(std::move(weighted));
    }
    for (std::size_t i = 0; i < size_; ++i) {
        if (held[i]) continue;
        const auto k = static_cast<Index>(i);
        result_.undetermined[i] = !(left[k] > flat * flat * whole[k]) || !std::isfinite(whole[k]);
        if (!result_.undetermined[i]) used_.push_back(k);
    }
    scale_ = left(used_).cwiseSqrt();
    for (WeightedColumns& weighted : weighted_)
        weighted.columns = (weighted.columns(Eigen::all, used_) * scale_.cwiseInverse().asDiagonal()).eval();
}

void Errors::invert() {
    normal_ = MatrixXd::Zero(count(), count());
    for (WeightedColumns& weighted : weighted_) {
        weighted.normal = normal_matrix(weighted.columns, pacer_);
        normal_ += weighted.normal;
    }
    inverse_ = inverse_normal(normal_);
    for (Index a = 0; a < count(); ++a) {
        const double own = inverse_(a, a);
        if (result_.undetermined[place(a)] || !(own > 0)) continue;
        result_.unit_errors[place(a)] = std::sqrt(own) / scale_[a];
    }
    find_following();
}

/// By Cholesky's factors, unless there is a direction that only the eigenvalues tell from rounding.
MatrixXd Errors::inverse_normal(const MatrixXd& normal) {
    const auto cube = std::pow(static_cast<double>(count()), 3);
    const Eigen::LLT<MatrixXd> triangle = triangle_of(normal);
    pacer_.done(cube / 6);
    if (triangle.info() != Eigen::Success || !(triangle.rcond() > 10 * null_eigenvalue()))
        return without_null_directions(normal);
    return inverse_by(triangle, pacer_);
}

MatrixXd Errors::without_null_directions(const MatrixXd& normal) {
    const SymmetricAxes axes = axes_of(normal, pacer_);
    const double least = null_eigenvalue() * axes.eigenvalues().tail(1)[0];
    VectorXd strength = VectorXd::Zero(count()), null_part = VectorXd::Zero(count());
    for (Index s = 0; s < count(); ++s) {
        if (axes.eigenvalues()[s] > least) {
            strength[s] = 1 / axes.eigenvalues()[s];
        } else {
            null_part += axes.eigenvectors().col(s).cwiseAbs2();
        }
    }
    for (Index a = 0; a < count(); ++a)
        if (null_part[a] > null_share) result_.undetermined[place(a)] = true;
    const MatrixXd weighted = axes.eigenvectors() * strength.asDiagonal();
    return product_of(weighted, axes.eigenvectors().transpose(), pacer_);
}

void Errors::describe_channels() {
    for (std::size_t c = 0; c < channels_.size(); ++c) {
        const ChannelFit& channel = channels_[c];
        const WeightedColumns& weighted = weighted_[c];
        ChannelErrors told;
        const auto rows = static_cast<double>(channel.residual.size());
        const double squares = channel.residual.squaredNorm();
        told.rms = rows > 0 ? std::sqrt(squares / rows) : 0;
        const double taken = 2 * weighted.normal.cwiseProduct(inverse_).sum() -
                             weighted.normal.diagonal().dot(inverse_.diagonal());
        const double freedom = rows - weighted.regional_count - taken;
        const double noise = channel.noise > 0 ? channel.noise : channel.sigma;
        told.chi_square = freedom >= 1 && noise > 0 ? squares / (noise * noise) / freedom : no_number;
        MatrixXd columns(channel.residual.size(), count() + channel.regional.cols());
        columns << weighted.columns, channel.regional;
        told.covariance =
            find_residual_covariance(channel.distance, channel.residual, columns, pacer_, channel.spacing);
        result_.channels.push_back(told);
    }
}

bool Errors::too_few_data() const {
    double spare = -static_cast<double>(count()), independent = 0;
    for (std::size_t c = 0; c < channels_.size(); ++c) {
        spare += static_cast<double>(channels_[c].residual.size()) - weighted_[c].regional_count;
        independent += result_.channels[c].covariance.independent;
    }
    return spare < least_spare || independent < least_spare;
}

/// Adds what the noise of a channel does to the estimates, to the lower half; the slopes of their variances
/// (rows) by the logarithms of the channel's two variances and rate.
void Errors::propagate_channel(std::size_t c, MatrixXd& covariance, MatrixXd& slopes) const {
    const ResidualCovariance& noise = result_.channels[c].covariance;
    const double white = noise.white * noise.white / (weighted_[c].sigma * weighted_[c].sigma);
    const auto at = static_cast<Index>(3 * c);
    if (channels_.size() == 1 && noise.correlated == 0) {
        covariance = white * inverse_;
        slopes.col(0) = covariance.diagonal();
        return;
    }
    const MatrixXd estimator = product_of(weighted_[c].columns, inverse_, pacer_);
    const double unit = 1 / (weighted_[c].sigma * weighted_[c].sigma);
    const auto some_estimates = [&](Index from, Index columns) {
        const auto some = estimator.middleCols(from, columns);
        const MatrixXd reached = unit * covariance_times(noise, channels_[c].distance, some);
        const Index below = count() - from;
        covariance.block(from, from, below, columns).noalias() +=
            estimator.rightCols(below).transpose() * reached;
        const VectorXd whole = some.cwiseProduct(reached).colwise().sum().transpose();
        const VectorXd of_white = white * some.colwise().squaredNorm().transpose();
        slopes.block(from, at, some.cols(), 1) = of_white;
        slopes.block(from, at + 1, some.cols(), 1) = whole - of_white;
        if (noise.correlated > 0) {
            constexpr double h = 0.1;
            ResidualCovariance faster = noise;
            faster.rate *= std::exp(h);
            const MatrixXd other = unit * covariance_times(faster, channels_[c].distance, some);
            slopes.block(from, at + 2, some.cols(), 1) =
                (some.cwiseProduct(other).colwise().sum().transpose() - whole) / h;
        }
    };
    constexpr double units_a_value = 0.2, others = 200;
    const double units =
        units_a_value * static_cast<double>(estimator.rows()) * (static_cast<double>(count()) + others);
    for_column_blocks(count(), units, pacer_, some_estimates);
}

void Errors::propagate() {
    result_.too_few_data = too_few_data();
    if (result_.too_few_data) return;
    MatrixXd covariance = MatrixXd::Zero(count(), count());
    MatrixXd slopes = MatrixXd::Zero(count(), static_cast<Index>(3 * channels_.size()));
    for (std::size_t c = 0; c < channels_.size(); ++c) propagate_channel(c, covariance, slopes);
    fill(covariance.selfadjointView<Eigen::Lower>(), slopes);
}

/// The inverse of the normal matrix on its strong directions; empty when there is no weak one.
MatrixXd Errors::strong_inverse() const {
    if (count() == 0 || count() > most_profiled) return {};
    const SymmetricAxes axes = axes_of(normal_, pacer_);
    const double least = weak_direction * axes.eigenvalues().tail(1)[0];
    if (axes.eigenvalues()[0] > least) return {};
    const VectorXd strength =
        (axes.eigenvalues().array() > least).select(axes.eigenvalues().cwiseInverse(), 0);
    return axes.eigenvectors() * strength.asDiagonal() * axes.eigenvectors().transpose();
}

/// A weak direction (width against susceptibility of a thin body) holds where the fit stands and not far from
/// it, so nothing is expected to follow along it.
void Errors::find_following() {
    const MatrixXd strong = strong_inverse();
    const MatrixXd& inverse = strong.size() > 0 ? strong : inverse_;
    for (Index a = 0; a < count(); ++a) {
        if (!(inverse(a, a) > 0)) continue;
        for (Index b = 0; b < count(); ++b)
            result_.following(static_cast<Index>(place(b)), static_cast<Index>(place(a))) =
                inverse(b, a) / inverse(a, a) * scale_[a] / scale_[b];
    }
}

/// The error over the unit error of each parameter as the strong directions alone have it. Where a weak
/// direction rules a parameter, its noise may be far below what the parameter meets further away. Empty when
/// there is no weak direction, or the noise is all white.
VectorXd Errors::strong_growth() const {
    const bool white = channels_.size() == 1 && result_.channels[0].covariance.correlated == 0;
    if (white) return {};
    const MatrixXd inverse = strong_inverse();
    if (inverse.size() == 0) return {};
    VectorXd variance = VectorXd::Zero(count());
    for (std::size_t c = 0; c < channels_.size(); ++c) {
        const MatrixXd estimator = weighted_[c].columns * inverse / weighted_[c].sigma;
        variance += estimator
                        .cwiseProduct(covariance_times(result_.channels[c].covariance, channels_[c].distance,
                                                       estimator))
                        .colwise()
                        .sum()
                        .transpose();
    }
    return (variance.array() / inverse.diagonal().array().max(1e-300)).sqrt();
}

void Errors::fill(const MatrixXd& covariance, const MatrixXd& slopes) {
    const VectorXd strong = strong_growth();
    for (Index a = 0; a < count(); ++a) {
        const std::size_t i = place(a);
        const double own = covariance(a, a);
        if (result_.undetermined[i] || !(own >= 0)) continue;
        result_.errors[i] = std::sqrt(own) / scale_[a];
        double spread = 0;  // variance of the logarithm of the variance
        for (std::size_t c = 0; c < channels_.size(); ++c) {
            const Eigen::Vector3d slope = slopes.block<1, 3>(a, static_cast<Index>(3 * c)).transpose() / own;
            spread += slope.dot(result_.channels[c].covariance.uncertainty * slope);
        }
        if (spread > 0) result_.quantile[i] = student_quantile(std::max(2 / spread, 1.0));
        result_.growth[i] = result_.errors[i] / result_.unit_errors[i];
        if (strong.size() > 0) result_.growth[i] = std::max(result_.growth[i], strong[a]);
        result_.growth[i] *= result_.quantile[i];
        for (Index b = 0; b < count(); ++b) {
            if (result_.undetermined[place(b)]) continue;
            result_.correlation[i * size_ + place(b)] =
                a == b ? 1 : std::clamp(covariance(a, b) / std::sqrt(own * covariance(b, b)), -1.0, 1.0);
        }
    }
}

}  // namespace

FitErrors find_fit_errors(std::span<const ChannelFit> channels, const std::vector<bool>& held, Pacer& pacer) {
    return Errors(channels, held, pacer).result();
}

}  // namespace anomalis::inversion
