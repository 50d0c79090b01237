#pragma once

#include <Eigen/Core>
#include <vector>

#include "inversion/matern.h"

namespace anomalis::inversion {

/// The restricted likelihood (Patterson and Thompson 1971) of residuals along a line, for white noise and a
/// Matern process; private to the covariance of residuals. A long line is sampled.
class RestrictedLikelihood {
  public:
    /// `spacing`: of the stations beside the gaps of a line; 0: it has none.
    RestrictedLikelihood(const Eigen::VectorXd& distance, const Eigen::VectorXd& residual,
                         const Eigen::MatrixXd& columns, double spacing = 0);

    /// What a likelihood is made of: of the covariance in units of the white noise's variance, the logarithm
    /// of its determinant (with that of the columns) and the weighted sum of squares.
    struct Parts {
        double determinant = 0;
        double squares = 0;
    };
    /// Of white noise of variance 1 and a process of variance `ratio` and that rate (1/m).
    Parts parts(const Matern& process, double ratio, double rate) const;
    Parts white_parts() const;

    /// Its logarithm where the scale of the covariance is the best.
    double value(const Parts& parts) const;
    /// The variance of the white noise there.
    double scale(const Parts& parts) const { return parts.squares / freedom_; }

    /// Mean square of the residuals, a degree of freedom.
    double mean_square() const { return mean_square_; }
    /// Of core/pacer.h, of the parts.
    double units() const;
    double freedom() const { return freedom_; }  ///< rows less columns
    double spacing() const { return spacing_; }  ///< between stations, m: the mean, or beside gaps
    double extent() const { return extent_; }    ///< m

  private:
    Parts reduce(const double* rows, double determinant) const;

    std::size_t rows_ = 0, width_ = 1;  ///< of the table: basis of the columns, then the residual
    std::vector<double> table_;         ///< row by row, along the line
    std::vector<double> steps_;         ///< m to the row before
    double mean_square_ = 0, freedom_ = 0, spacing_ = 1, extent_ = 0;
};

}  // namespace anomalis::inversion
