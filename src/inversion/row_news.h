#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <vector>

#include "inversion/matern.h"

namespace anomalis::inversion {

/// The Kalman filter of white noise of variance 1 and a Matern process, which carries several columns along
/// the line at once (Harvey 1989): a row becomes what it has new after those before it.
class RowNews {
  public:
    /// The process has variance `ratio` and that rate (1/m); it must outlive the filter. `width` columns.
    RowNews(const Matern& process, double ratio, double rate, std::size_t width);

    /// m to the next row, 0 or more.
    void go_on(double step);
    /// Turns a row into what it has new, of variance 1, and returns the logarithm of its variance before.
    double take(const double* row, double* news);

  private:
    void find_gain();

    const Matern& process_;
    double ratio_, rate_;
    std::size_t width_, states_;
    double last_step_ = -1;
    Matern::Square covariance_;  ///< as the rows before predict it
    Matern::Square transition_, added_;
    Eigen::VectorXd gain_;
    double variance_ = 1;                 ///< of what a row has new
    bool settled_ = false;                ///< at equal spacing the covariance soon stays
    std::vector<double> values_, moved_;  ///< element by element, each of all columns
};

}  // namespace anomalis::inversion
