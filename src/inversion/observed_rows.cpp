#include "inversion/observed_rows.h"

#include <algorithm>

#include "core/inversion_state.h"
#include "model/regional.h"

namespace anomalis::inversion {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// Made orthonormal one after the other, twice for the digits.
MatrixXd polynomials(const VectorXd& distance, std::int32_t degree) {
    const Index rows = distance.size();
    MatrixXd basis(rows, std::min<Index>(degree + 1, rows));
    const double centre = (distance.minCoeff() + distance.maxCoeff()) / 2;
    const double half = std::max((distance.maxCoeff() - distance.minCoeff()) / 2, 1e-9);
    const VectorXd t = (distance.array() - centre) / half;
    Index kept = 0;
    for (Index k = 0; k < basis.cols(); ++k) {
        VectorXd next = kept == 0 ? VectorXd::Ones(rows).eval() : t.cwiseProduct(basis.col(kept - 1)).eval();
        const double before = next.norm();
        for (int pass = 0; pass < 2; ++pass)
            next -= basis.leftCols(kept) * (basis.leftCols(kept).transpose() * next).eval();
        constexpr double least_part = 1e-9;  // stations that stand at fewer places than the degree asks for
        if (!(next.norm() > least_part * before)) break;
        basis.col(kept++) = next.normalized();
    }
    return basis.leftCols(kept);
}

void project_off(const MatrixXd& basis, Eigen::Ref<MatrixXd> columns) {
    if (basis.cols() == 0) return;
    columns -= basis * (basis.transpose() * columns).eval();
}

std::int32_t solved_degree(const Workspace& workspace, std::int32_t channel, std::int32_t target) {
    if (target != target_data) return no_regional;
    if (model::regional_in_force(workspace, channel)) return workspace.channel(channel).regional_degree;
    return workspace.channel(channel).float_base == 1 ? 0 : no_regional;
}

VectorXd observed_rows(const Workspace& workspace, std::int32_t channel, std::int32_t target,
                       std::span<const std::int32_t> stations) {
    const Channel& own = workspace.channel(channel);
    const bool smoothed = target == target_data && model::regional_in_force(workspace, channel);
    const int number = target == target_gradient ? workspace.gradient_row_in_use()
                       : smoothed                ? workspace.smoothed_row
                                                 : workspace.residual_row;
    const auto row = own.data.row(number, stage_observed);
    VectorXd rows(static_cast<Index>(stations.size()));
    const double base = smoothed ? static_cast<double>(own.base) : 0.0;
    Index i = 0;
    for (const std::int32_t station : stations)
        rows[i++] = static_cast<double>(row[static_cast<std::size_t>(station - 1)]) - base;
    return rows;
}

VectorXd station_distances(const Workspace& workspace, std::span<const std::int32_t> stations) {
    VectorXd distance(static_cast<Index>(stations.size()));
    Index i = 0;
    for (const std::int32_t station : stations) distance[i++] = workspace.distances[station];
    return distance;
}

double spacing_in_stretches(const VectorXd& distance, std::span<const std::size_t> starts) {
    double sum = 0, count = 0;
    for (std::size_t i = 1; i < static_cast<std::size_t>(distance.size()); ++i) {
        if (std::ranges::binary_search(starts, i)) continue;
        sum += distance[static_cast<Index>(i)] - distance[static_cast<Index>(i) - 1];
        ++count;
    }
    return count > 0 ? sum / count : 0;
}

}  // namespace anomalis::inversion
