#pragma once

#include <Eigen/Core>

#include "core/pacer.h"

// A damped step inside bounds, by the normal matrix.
namespace anomalis::inversion {

/// Least x' N x / 2 + g' x + damping / 2 x' diag(N) x inside least <= x <= most. A parameter with least =
/// most stays there; one whose column is nothing stays at 0.
struct BoundedStep {
    Eigen::MatrixXd normal;       ///< N; its lower triangle is read
    Eigen::VectorXd gradient;     ///< g
    Eigen::VectorXd least, most;  ///< least <= 0 <= most
    double damping = 0;
};

struct BoundedAnswer {
    Eigen::VectorXd step;
    bool settled = false;  ///< it is the least: no bound is left to take up or to let go
};

/// The step: components that would leave their bounds go to them and the rest is solved again; those that the
/// gradient pulls back from a bound are let go. By Cholesky's decomposition. Zeros when the matrix is not
/// positive for the digits. Raises Stopped.
BoundedAnswer bounded_step(const BoundedStep& problem, Pacer& pacer);

}  // namespace anomalis::inversion
