#pragma once

#include <Eigen/Core>

#include "core/pacer.h"

namespace anomalis::inversion {

/// The lower triangle of columns' columns, what is above it zero. Raises Stopped.
Eigen::MatrixXd normal_matrix(const Eigen::MatrixXd& columns, Pacer& pacer);

}  // namespace anomalis::inversion
