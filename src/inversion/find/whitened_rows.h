#pragma once

#include <Eigen/Core>

#include "inversion/residual_covariance.h"

// Rows along a line as white noise of standard deviation 1 would leave them: generalised least squares
// (Aitken 1936) are plain ones of such rows.
namespace anomalis::inversion {

class Whitening {
  public:
    /// Distances along the line, m, in ascending order.
    Whitening(const ResidualCovariance& covariance, const Eigen::VectorXd& distance);

    /// Turns each column into what its rows have new after those before, in standard deviations.
    void whiten(Eigen::Ref<Eigen::MatrixXd> columns) const;
    /// Logarithm of the determinant of the covariance.
    double log_determinant() const { return log_determinant_; }

  private:
    double run(Eigen::Ref<Eigen::MatrixXd> columns) const;

    ResidualCovariance covariance_;
    Eigen::VectorXd distance_;
    double log_determinant_ = 0;
};

}  // namespace anomalis::inversion
