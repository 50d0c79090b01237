#include "inversion/matern.h"

#include <Eigen/Dense>
#include <cmath>

namespace anomalis::inversion {

namespace {

/// The companion matrix of (s + 1)^states: each element of the state is the slope of the one before.
Matern::Square companion(int states) {
    Matern::Square matrix = Matern::Square::Zero(states, states);
    double binomial = 1;
    for (int k = 0; k < states; ++k) {
        matrix(states - 1, k) = -binomial;
        if (k + 1 < states) matrix(k, k + 1) = 1;
        binomial *= static_cast<double>(states - k) / (k + 1);
    }
    return matrix;
}

/// What the process settles at when white noise drives its last element: F P + P F' = -q, P(0, 0) = 1.
Matern::Square settled(const Matern::Square& system) {
    const Eigen::Index n = system.rows();
    Eigen::MatrixXd equations = Eigen::MatrixXd::Zero(n * n, n * n);
    for (Eigen::Index i = 0; i < n; ++i)
        for (Eigen::Index j = 0; j < n; ++j)
            for (Eigen::Index k = 0; k < n; ++k) {
                equations(i + n * j, k + n * j) += system(i, k);
                equations(i + n * j, i + n * k) += system(j, k);
            }
    Eigen::VectorXd driven = Eigen::VectorXd::Zero(n * n);
    driven[n * n - 1] = -1;
    const Eigen::VectorXd solution = equations.partialPivLu().solve(driven);
    const Matern::Square stationary = Eigen::Map<const Eigen::MatrixXd>(solution.data(), n, n);
    return stationary / stationary(0, 0);
}

}  // namespace

Matern::Matern(int smoothness) {
    const Square system = companion(smoothness + 1);
    stationary_ = settled(system);
    drift_ = system + Square::Identity(system.rows(), system.cols());
}

Matern::Square Matern::transition(double distance) const {
    Square sum = Square::Identity(states(), states());
    Square power = sum;
    for (int k = 1; k < states(); ++k) {
        power = (power * drift_).eval() * (distance / k);
        sum += power;
    }
    return std::exp(-distance) * sum;
}

double Matern::correlation(double distance) const {
    return transition(distance).row(0).dot(stationary_.col(0));
}

double Matern::integral() const {
    const Square system = drift_ - Square::Identity(states(), states());
    return -system.partialPivLu().solve(stationary_.col(0))(0);
}

}  // namespace anomalis::inversion
