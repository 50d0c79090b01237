#include "inversion/orthonormal_basis.h"

#include <Eigen/QR>
#include <algorithm>

namespace anomalis::inversion {

using Eigen::Index;
using Eigen::MatrixXd;

MatrixXd orthonormal_basis(const MatrixXd& columns, double threshold) {
    if (columns.cols() == 0) return columns;
    Eigen::ColPivHouseholderQR<MatrixXd> qr(columns);
    if (threshold > 0) qr.setThreshold(threshold);
    return qr.householderQ() * MatrixXd::Identity(columns.rows(), std::min(qr.rank(), columns.rows()));
}

MatrixXd orthonormal_basis_of_units(const MatrixXd& columns, double threshold) {
    MatrixXd unit = columns;
    for (Index k = 0; k < unit.cols(); ++k)
        if (const double norm = unit.col(k).norm(); norm > 0) unit.col(k) /= norm;
    return orthonormal_basis(unit, threshold);
}

}  // namespace anomalis::inversion
