#pragma once

#include "core/workspace.h"
#include "forward/exact/exact_notes.h"

namespace anomalis {
class Faults;
class Pacer;
}  // namespace anomalis

namespace anomalis::forward {

struct BodyMemory;

/// One body whose responses are asked for. The workspace is only read, so that several threads may be at
/// work, each at a body of its own with its own memory.
struct BodyJob {
    const Workspace& workspace;
    int number;       ///< of the body, for the texts
    ModelBody& body;  ///< of the workspace
    bool mag, grav;   ///< the channels that are wanted
    BodyMemory& memory;
    ExactNotes& notes;
    Faults& mag_faults;  ///< what goes wrong, channel by channel
    Faults& grav_faults;
    Pacer& pacer;

    bool both() const { return mag && grav; }
};

}  // namespace anomalis::forward
