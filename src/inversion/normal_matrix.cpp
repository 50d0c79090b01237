#include "inversion/normal_matrix.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/shared_pieces.h"
#include "inversion/normal_kernel.h"

namespace anomalis::inversion {

namespace {

/// Columns of a panel: two of them stay in the second memory of a core, a block of rows at a time.
constexpr std::size_t panel_columns = 64;
constexpr double units_a_product = 0.1;

/// The pairs of panels on the diagonal of the normal matrix and below it.
std::vector<std::pair<ColumnPanel, ColumnPanel>> panel_pairs(std::size_t count) {
    const auto panel = [&](std::size_t at) { return ColumnPanel{at, std::min(at + panel_columns, count)}; };
    std::vector<std::pair<ColumnPanel, ColumnPanel>> pairs;
    for (std::size_t across = 0; across < count; across += panel_columns)
        for (std::size_t down = across; down < count; down += panel_columns)
            pairs.emplace_back(panel(down), panel(across));
    return pairs;
}

}  // namespace

Eigen::MatrixXd normal_matrix(const Eigen::MatrixXd& columns, Pacer& pacer, int threads) {
    const Eigen::Index count = columns.cols();
    Eigen::MatrixXd normal = Eigen::MatrixXd::Zero(count, count);
    const TallMatrix matrix{columns.data(), static_cast<std::size_t>(columns.rows()),
                            static_cast<std::size_t>(columns.rows())};
    const auto pairs = panel_pairs(static_cast<std::size_t>(count));
    const auto units = [&](const std::pair<ColumnPanel, ColumnPanel>& pair) {
        return units_a_product * static_cast<double>(matrix.rows * (pair.first.last - pair.first.first) *
                                                     (pair.second.last - pair.second.first));
    };
    double all = 0;
    for (const auto& pair : pairs) all += units(pair);
    const auto products = column_products_at(vector::widest_vector_level());
    for_each_piece(pairs.size(), worker_count(all, pairs.size(), threads), pacer,
                   [&](PieceWorker& worker, std::size_t block) {
                       const auto& [down, across] = pairs[block];
                       products(matrix, down, across, normal.data(), static_cast<std::size_t>(count));
                       worker.goes_on(units(pairs[block]));
                   });
    normal.triangularView<Eigen::StrictlyUpper>().setZero();
    return normal;
}

}  // namespace anomalis::inversion
