#include "inversion/normal_matrix.h"

#include <algorithm>

namespace anomalis::inversion {

Eigen::MatrixXd normal_matrix(const Eigen::MatrixXd& columns, Pacer& pacer) {
    constexpr Eigen::Index stretch = 64;
    constexpr double units_a_product = 0.3;
    const Eigen::Index count = columns.cols();
    Eigen::MatrixXd normal = Eigen::MatrixXd::Zero(count, count);
    for (Eigen::Index at = 0; at < count; at += stretch) {
        const Eigen::Index width = std::min(stretch, count - at), below = count - at;
        normal.block(at, at, below, width).noalias() =
            columns.rightCols(below).transpose() * columns.middleCols(at, width);
        pacer.done(units_a_product * static_cast<double>(columns.rows() * below * width));
    }
    normal.triangularView<Eigen::StrictlyUpper>().setZero();
    return normal;
}

}  // namespace anomalis::inversion
