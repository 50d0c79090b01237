#include "inversion/residual_covariance.h"

#include <Eigen/Dense>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

#include "core/shared_pieces.h"
#include "inversion/matern.h"
#include "inversion/restricted_likelihood.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::Matrix3d;
using Eigen::MatrixXd;
using Eigen::Vector2d;
using Eigen::Vector3d;
using Eigen::VectorXd;

/// Twice the gain in the logarithm of the likelihood that a correlated part must bring: two more unknowns
/// bring so much to white noise once in a hundred lines.
constexpr double least_gain = 9.2;
/// Where no start brings this much, no search does.
constexpr double hopeless_gain = 1;
/// Fewer degrees of freedom tell nothing of a correlation.
constexpr double least_freedom = 8;
constexpr double least_ratio = 1e-3, most_ratio = 1e6;
/// Lengths are looked for between this many rows and this part of the line.
constexpr double least_length = 1, most_length = 0.3;
constexpr int most_turns = 60;
/// The search ends when the likelihoods of its points differ by less.
constexpr double same_likelihood = 0.01;
/// What is known of the logarithms of variances and rate before: a factor of 4 or so.
constexpr double prior_deviation = 1.5;
/// The correlated variance is hardly more than so many times what the residuals show: a smooth process would
/// else hide any amount of itself in what was fitted.
constexpr double most_hidden = 3;
constexpr double hidden_deviation = 0.15;  ///< of the logarithm beyond

/// A correlated part: the logarithms of its variance in units of the white one and of its length in m.
using Point = Vector2d;

class Search {
  public:
    Search(const RestrictedLikelihood& likelihood, int smoothness, Pacer& pacer)
        : likelihood_(likelihood), process_(smoothness), pacer_(pacer) {
        const double shortest = least_length * likelihood.spacing();
        low_ = {std::log(least_ratio), std::log(shortest)};
        high_ = {std::log(most_ratio), std::log(std::max(most_length * likelihood.extent(), shortest))};
    }

    const Matern& process() const { return process_; }
    double rate(const Point& point) const { return process_.integral() / std::exp(point[1]); }
    Point inside(const Point& point) const { return point.cwiseMax(low_).cwiseMin(high_); }
    RestrictedLikelihood::Parts parts(const Point& point) const { return parts(point, pacer_); }
    RestrictedLikelihood::Parts parts(const Point& point, Pacer& pacer) const {
        pacer.done(likelihood_.units());
        return likelihood_.parts(process_, std::exp(point[0]), rate(point));
    }
    /// How far the correlated variance is beyond what may hide, in deviations.
    double beyond(const Point& point, const RestrictedLikelihood::Parts& all) const {
        const double shown = likelihood_.scale(all) * std::exp(point[0]) / likelihood_.mean_square();
        return std::max(std::log(shown / most_hidden), 0.0) / hidden_deviation;
    }
    /// The logarithm of the likelihood, less what speaks against noise that the residuals do not show.
    double value(const Point& point) const { return value(point, pacer_); }
    double value(const Point& point, Pacer& pacer) const {
        const RestrictedLikelihood::Parts all = parts(point, pacer);
        const double hidden = beyond(point, all);
        return likelihood_.value(all) - 0.5 * hidden * hidden;
    }

    /// The best of a few points that lie far apart, which several threads look at.
    Point best_start() const {
        std::vector<Point> trials;
        constexpr int lengths = 4;
        for (int k = 0; k < lengths; ++k)
            for (const double ratio : {0.2, 5.0, 200.0})
                trials.emplace_back(std::log(ratio), low_[1] + (high_[1] - low_[1]) * (k + 0.5) / lengths);
        std::vector<double> values(trials.size());
        const double units = likelihood_.units() * static_cast<double>(trials.size());
        for_each_piece(trials.size(), worker_count(units, trials.size()), pacer_,
                       [&](PieceWorker& worker, std::size_t i) {
                           PiecePacer pacer(worker);
                           values[i] = value(trials[i], pacer);
                       });
        Point best = low_;
        double most = -std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < trials.size(); ++i) {
            if (values[i] <= most) continue;
            most = values[i];
            best = trials[i];
        }
        return best;
    }

    /// The most likely point (Nelder and Mead 1965).
    Point climb(const Point& start) const;

  private:
    const RestrictedLikelihood& likelihood_;
    Matern process_;
    Pacer& pacer_;
    Point low_, high_;
};

