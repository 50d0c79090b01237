#pragma once

#include "core/faults.h"
#include "core/inversion_state.h"
#include "core/pacer.h"
#include "core/workspace.h"

namespace anomalis::inversion {

/// What a run changes: the model, what the inversion keeps between runs, and what went wrong on the way.
struct FittedModel {
    Workspace& workspace;
    InversionState& inversion;
    Faults& faults;
    Pacer& pacer = no_pace();
};

}  // namespace anomalis::inversion
