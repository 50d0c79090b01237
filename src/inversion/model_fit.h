#pragma once

#include "inversion/perform.h"

// The second way to the answer: the free parameters of a run as one bounded least-squares problem on the
// row of the target inside the station window.
namespace anomalis::inversion {

/// Fits the list of the inversion. `result.misfit_pair` must hold the misfit of the model as it stands and
/// the trial rows must be copies of the channels. A joint fit weighs each channel by its misfit scale.
/// The bodies hold the fitted values afterwards; `result` gets status, iterations, misfits and statistics.
void fit_model(const FittedModel& model, const RunRequest& request, RunObserver& observer,
               const RunClock& clock, RunResult& result);

}  // namespace anomalis::inversion
