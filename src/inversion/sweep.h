#pragma once

#include "inversion/fitted_model.h"
#include "inversion/run_observer.h"

// The sweeps: one parameter at a time takes a secant step that aims the misfit at zero.
namespace anomalis::inversion {

/// What lives through the sweeps of one run.
struct SweepState {
    MisfitPair misfit_pair{};  ///< the accepted misfit
    /// Failed trials so far. The budget of four belongs to the run, not to a parameter:
    /// test `Sweep, the_halvings_belong_to_the_run`.
    int halvings = 0;
};

/// One iteration: every free parameter has its turn, in order. Trials go to `mag_work` and `grav_work`,
/// which must be copies of the rows when the run begins; an accepted trial is copied into `mag_data` and
/// `grav_data`. The bodies hold the accepted values afterwards, but a parameter without influence keeps its
/// probe: test `Sweep, a_flat_parameter_keeps_its_probe`. The observer is told of each evaluation.
void sweep_parameters(const FittedModel& model, SweepState& state, RunObserver& observer);

}  // namespace anomalis::inversion
