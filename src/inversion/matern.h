#pragma once

#include <Eigen/Core>

// Matern's correlations along a line, as the state of a linear system that runs along it (Hartikainen and
// Sarkka 2010); private to the covariance of residuals.
namespace anomalis::inversion {

inline constexpr int most_smoothness = 4;

/// A process of variance 1 and half-integer smoothness, Matern 1/2 (exponential), 3/2, 5/2, 7/2 or 9/2, which
/// nears a Gaussian bell. Its correlation falls as exp(-t) and a polynomial; t is a distance in units of
/// 1 / rate. Its state has `smoothness + 1` elements, the value first.
class Matern {
  public:
    static constexpr int most_states = most_smoothness + 1;
    using Square = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, 0, most_states, most_states>;

    explicit Matern(int smoothness);

    int states() const { return static_cast<int>(drift_.rows()); }
    /// How the state goes on over a distance of 0 or more.
    Square transition(double distance) const;
    /// Covariance of the state.
    const Square& stationary() const { return stationary_; }
    double correlation(double distance) const;
    /// The correlation's integral from 0 on.
    double integral() const;

  private:
    Square drift_;  ///< of the state, without its decay: nilpotent
    Square stationary_;
};

}  // namespace anomalis::inversion
