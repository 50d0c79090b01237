#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <span>
#include <vector>

#include "core/pacer.h"

// A bounded least-squares solver. It knows parameters and residuals only.
namespace anomalis::inversion {

/// Limits of a parameter that has none.
inline constexpr float no_limit = 1e32F;

struct FitParameter {
    float value = 0;
    float lower = -no_limit;
    float upper = no_limit;
    /// A size: it is solved by the logarithm of its distance from `origin`, and never gets there.
    bool logarithmic = false;
    float origin = 0;
    /// A weak hold: so far from its start (of a logarithmic one, the logarithm of the ratio) the parameter
    /// costs what one residual of the present size does, so that what the residuals hardly feel does not run
    /// away. 0 for none.
    double hold = 0;
};

/// What is fitted.
class FitProblem {
  public:
    virtual ~FitProblem() = default;
    virtual std::size_t residual_count() const = 0;
    /// Residuals at `values`. Parameters that act linearly may be put at their best for the others first.
    virtual void residuals(std::vector<float>& values, Eigen::VectorXd& out) = 0;
    /// Derivatives of the residuals, a column a parameter.
    virtual void columns(std::span<const float> values, Eigen::MatrixXd& out) = 0;
    /// Length of the residual vector that rounding alone can make.
    virtual double rounding() const = 0;
    /// How far each parameter may go in one step from `values`; a logarithmic one, by which factor.
    virtual void largest_steps(std::span<const float> values, std::span<double> out) const = 0;
    /// An iteration ended with these values, the best so far; false stops the fit.
    virtual bool iteration_done(int iteration, std::span<const float> values) = 0;
    virtual Pacer& pacer() { return no_pace(); }
};

enum class FitEnd { converged, iteration_limit, no_decrease };

struct FitOutcome {
    FitEnd end = FitEnd::converged;
    int iterations = 0;
    std::vector<float> values;
    double sum_of_squares = 0;
    std::vector<bool> at_limit;  ///< it stands on a limit, or its limits cross
};

/// Minimises the sum of squared residuals inside the limits by the method of Levenberg (1944) and Marquardt
/// (1963): damping in units of the columns by the gain (Nielsen 1999), limits and largest steps by an active
/// set. Weak holds are a prior (Jackson 1979) that counts less as the fit gets better; what the residuals
/// determine hardly feels it. A parameter whose limits cross is held. Values outside their limits stay until
/// they move. Raises Stopped.
FitOutcome fit_least_squares(FitProblem& problem, std::span<const FitParameter> parameters,
                             int max_iterations);

/// By parameter: it stands on a limit, or its limits cross.
std::vector<bool> on_limits(std::span<const FitParameter> parameters, std::span<const float> values);

}  // namespace anomalis::inversion
