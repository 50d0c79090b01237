#pragma once

#include <Eigen/Core>

#include "inversion/residual_covariance.h"

// Rows along a line as white noise of standard deviation 1 would leave them: generalised least squares
// (Aitken 1936) are plain ones of such rows.
namespace anomalis::inversion {

/// What the rows of a channel are off by, whatever the model.
struct RowNoise {
    ResidualCovariance covariance = {};  ///< where no anomaly is
    /// By row, 1 or less: the noise is so much larger where the anomaly is. Empty: it is the same everywhere.
    Eigen::VectorXd weight = {};
};

class Whitening {
  public:
    /// Distances along the line, m, in ascending order.
    Whitening(const RowNoise& noise, const Eigen::VectorXd& distance);

    /// Turns each column into what its rows have new after those before, in standard deviations.
    void whiten(Eigen::Ref<Eigen::MatrixXd> columns) const;
    /// Logarithm of the determinant of the covariance.
    double log_determinant() const { return log_determinant_; }

  private:
    double run(Eigen::Ref<Eigen::MatrixXd> columns) const;

    RowNoise noise_;
    Eigen::VectorXd distance_;
    double log_determinant_ = 0;
};

}  // namespace anomalis::inversion