Point Search::climb(const Point& start) const {
    struct Corner {
        Point point;
        double value;
    };
    const auto corner = [this](const Point& point) {
        const Point kept = inside(point);
        return Corner{kept, value(kept)};
    };
    const auto step = [this](const Point& from, int axis, double size) {
        Point to = from;
        to[axis] += to[axis] + size > high_[axis] ? -size : size;
        return to;
    };
    std::array<Corner, 3> corners{corner(start), corner(step(start, 0, 1)), corner(step(start, 1, 0.7))};
    for (int turn = 0; turn < most_turns; ++turn) {
        std::ranges::sort(corners, std::ranges::greater{}, &Corner::value);
        auto& [best, middle, worst] = corners;
        if (best.value - worst.value < same_likelihood) break;
        const Point centre = 0.5 * (best.point + middle.point);
        const Point way = centre - worst.point;
        const Corner mirrored = corner(centre + way);
        if (mirrored.value > best.value) {
            const Corner further = corner(centre + 2 * way);
            worst = further.value > mirrored.value ? further : mirrored;
        } else if (mirrored.value > middle.value) {
            worst = mirrored;
        } else {
            const Corner nearer = corner(centre + (mirrored.value > worst.value ? 0.5 : -0.5) * way);
            if (nearer.value > worst.value) {
                worst = nearer;
            } else {
                middle = corner(0.5 * (best.point + middle.point));
                worst = corner(0.5 * (best.point + worst.point));
            }
        }
    }
    return std::ranges::max(corners, {}, &Corner::value).point;
}

/// The inverse of the information that the likelihood has of the logarithms of both variances and of the
/// rate, and of what was known before.
Matrix3d uncertainty_at(const Search& search, const RestrictedLikelihood& likelihood, const Point& point) {
    constexpr double h = 0.2;
    using Parts = RestrictedLikelihood::Parts;
    std::array<std::array<Parts, 3>, 3> at;
    for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = 0; b < 3; ++b)
            at[a][b] =
                search.parts(point + h * Point{static_cast<double>(a) - 1, static_cast<double>(b) - 1});
    const double scale = likelihood.scale(at[1][1]);
    // Minus twice the logarithm, at the scale that is held.
    const auto loss = [&](std::size_t a, std::size_t b) {
        return at[a][b].determinant + at[a][b].squares / scale;
    };
    const auto squares = [&](std::size_t a, std::size_t b) { return at[a][b].squares / scale; };
    Matrix3d information;
    information(0, 0) = likelihood.freedom() / 2;
    information(0, 1) = information(1, 0) = -(squares(2, 1) - squares(0, 1)) / (4 * h);
    information(0, 2) = information(2, 0) = -(squares(1, 2) - squares(1, 0)) / (4 * h);
    information(1, 1) = (loss(2, 1) - 2 * loss(1, 1) + loss(0, 1)) / (2 * h * h);
    information(2, 2) = (loss(1, 2) - 2 * loss(1, 1) + loss(1, 0)) / (2 * h * h);
    information(1, 2) = information(2, 1) = (loss(2, 2) - loss(2, 0) - loss(0, 2) + loss(0, 0)) / (8 * h * h);
    // From (scale, ratio, length) to (white variance, correlated variance, rate).
    Matrix3d change;
    change << 1, 0, 0, 1, 1, 0, 0, 0, -1;
    const Matrix3d back = change.inverse();
    information = (back.transpose() * information * back).eval();
    const double known = 1 / (prior_deviation * prior_deviation);
    information.diagonal().array() += known;
    if (search.beyond(point, at[1][1]) > 0) information(1, 1) += 1 / (hidden_deviation * hidden_deviation);
    const Eigen::SelfAdjointEigenSolver<Matrix3d> axes(information);
    const Vector3d spread = axes.eigenvalues().cwiseMax(known).cwiseInverse();
    return axes.eigenvectors() * spread.asDiagonal() * axes.eigenvectors().transpose();
}

struct Found {
    int smoothness = 0;
    Point point;
    double value = -std::numeric_limits<double>::infinity();
};

Found most_likely(const RestrictedLikelihood& likelihood, double white_value, Pacer& pacer) {
    Found found;
    for (int smoothness = 0; smoothness <= most_smoothness; ++smoothness) {
        const Search search(likelihood, smoothness, pacer);
        Point start = found.point;
        // The roughest process says little of where a smooth one stands.
        if (smoothness <= 1) {
            start = search.best_start();
            if (smoothness == 0 && 2 * (search.value(start) - white_value) < hopeless_gain) break;
            if (smoothness == 1 && search.value(found.point) > search.value(start)) start = found.point;
        }
        const Point point = search.climb(start);
        const double value = search.value(point);
        if (value <= found.value) break;
        found = {smoothness, point, value};
    }
    return found;
}

