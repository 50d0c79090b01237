#pragma once

#include <cstddef>
#include <span>
#include <vector>

// A bounded least-squares solver. It knows parameters and residuals only; the library that it uses stays in
// its source file.
namespace anomalis::inversion {

struct FitParameter {
    float value = 0;
    float lower = 0;
    float upper = 0;
    float difference = 0;  ///< first change that a column of the Jacobian is formed with; above 0
    float least_difference = 0;
    float most_difference = 0;
    float scale = 0;  ///< a standard error beyond this says that the data leave the parameter open
};

/// What is fitted.
class FitProblem {
  public:
    virtual ~FitProblem() = default;
    virtual std::size_t residual_count() const = 0;
    /// Residuals at `values`, which become the state of the problem.
    virtual void residuals(std::span<const float> values, std::span<double> out) = 0;
    /// Residuals with parameter `index` (from 0) alone at `value`; the state stays as it was.
    virtual void probe(std::size_t index, float value, std::span<double> out) = 0;
    /// Length of the residual vector that rounding alone can make.
    virtual double rounding() const = 0;
    /// A better point was found: the state last evaluated.
    virtual void accepted() = 0;
    /// An iteration ended; false stops the fit.
    virtual bool iteration_done(int iteration) = 0;
};

enum class FitEnd { converged, iteration_limit, no_decrease };

/// Entries follow the parameters.
struct FitOutcome {
    FitEnd end = FitEnd::converged;
    int iterations = 0;
    std::vector<float> values;
    double sum_of_squares = 0;
    /// Standard errors; not a number for a parameter on a limit or without a determined value.
    std::vector<double> errors;
    /// Row by row; not a number where an error is.
    std::vector<double> correlation;
    std::vector<bool> undetermined;
    std::vector<bool> at_limit;
};

/// Minimises the sum of squared residuals inside the limits by the method of Levenberg (1944) and Marquardt
/// (1963): damping scaled by the columns, limits by an active set, forward differences. A parameter whose
/// limits cross is held. Values outside their limits stay until they move.
FitOutcome fit_least_squares(FitProblem& problem, std::span<const FitParameter> parameters,
                             int max_iterations);

}  // namespace anomalis::inversion
