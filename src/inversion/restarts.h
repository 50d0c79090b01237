#pragma once

#include <span>
#include <vector>

#include "inversion/fit_rows.h"
#include "inversion/least_squares.h"

// Fits from perturbed starts, on all cores: a fit finds the nearest optimum, and another may be better.
namespace anomalis::inversion {

struct RestartRequest {
    int count = 0;  ///< of the perturbed starts
    int max_iterations = 0;
    std::span<const FitParameter> parameters;  ///< as the fit began
    std::span<const float> fitted;             ///< where it ended
    double sum_of_squares = 0;                 ///< there
    const bool& stop;                          ///< set while it goes on: what is ready is given back
};

struct Restarts {
    std::vector<FitOutcome> ends;  ///< in the order of the starts, whatever the number of cores
    long evaluations = 0;
};

/// Each start moves the bodies round which the fit is worst, or all of them, to the best of some places by
/// chance; it is the same for the same number. Later ones go on from the best end of the earlier ones.
/// Raises Stopped when the pacer has the work left.
Restarts fit_from_starts(const Workspace& workspace, const FitRows& rows, const RestartRequest& request,
                         Pacer& pacer);

}  // namespace anomalis::inversion
