#pragma once

#include "core/faults.h"
#include "core/inversion_state.h"
#include "core/pacer.h"
#include "core/workspace.h"

// One number that says how well a filtered row of the model fits the data, and the objective of the
// inversion: from the bodies as they stand to the pair of data and gradient misfit.
namespace anomalis::model {

/// Square root of the sum of squared differences (calculated less observed) over the stations `first` to
/// `last` of a row, divided by the number of intervals. Deliberately not a root mean square: the root is
/// taken before the division. Stations without a reading are as if they were not there. A fault (one station,
/// a window beyond the row) is noted and gives 0.
double calculate_residual_norm(int first, int last, int row, const ChannelTable& data, Faults& faults);

/// The fixed divisors of a channel's norms: magnetics 1 and 10, gravity 10 and 100.
MisfitPair misfit_scale_of(int channel);
/// Takes the divisors of the inversion channel. Only a load and the set-up of a run do so.
void set_misfit_scale(InversionState& inversion);

/// The pair of one channel's rows by the given divisors, over the station window.
MisfitPair channel_misfit(const Workspace& workspace, const ChannelTable& rows, const MisfitPair& scale,
                          Faults& faults);

/// The pair of the inversion channel from the filtered rows as they stand; no model is evaluated.
MisfitPair calculate_misfit(const Workspace& workspace, const InversionState& inversion, Faults& faults);

/// The objective: calculates the model into the given rows, filters the calculated stage of each channel
/// that has a column, and measures. Allocates nothing once the rows exist, and recalculates only bodies whose
/// marks are clear. Lets Stopped through.
MisfitPair evaluate_model_misfit(Workspace& workspace, InversionState& inversion, ChannelTable& mag_rows,
                                 ChannelTable& grav_rows, Faults& faults, Pacer& pacer = no_pace());

}  // namespace anomalis::model
