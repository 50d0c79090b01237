#include "inversion/intervals.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace anomalis::inversion {

namespace {

using Eigen::Index;

constexpr double no_number = std::numeric_limits<double>::quiet_NaN();
/// The quadratic interval stands when the root of what its ends add to the sum of squares is as the columns
/// say, within this factor.
constexpr double as_predicted = 1.2;
/// A profile is followed so many times as far as the quadratic interval reaches, and a size from a hundredth
/// to a hundred times what it is.
constexpr double furthest = 30;
constexpr double furthest_factor = 4.6;  // logarithm
/// The first refit of a size goes no further, and how much further one refit may go than the one before.
constexpr double first_factor = 1.5;  // logarithm
constexpr double most_growth = 3;
/// The end of an interval is found to this part of it.
constexpr double close_enough = 0.03;
constexpr int refits_a_side = 8;
/// Ends of a bracket whose growth is so many times off the threshold tell nothing of the place in between.
constexpr double most_overshoot = 3;
/// How much of the way to its limit a parameter may follow.
constexpr double kept_way = 0.8;

class Intervals {
  public:
    Intervals(const FitErrors& errors, std::span<const IntervalParameter> parameters, Refit& refit,
              std::size_t most_refits)
        : errors_(errors), parameters_(parameters), refit_(refit), refits_left_(most_refits) {
        for (const IntervalParameter& parameter : parameters) values_.push_back(parameter.value);
        least_ = refit.sum_of_squares(values_);
    }

    Interval find(std::size_t i, const Interval& quadratic);

  private:
    /// One end of the interval of one parameter. Ways are in the axis on which a profile is nearly straight:
    /// the logarithm of the distance from the limit for what is bounded on one side (sizes, depths).
    struct Side {
        std::size_t parameter;
        double direction;            ///< -1 or 1
        double reach;                ///< of the quadratic interval, in the unit of the parameter
        double limit;                ///< how far it may go, the same
        double threshold;            ///< root of what the sum of squares grows by at the end
        double size = 0;             ///< distance from the limit that the axis is the logarithm of; 0: none
        bool towards = false;        ///< that limit
        double first = 0, last = 0;  ///< ways

        double by(double way) const;
        /// The quadratic one on that axis; not a number where it reaches further than a profile would go.
        double unfollowed_end(double value) const;
    };
    Side side_of(std::size_t i, double direction) const;
    std::vector<double> moved(const Side& side, double by) const;
    double growth(double sum) const { return std::sqrt(std::max(sum - least_, 0.0)); }
    bool stands(const Side& side) const;
    std::optional<double> refitted(const Side& side, double by);
    double end_of(const Side& side);

