#include "inversion/least_squares_statistics.h"

#include <Eigen/Dense>
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
    const Eigen::JacobiSVD<MatrixXd> svd(unit_columns, Eigen::ComputeFullU | Eigen::ComputeFullV);
    const VectorXd& singular = svd.singularValues();
    const MatrixXd& v = svd.matrixV();
    Directions found{MatrixXd::Zero(n, n), VectorXd::Zero(n)};
    for (Index s = 0; s < n; ++s) {
        const double strength = s < singular.size() ? singular[s] : 0.0;
        if (strength <= null_direction * singular[0]) {
            found.null_part += v.col(s).cwiseAbs2();
        } else {
            found.covariance += v.col(s) * v.col(s).transpose() / (strength * strength);
        }
    }
    return found;
}

/// Marks flat columns and returns the parameters that are left, from 0.
std::vector<Index> sort_out(const FitMatter& matter, const VectorXd& norms, FitOutcome& outcome) {
    std::vector<Index> used;
    for (std::size_t i = 0; i < matter.parameters.size(); ++i) {
        if (outcome.at_limit[i]) continue;
        const double change = norms[static_cast<Index>(i)] * static_cast<double>(matter.differences[i]);
        outcome.undetermined[i] = change <= above_rounding * matter.rounding;
        if (!outcome.undetermined[i]) used.push_back(static_cast<Index>(i));
    }
    return used;
}

}  // namespace

void describe_fit(const FitMatter& matter, FitOutcome& outcome) {
    const std::size_t size = matter.parameters.size();
    outcome.undetermined.assign(size, false);
    outcome.errors.assign(size, no_number);
    outcome.correlation.assign(size * size, no_number);
    const Eigen::Map<const MatrixXd> triangle(matter.triangle.data(), static_cast<Index>(matter.rows),
                                              static_cast<Index>(size));
    const VectorXd norms = triangle.colwise().norm().transpose();
    const std::vector<Index> used = sort_out(matter, norms, outcome);
    if (used.empty()) return;
    const MatrixXd columns = triangle(Eigen::all, used) * norms(used).cwiseInverse().asDiagonal();
    const Directions found = directions_of(columns);

    const double freedom = static_cast<double>(matter.residual_count) - static_cast<double>(used.size());
    const double variance = freedom > 0 ? outcome.sum_of_squares / freedom : no_number;
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
        outcome.undetermined[i] = outcome.errors[i] > static_cast<double>(matter.parameters[i].scale);
        for (Index b = 0; b < count; ++b) {
            if (found.null_part[b] > null_share) continue;
            outcome.correlation[i * size + place(b)] =
                a == b ? 1.0 : found.covariance(a, b) / std::sqrt(own * found.covariance(b, b));
        }
    }
}

}  // namespace anomalis::inversion
