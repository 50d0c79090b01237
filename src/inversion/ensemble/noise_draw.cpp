#include "inversion/ensemble/noise_draw.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "inversion/matern.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::Matrix3d;
using Eigen::Vector3d;
using Eigen::VectorXd;

/// Of what is known of the logarithms of variances and rate: chance goes no further.
constexpr double most_deviations = 2.5;

/// The root of a covariance, without what rounding makes negative.
template <class Square>
Square root_of(const Square& covariance) {
    const Eigen::SelfAdjointEigenSolver<Square> axes(covariance);
    return axes.eigenvectors() * axes.eigenvalues().cwiseMax(0).cwiseSqrt().asDiagonal();
}

ResidualCovariance drawn_covariance(const ResidualCovariance& covariance, ChanceNumbers& chance) {
    Vector3d by;
    for (double& one : by) one = std::clamp(chance.normal(), -most_deviations, most_deviations);
    by = (root_of<Matrix3d>(covariance.uncertainty) * by).eval();
    ResidualCovariance drawn = covariance;
    drawn.white *= std::exp(by[0] / 2);
    drawn.correlated *= std::exp(by[1] / 2);
    drawn.rate *= std::exp(by[2]);
    return drawn;
}

/// A Matern process of variance 1 at the stations: its state goes on from one to the next, and what it gets
/// on the way is what it lacks of its covariance.
VectorXd draw_process(const Matern& process, double rate, const VectorXd& distance, ChanceNumbers& chance) {
    std::vector<Index> order(static_cast<std::size_t>(distance.size()));
    std::iota(order.begin(), order.end(), Index{0});
    std::ranges::stable_sort(order, {}, [&](Index i) { return distance[i]; });
    const auto some = [&] {
        VectorXd normal(process.states());
        for (double& one : normal) one = chance.normal();
        return normal;
    };
    Matern::Square transition, gained;
    double known_step = -1;
    VectorXd state = root_of<Matern::Square>(process.stationary()) * some();
    VectorXd values(distance.size());
    for (std::size_t k = 0; k < order.size(); ++k) {
        const double step = k == 0 ? 0 : rate * (distance[order[k]] - distance[order[k - 1]]);
        if (k > 0 && step != known_step) {
            transition = process.transition(step);
            gained = root_of<Matern::Square>(process.stationary() -
                                             transition * process.stationary() * transition.transpose());
            known_step = step;
        }
        if (k > 0) state = (transition * state + gained * some()).eval();
        values[order[k]] = state[0];
    }
    return values;
}

}  // namespace

VectorXd draw_noise(const ResidualCovariance& covariance, const VectorXd& distance, ChanceNumbers& chance) {
    const ResidualCovariance drawn = drawn_covariance(covariance, chance);
    VectorXd noise(distance.size());
    for (double& one : noise) one = drawn.white * chance.normal();
    if (drawn.correlated > 0 && distance.size() > 0)
        noise += drawn.correlated * draw_process(Matern(drawn.smoothness), drawn.rate, distance, chance);
    return noise;
}

}  // namespace anomalis::inversion
