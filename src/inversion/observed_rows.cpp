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

std::int32_t solved_degree(const Workspace& workspace, std::int32_t channel, std::int32_t target) {
    if (target != target_data) return no_regional;
    if (model::regional_in_force(workspace, channel)) return workspace.channel(channel).regional_degree;
    return workspace.channel(channel).float_base == 1 ? 0 : no_regional;
}

VectorXd observed_rows(const Workspace& workspace, std::int32_t channel, std::int32_t target) {
    const Channel& own = workspace.channel(channel);
    const auto first = static_cast<std::size_t>(workspace.first_station - 1);
    const auto count = static_cast<std::size_t>(workspace.last_station - workspace.first_station) + 1;
    const bool smoothed = target == target_data && model::regional_in_force(workspace, channel);
    const int number = target == target_gradient ? workspace.gradient_row_in_use()
                       : smoothed                ? workspace.smoothed_row
                                                 : workspace.residual_row;
    const auto row = own.data.row(number, stage_observed).subspan(first, count);
    VectorXd rows(static_cast<Index>(count));
    const double base = smoothed ? static_cast<double>(own.base) : 0.0;
    for (std::size_t i = 0; i < count; ++i) rows[static_cast<Index>(i)] = static_cast<double>(row[i]) - base;
    return rows;
}

VectorXd window_distances(const Workspace& workspace) {
    const auto count =
        static_cast<Index>(static_cast<std::size_t>(workspace.last_station - workspace.first_station) + 1);
    return Eigen::Map<const VectorXd>(workspace.distances.span().data() + workspace.first_station - 1, count);
}

}  // namespace anomalis::inversion
