#pragma once

#include <span>
#include <string>
#include <vector>

#include "inversion/fit_rows.h"
#include "inversion/least_squares.h"
#include "inversion/perform.h"

// What a fit says at its end: errors, intervals, and the record that the workspace keeps.
namespace anomalis::inversion {

/// Fills statistics and record of the result from the rows where the fit ended. The workspace must hold the
/// fitted model, brought up to date. `remarks`: what there is to say already. Raises Stopped.
void give_account(const FittedModel& model, const RunRequest& request, FitRows& rows,
                  std::span<const FitParameter> parameters, const FitOutcome& outcome,
                  std::vector<std::string> remarks, RunResult& result);

/// "top of body 2".
std::string parameter_place(const InversionParamPlace& place);

/// A sentence for each body that the fit does as well without.
std::vector<std::string> unneeded_bodies(FitRows& rows, const FitOutcome& outcome);

}  // namespace anomalis::inversion
