#include "inversion/least_squares_statistics.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <limits>

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// Directions in the space of unit columns that change the residuals less than this part of what the best
/// determined direction does count as undetermined.
constexpr double null_direction = 1e-3;
/// A parameter with more than this share (squared) of such directions is undetermined itself.
constexpr double null_share = 0.01;
/// A column must stand out this far from rounding.
constexpr double above_rounding = 8;

constexpr double no_number = std::numeric_limits<double>::quiet_NaN();

/// Covariance of the unit columns, and how far each parameter takes part in undetermined directions.
struct Directions {
    MatrixXd covariance;
    VectorXd null_part;
};

Directions directions_of(const MatrixXd& unit_columns) {
    const Index n = unit_columns.cols();
    const Eigen::SelfAdjointEigenSolver<MatrixXd> solver(unit_columns.transpose() * unit_columns);
    const VectorXd& values = solver.eigenvalues();
    const MatrixXd& vectors = solver.eigenvectors();
    const double least = null_direction * null_direction * values[n - 1];
    Directions found{MatrixXd::Zero(n, n), VectorXd::Zero(n)};
    VectorXd weights = VectorXd::Zero(n);
    for (Index s = 0; s < n; ++s) {
        if (values[s] <= least) {
            found.null_part += vectors.col(s).cwiseAbs2();
        } else {
            weights[s] = 1 / values[s];
        }
    }
    found.covariance = vectors * weights.asDiagonal() * vectors.transpose();
    return found;
}

}  // namespace

FitDescription describe_fit(const FitMatter& matter) {
    const std::size_t size = matter.held.size();
    FitDescription outcome{std::vector<double>(size, no_number), std::vector<double>(size * size, no_number),
                           std::vector<bool>(size, false)};
    const VectorXd norms = matter.columns.colwise().norm().transpose();
    std::vector<Index> used;
    for (std::size_t i = 0; i < size; ++i) {
        if (matter.held[i]) continue;
        outcome.undetermined[i] =
            norms[static_cast<Index>(i)] * matter.scale[i] <= above_rounding * matter.rounding;
        if (!outcome.undetermined[i]) used.push_back(static_cast<Index>(i));
    }
    if (used.empty()) return outcome;
    const Directions found =
        directions_of(matter.columns(Eigen::all, used) * norms(used).cwiseInverse().asDiagonal());
    const double variance = matter.freedom > 0 ? matter.sum_of_squares / matter.freedom : no_number;
    const auto place = [&](Index a) { return static_cast<std::size_t>(used[static_cast<std::size_t>(a)]); };
    const auto count = static_cast<Index>(used.size());
    for (Index a = 0; a < count; ++a) {
        const std::size_t i = place(a);
        if (found.null_part[a] > null_share) {
            outcome.undetermined[i] = true;
            continue;
        }
        const double own = found.covariance(a, a);
        outcome.errors[i] = std::sqrt(variance * own) / norms[static_cast<Index>(i)];
        outcome.undetermined[i] = outcome.errors[i] > matter.scale[i];
        for (Index b = 0; b < count; ++b) {
            if (found.null_part[b] > null_share) continue;
            outcome.correlation[i * size + place(b)] =
                a == b ? 1.0
                       : found.covariance(std::max(a, b), std::min(a, b)) /
                             std::sqrt(own * found.covariance(b, b));
        }
    }
    return outcome;
}

}  // namespace anomalis::inversion