    const FitErrors& errors_;
    std::span<const IntervalParameter> parameters_;
    Refit& refit_;
    std::size_t refits_left_;
    std::vector<double> values_;
    double least_ = 0;
};

Intervals::Side Intervals::side_of(std::size_t i, double direction) const {
    const double reach = errors_.quantile[i] * errors_.errors[i];
    const IntervalParameter& parameter = parameters_[i];
    const double below = std::max(parameter.value - parameter.lower, 0.0);
    const double above = std::max(parameter.upper - parameter.value, 0.0);
    Side side{.parameter = i,
              .direction = direction,
              .reach = reach,
              .limit = direction < 0 ? below : above,
              .threshold = errors_.growth[i]};
    const bool from_below = std::isfinite(below);
    const double size = from_below ? below : above;
    if (std::isfinite(size) && size > 0) {
        side.size = size;
        side.towards = from_below == (direction < 0);
        side.first = std::min(reach / size, first_factor);
        side.last = std::min(furthest * reach / size, furthest_factor);
    } else {
        side.first = reach;
        side.last = furthest * reach;
    }
    return side;
}

/// What a way is in the unit of the parameter, up to the limit.
double Intervals::Side::by(double way) const {
    if (size == 0) return std::min(way, limit);
    return std::min(size * (towards ? -std::expm1(-way) : std::expm1(way)), limit);
}

double Intervals::Side::unfollowed_end(double value) const {
    const double way = size == 0 ? reach : reach / size;
    if ((size > 0 && way > furthest_factor) || by(way) >= limit) return no_number;
    return value + direction * by(way);
}

/// All parameters where the columns expect the others to follow; at a limit a size would be stuck, so they
/// keep a part of their way to it.
std::vector<double> Intervals::moved(const Side& side, double by) const {
    std::vector<double> there = values_;
    for (std::size_t k = 0; k < there.size(); ++k) {
        const double way = side.direction * by *
                           errors_.following(static_cast<Index>(k), static_cast<Index>(side.parameter));
        const double down = kept_way * std::min(parameters_[k].lower - values_[k], 0.0);
        const double up = kept_way * std::max(parameters_[k].upper - values_[k], 0.0);
        there[k] += std::clamp(way, down, up);
    }
    there[side.parameter] = values_[side.parameter] + side.direction * by;
    return there;
}

bool Intervals::stands(const Side& side) const {
    if (side.reach > side.limit) return false;
    const double seen = growth(refit_.sum_of_squares(moved(side, side.reach))) / side.threshold;
    return seen < as_predicted && seen > 1 / as_predicted;
}

std::optional<double> Intervals::refitted(const Side& side, double by) {
    if (refits_left_ == 0) return {};
    --refits_left_;
    const double value = values_[side.parameter] + side.direction * by;
    return growth(refit_.refit(side.parameter, value, moved(side, by)));
}

/// Follows the profile outwards, then by the secant where its root is nearly straight and by halves
/// elsewhere: the width of a thin body adds by its square and more, so that the secant would hardly leave the
/// inner end.
double Intervals::end_of(const Side& side) {
    const double value = values_[side.parameter];
    const auto place = [&](double way) { return value + side.direction * side.by(way); };
    if (!(side.limit > 0)) return no_number;
    double below = 0, below_growth = 0, trial = side.first;
    std::optional<double> above;
    double above_growth = 0;
    for (int turn = 0; turn < refits_a_side; ++turn) {
        const std::optional<double> here = refitted(side, side.by(trial));
        if (!here) return side.unfollowed_end(value);
        if (std::abs(*here / side.threshold - 1) < close_enough) return place(trial);
        if (*here < side.threshold) {
            if (trial >= side.last || side.by(trial) >= side.limit) return no_number;
            below = trial;
            below_growth = *here;
        } else {
            above = trial;
            above_growth = *here;
        }
        if (above) {
            const double part = (side.threshold - below_growth) / (above_growth - below_growth);
            const bool straight = above_growth < most_overshoot * side.threshold &&
                                  (below == 0 || below_growth > side.threshold / most_overshoot);
            trial = below + (straight ? std::clamp(part, 0.1, 0.9) : 0.5) * (*above - below);
            if (*above - below < close_enough * *above) break;
        } else {
            const double wanted = 1.1 * trial * side.threshold / std::max(*here, 1e-3 * side.threshold);
            trial = std::min(side.last, std::clamp(wanted, 1.1 * trial, most_growth * trial));
        }
    }
    return above ? place(trial) : no_number;
}

Interval Intervals::find(std::size_t i, const Interval& quadratic) {
    const Side down = side_of(i, -1), up = side_of(i, 1);
    if (!(down.threshold > 0)) return quadratic;
    if (stands(down) && stands(up)) return quadratic;
    const bool followed = refits_left_ > 0;
    return {end_of(down), end_of(up), followed};
}

}  // namespace

std::vector<Interval> quadratic_intervals(const FitErrors& errors,
                                          std::span<const IntervalParameter> parameters) {
    std::vector<Interval> intervals(parameters.size());
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const double reach = errors.quantile[i] * errors.errors[i];
        if (!std::isfinite(reach)) continue;
        const IntervalParameter& parameter = parameters[i];
        // A value that was set beyond a limit is inside its interval all the same.
        intervals[i].lower = std::max(parameter.value - reach, std::min(parameter.lower, parameter.value));
        intervals[i].upper = std::min(parameter.value + reach, std::max(parameter.upper, parameter.value));
    }
    return intervals;
}

std::vector<Interval> find_intervals(const FitErrors& errors, std::span<const IntervalParameter> parameters,
                                     Refit& refit, std::size_t most_refits) {
    std::vector<Interval> intervals = quadratic_intervals(errors, parameters);
    if (std::ranges::none_of(errors.errors, [](double error) { return std::isfinite(error); }))
        return intervals;
    Intervals search(errors, parameters, refit, most_refits);
    for (std::size_t i = 0; i < parameters.size(); ++i)
        if (std::isfinite(errors.errors[i])) intervals[i] = search.find(i, intervals[i]);
    return intervals;
}

}  // namespace anomalis::inversion
