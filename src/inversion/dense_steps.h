#pragma once

#include <Eigen/Cholesky>
#include <Eigen/Core>
#include <Eigen/Eigenvalues>
#include <functional>

#include "core/pacer.h"

// Steps over the matrix of all parameters of a fit that take long where these are many: in blocks on all
// cores, with a word to whoever waits between two of them; private to this room.
namespace anomalis::inversion {

using SymmetricAxes = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>;

/// Calls work(first column, columns) for blocks of `count` columns, on several threads where it is worth it.
/// `units`, see core/pacer.h, are those of a column. Raises Stopped.
void for_column_blocks(Eigen::Index count, double units, Pacer& pacer,
                       const std::function<void(Eigen::Index first, Eigen::Index columns)>& work);

/// The Cholesky factor of a symmetric matrix, of which the lower half counts.
Eigen::LLT<Eigen::MatrixXd> triangle_of(const Eigen::MatrixXd& symmetric);

/// The inverse of a matrix by its Cholesky factor L, as L^-T L^-1. Raises Stopped.
Eigen::MatrixXd inverse_by(const Eigen::LLT<Eigen::MatrixXd>& triangle, Pacer& pacer);

/// left * right. Raises Stopped.
Eigen::MatrixXd product_of(const Eigen::MatrixXd& left, const Eigen::MatrixXd& right, Pacer& pacer);

/// Eigenvalues and eigenvectors of a symmetric matrix, of which the lower half counts. Those of many columns
/// are found on a thread of their own, which a stop leaves to end by itself. Raises Stopped.
SymmetricAxes axes_of(Eigen::MatrixXd symmetric, Pacer& pacer);

}  // namespace anomalis::inversion
