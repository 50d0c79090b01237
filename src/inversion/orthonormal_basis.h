#pragma once

#include <Eigen/Core>

namespace anomalis::inversion {

/// Unit vectors at right angles that span the columns, by Householder reflections with column pivoting (Golub
/// 1965). Columns of zeros add nothing; `threshold` above 0 is how small a pivot counts as none, relative to
/// the largest.
Eigen::MatrixXd orthonormal_basis(const Eigen::MatrixXd& columns, double threshold = 0);

/// The same of the columns each scaled to length 1.
Eigen::MatrixXd orthonormal_basis_of_units(const Eigen::MatrixXd& columns, double threshold = 0);

}  // namespace anomalis::inversion
