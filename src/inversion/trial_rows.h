#pragma once

#include "core/workspace.h"

// The working copies of the channels that a run calculates its trials in; private to this room.
namespace anomalis::inversion {

/// `mag_work` and `grav_work` become copies of the channels.
void start_trial_rows(Workspace& workspace);

/// The calculated stage of the working copies, all rows, becomes that of the channels; with it goes the
/// observed residual row, which a regional takes along.
void accept_trial_rows(Workspace& workspace);

/// The same the other way.
void drop_trial_rows(Workspace& workspace);

}  // namespace anomalis::inversion
