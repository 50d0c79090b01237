#pragma once

#include <Eigen/Core>

#include "inversion/ensemble/chance_numbers.h"
#include "inversion/residual_covariance.h"

namespace anomalis::inversion {

/// Noise along a line as its residuals tell of it, the unit of the covariance: white, and a process of the
/// found correlation run along the line. Its variances and its rate are drawn too, as well as they are known.
/// Stations in any order.
Eigen::VectorXd draw_noise(const ResidualCovariance& covariance, const Eigen::VectorXd& distance,
                           ChanceNumbers& chance);

}  // namespace anomalis::inversion
