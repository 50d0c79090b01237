#pragma once

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/exact/exact_notes.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

// The responses of all bodies.
namespace anomalis::forward {

struct WantedChannels {
    bool mag = false, grav = false;
};

/// Brings the responses of all bodies in these channels up to date and marks them so; the tables of the
/// channels are not touched. A body that is out of date in both is calculated in both at once, and bodies
/// side by side on as many cores as they are worth, which changes no bit. What goes wrong is noted in the
/// order of the bodies, that of the magnetics first. Raises Stopped; bodies that are not finished keep their
/// marks then.
ExactNotes calculate_bodies(Workspace& workspace, const WantedChannels& channels, Faults& faults,
                            Pacer& pacer);

}  // namespace anomalis::forward
