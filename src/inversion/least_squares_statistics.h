#pragma once

#include <cstddef>
#include <span>

#include "inversion/least_squares.h"

// What the columns at the end of a fit say about its parameters; private to the solver.
namespace anomalis::inversion {

struct FitMatter {
    std::span<const double> triangle;  ///< R of the Jacobian's QR, column by column
    std::size_t rows = 0;
    std::size_t residual_count = 0;
    double rounding = 0;
    std::span<const FitParameter> parameters;
    std::span<const float> differences;  ///< that the columns were formed with
};

/// Fills errors, correlation and undetermined of an outcome whose sum of squares and `at_limit` are known.
/// A parameter is undetermined when its column does not stand out from rounding, when it takes part in a
/// combination of parameters that leaves the residuals as they are, or when its standard error is beyond
/// its scale.
void describe_fit(const FitMatter& matter, FitOutcome& outcome);

}  // namespace anomalis::inversion
