#pragma once

#include <Eigen/Core>
#include <vector>

// What the columns at the end of a fit say about its parameters.
namespace anomalis::inversion {

struct FitMatter {
    Eigen::MatrixXd columns;  ///< of the weighed residuals, by parameter
    double sum_of_squares = 0;
    double freedom = 0;   ///< residuals less what was fitted
    double rounding = 0;  ///< length of the residual vector that rounding alone can make
    std::vector<bool> held;
    /// By parameter: a change that matters. An error beyond it leaves the parameter open.
    std::vector<double> scale;
};

struct FitDescription {
    std::vector<double> errors;       ///< standard errors; not a number without a determined value
    std::vector<double> correlation;  ///< row by row; not a number where an error is
    std::vector<bool> undetermined;
};

/// A parameter is undetermined when its column does not stand out from rounding, when it takes part in a
/// combination of parameters that leaves the residuals as they are, or when its standard error is beyond
/// its scale. By the eigenvalues of the normal matrix.
FitDescription describe_fit(const FitMatter& matter);

}  // namespace anomalis::inversion
