#pragma once

#include <Eigen/Core>

#include "core/pacer.h"

namespace anomalis::inversion {

/// The lower triangle of columns' columns, what is above it zero. On all cores, with the same bits for any
/// number of them; `threads` above 0 says how many. Raises Stopped.
Eigen::MatrixXd normal_matrix(const Eigen::MatrixXd& columns, Pacer& pacer, int threads = 0);

}  // namespace anomalis::inversion
