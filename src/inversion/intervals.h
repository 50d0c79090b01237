#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "inversion/fit_errors.h"

namespace anomalis::inversion {

/// Fits again with one parameter held. Weights, channels and window stay those of the fit.
class Refit {
  public:
    virtual ~Refit() = default;
    /// The weighted sum of squares at these values of all parameters, with the best regional.
    virtual double sum_of_squares(std::span<const double> values) = 0;
    /// The smallest weighted sum of squares with that parameter held at `value`; `start` holds values of all
    /// parameters to begin with.
    virtual double refit(std::size_t parameter, double value, std::span<const double> start) = 0;
};

/// A parameter at the end of a fit, in its unit.
struct IntervalParameter {
    double value = 0;
    /// Physical limits: an interval does not go on beyond them.
    double lower = -std::numeric_limits<double>::infinity();
    double upper = std::numeric_limits<double>::infinity();
};

/// A 90 % interval; a side that the data leave open is not a number.
struct Interval {
    double lower = std::numeric_limits<double>::quiet_NaN();
    double upper = std::numeric_limits<double>::quiet_NaN();
    bool profiled = false;  ///< not the quadratic one
};

/// The 90 % intervals of the parameters: quadratic, the value +- quantile standard errors, where the sum of
/// squares at both of its ends is as the columns say; else from the profile of the likelihood (Venzon and
/// Moolgavkar 1988), with a threshold that gives the quadratic interval wherever the columns are true. A side
/// is open when the profile does not reach the threshold within 30 times the quadratic interval, within a
/// factor of 100 of a size (what has a limit on one side), or before a physical limit. A parameter that is
/// held has no interval. At most `most_refits` refits; what is left then keeps its quadratic interval, cut at
/// the physical limits.
std::vector<Interval> find_intervals(const FitErrors& errors, std::span<const IntervalParameter> parameters,
                                     Refit& refit, std::size_t most_refits);

/// The quadratic intervals alone.
std::vector<Interval> quadratic_intervals(const FitErrors& errors,
                                          std::span<const IntervalParameter> parameters);

}  // namespace anomalis::inversion
