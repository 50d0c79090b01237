#include "inversion/bounded_step.h"

#include <Eigen/Cholesky>
#include <algorithm>
#include <cmath>
#include <vector>

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// Rounds of the active set; what is still outside then is cut.
constexpr int most_rounds = 12;

/// Of Cholesky's decomposition, in cubes of the number of parameters.
constexpr double units_a_product = 0.1;

enum class Place { inside, low, high, out };

/// In units of the columns, so that the matrix has a unit diagonal.
class Search {
  public:
    Search(const BoundedStep& problem, Pacer& pacer)
        : problem_(problem),
          pacer_(pacer),
          size_(problem.gradient.size()),
          length_(problem.normal.diagonal().cwiseMax(0.0).cwiseSqrt()),
          step_(VectorXd::Zero(size_)),
          places_(static_cast<std::size_t>(size_), Place::inside) {
        for (Index k = 0; k < size_; ++k)
            if (!(length_[k] > 0) || !std::isfinite(length_[k])) place(k) = Place::out;
    }

    BoundedAnswer run() {
        for (int round = 0; round < most_rounds; ++round) {
            if (!solve()) return {VectorXd::Zero(size_), false};
            if (!settle()) return {step_, true};
        }
        return {step_.cwiseMax(problem_.least).cwiseMin(problem_.most), false};
    }

  private:
    Place& place(Index k) { return places_[static_cast<std::size_t>(k)]; }

    bool solve() {
        std::vector<Index> moving;
        for (Index k = 0; k < size_; ++k) {
            step_[k] = place(k) == Place::low    ? problem_.least[k]
                       : place(k) == Place::high ? problem_.most[k]
                                                 : 0.0;
            if (place(k) == Place::inside) moving.push_back(k);
        }
        const auto count = static_cast<Index>(moving.size());
        if (count == 0) return true;
        const VectorXd target = -(problem_.gradient + pull(step_));
        MatrixXd system(count, count);
        VectorXd right(count);
        for (Index b = 0; b < count; ++b) {
            const Index j = moving[static_cast<std::size_t>(b)];
            for (Index a = b; a < count; ++a) {
                const Index i = moving[static_cast<std::size_t>(a)];
                system(a, b) = problem_.normal(std::max(i, j), std::min(i, j)) / (length_[i] * length_[j]);
            }
            system(b, b) += problem_.damping;
            right[b] = target[j] / length_[j];
        }
        const Eigen::LLT<Eigen::Ref<MatrixXd>> factors(system);
        const auto size = static_cast<double>(count);
        pacer_.done(units_a_product * size * size * size);
        if (factors.info() != Eigen::Success) return false;
        const VectorXd found = factors.solve(right);
        for (Index b = 0; b < count; ++b) {
            const Index j = moving[static_cast<std::size_t>(b)];
            step_[j] = found[b] / length_[j];
        }
        return step_.allFinite();
    }

    VectorXd pull(const VectorXd& step) const {
        return problem_.normal.selfadjointView<Eigen::Lower>() * step;
    }

    /// Components outside go to their bounds; if there are none, those that want back are let go. False when
    /// all is settled.
    bool settle() {
        bool moved = false;
        for (Index k = 0; k < size_; ++k) {
            if (place(k) != Place::inside) continue;
            if (step_[k] < problem_.least[k]) place(k) = Place::low, moved = true;
            if (step_[k] > problem_.most[k]) place(k) = Place::high, moved = true;
        }
        if (moved) return true;
        const VectorXd slope = problem_.gradient + pull(step_);
        for (Index k = 0; k < size_; ++k) {
            if (problem_.least[k] == problem_.most[k]) continue;
            const bool back =
                (place(k) == Place::low && slope[k] < 0) || (place(k) == Place::high && slope[k] > 0);
            if (!back) continue;
            place(k) = Place::inside;
            moved = true;
        }
        return moved;
    }

    const BoundedStep& problem_;
    Pacer& pacer_;
    Index size_;
    VectorXd length_, step_;
    std::vector<Place> places_;
};

}  // namespace

BoundedAnswer bounded_step(const BoundedStep& problem, Pacer& pacer) {
    return Search(problem, pacer).run();
}

}  // namespace anomalis::inversion
