#pragma once

#include "core/workspace.h"

namespace anomalis {
class Faults;
class Pacer;
}  // namespace anomalis

namespace anomalis::forward {

/// Fills column 1 with the anomaly (nT) of a strike-limited thick sheet: the exact field of its prism,
/// without demagnetisation. With a negative `include_demagnetisation`, which only a file can say, face by
/// face through columns 3 to 5 instead. Rebuilds the moment of the body in north, east, down.
void fill_prism(Workspace& workspace, ModelBody& body, Faults& faults, Pacer& pacer);

/// Fills column 1 with the anomaly (nT) of a pipe of limited length, demagnetised when
/// `include_demagnetisation` is not 0.
void fill_pipe(Workspace& workspace, ModelBody& body, Faults& faults, Pacer& pacer);

/// Fills column 2 with the gravity (mGal) of a pipe.
void fill_pipe_gravity(Workspace& workspace, ModelBody& body, Faults& faults, Pacer& pacer);

}  // namespace anomalis::forward