/// N^2 over the sum of the squared correlations of all pairs, at the mean spacing.
double independent_data(const ResidualCovariance& covariance, const VectorXd& distance) {
    const auto count = static_cast<double>(distance.size());
    if (covariance.correlated == 0 || distance.size() < 2) return count;
    const Matern process(covariance.smoothness);
    const double spacing = (distance.maxCoeff() - distance.minCoeff()) / (count - 1);
    const double correlated = covariance.correlated * covariance.correlated;
    const double share = correlated / (correlated + covariance.white * covariance.white);
    double sum = count;
    for (double lag = 1; lag < count; ++lag) {
        const double here = share * process.correlation(covariance.rate * spacing * lag);
        if (here * here < 1e-6) break;
        sum += 2 * (count - lag) * here * here;
    }
    return count * count / sum;
}

/// The same of a line with gaps, by the pairs themselves: those of some stations stand for all.
double independent_beside_gaps(const ResidualCovariance& covariance, const VectorXd& distance) {
    const Index count = distance.size();
    if (covariance.correlated == 0 || count < 2) return static_cast<double>(count);
    const Matern process(covariance.smoothness);
    std::vector<double> places(distance.begin(), distance.end());
    std::ranges::sort(places);
    const double correlated = covariance.correlated * covariance.correlated;
    const double share = correlated / (correlated + covariance.white * covariance.white);
    constexpr std::size_t most_stations = 500;
    const std::size_t stride = places.size() / most_stations + 1;
    double sum = 0, stations = 0;
    for (std::size_t i = 0; i < places.size(); i += stride, ++stations) {
        sum += 1;
        const auto add = [&](std::size_t j) {
            const double here =
                share * process.correlation(covariance.rate * std::abs(places[j] - places[i]));
            sum += here * here;
            return here * here >= 1e-6;
        };
        for (std::size_t j = i; j-- > 0 && add(j);) {
        }
        for (std::size_t j = i + 1; j < places.size() && add(j); ++j) {
        }
    }
    return static_cast<double>(count) * stations / sum;
}

}  // namespace

double ResidualCovariance::length() const {
    return correlated > 0 ? Matern(smoothness).integral() / rate : 0;
}

ResidualCovariance find_residual_covariance(const VectorXd& distance, const VectorXd& residual,
                                            const MatrixXd& columns, Pacer& pacer, double spacing) {
    ResidualCovariance covariance;
    const RestrictedLikelihood likelihood(distance, residual, columns, spacing);
    if (likelihood.freedom() < 1) return covariance;
    const RestrictedLikelihood::Parts white = likelihood.white_parts();
    const double white_value = likelihood.value(white);
    covariance.white = std::sqrt(likelihood.scale(white));
    covariance.uncertainty(0, 0) = 2 / likelihood.freedom();
    Found found;
    if (likelihood.freedom() >= least_freedom && std::isfinite(white_value) && likelihood.spacing() > 0)
        found = most_likely(likelihood, white_value, pacer);
    if (2 * (found.value - white_value) > least_gain) {
        const Search search(likelihood, found.smoothness, pacer);
        const double scale = likelihood.scale(search.parts(found.point));
        covariance.white = std::sqrt(scale);
        covariance.correlated = std::sqrt(scale * std::exp(found.point[0]));
        covariance.smoothness = found.smoothness;
        covariance.rate = search.rate(found.point);
        covariance.uncertainty = uncertainty_at(search, likelihood, found.point);
    }
    covariance.independent =
        spacing > 0 ? independent_beside_gaps(covariance, distance) : independent_data(covariance, distance);
    return covariance;
}

MatrixXd covariance_times(const ResidualCovariance& covariance, const VectorXd& distance,
                          const MatrixXd& right) {
    const double correlated = covariance.correlated * covariance.correlated;
    MatrixXd product = (covariance.white * covariance.white + correlated) * right;
    const Index rows = right.rows();
    if (correlated == 0 || rows == 0) return product;
    const Matern process(covariance.smoothness);
    std::vector<Index> order(static_cast<std::size_t>(rows));
    std::iota(order.begin(), order.end(), Index{0});
    std::ranges::stable_sort(order, {}, [&](Index i) { return distance[i]; });
    // What the rows on one side hand on to a row is the state of the process.
    const MatrixXd across = right.transpose();
    MatrixXd gathered = product.transpose();
    for (const bool forwards : {true, false}) {
        MatrixXd state = MatrixXd::Zero(right.cols(), process.states());
        for (Index i = 1; i < rows; ++i) {
            const auto at = static_cast<std::size_t>(forwards ? i : rows - 1 - i);
            const Index before = order[forwards ? at - 1 : at + 1], here = order[at];
            state += across.col(before) * process.stationary().col(0).transpose();
            const double step = covariance.rate * std::abs(distance[here] - distance[before]);
            state = (state * process.transition(step).transpose()).eval();
            gathered.col(here) += correlated * state.col(0);
        }
    }
    return gathered.transpose();
}

}  // namespace anomalis::inversion
