#pragma once

#include <Eigen/Core>

#include "core/pacer.h"

// How the residuals of a channel are correlated along the line.
namespace anomalis::inversion {

/// White noise and, below it, noise that is correlated along the line: what is left of geology. Its
/// correlation is Matern's (Matern 1960; Rasmussen and Williams 2006, eq. 4.16 and 4.17): exponential, or
/// smoother.
struct ResidualCovariance {
    double white = 0;       ///< standard deviation, the unit of the residuals
    double correlated = 0;  ///< standard deviation; 0 when the residuals are white
    int smoothness = 0;     ///< 0: exponential (Matern 1/2), 1: 3/2 ... 4: 9/2
    double rate = 0;        ///< 1/m: the correlation falls as exp(-rate distance) and a polynomial
    /// Of the logarithms of both variances and of the rate: how well they are known.
    Eigen::Matrix3d uncertainty = Eigen::Matrix3d::Zero();
    double independent = 0;  ///< how many independent data the residuals amount to (Bartlett 1946)

    /// m over which the residuals are correlated: the integral of the correlation of the correlated part from
    /// 0 on, which is the e-folding distance of an exponential one. 0 when the residuals are white.
    double length() const;
};

/// Found by restricted maximum likelihood (Patterson and Thompson 1971), which knows what the fitted columns
/// took out of the residuals; each likelihood by a Kalman filter along the line (Harvey 1989). Noise counts
/// as correlated when that is far more likely than chance makes of white noise. `columns`: rows by what was
/// fitted, the regional too. Stations in any order and at any spacing; of a line
/// with gaps `spacing` is the one beside them, 0 of any other. Raises Stopped.
ResidualCovariance find_residual_covariance(const Eigen::VectorXd& distance, const Eigen::VectorXd& residual,
                                            const Eigen::MatrixXd& columns, Pacer& pacer = no_pace(),
                                            double spacing = 0);

/// The covariance matrix times the columns of `right`, in time that grows with the number of rows alone.
Eigen::MatrixXd covariance_times(const ResidualCovariance& covariance, const Eigen::VectorXd& distance,
                                 const Eigen::MatrixXd& right);

}  // namespace anomalis::inversion
