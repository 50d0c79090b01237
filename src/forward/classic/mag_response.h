#pragma once

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/body_job.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// Fills column 1 of the body's response with its total field anomaly (nT) at every station: closed
/// formulae for sheets, edges, steps, spheres and wires; a polyhedron for a strike-limited thick sheet or
/// pipe. A polygon and an unnamed type give zero, as does a strike within 5.7 degrees of the profile.
///
/// Derived fields and the reference point of the body are brought up to date, and a sphere takes its
/// strike from the profile. A failure, or a response that is not finite, is noted and names the body.
///
/// True where the pass has found the gravity as well, which the job wants: then it is in the job's memory.
bool calculate_mag_response(const BodyJob& job);

/// The same for a body of the workspace by its number.
void calculate_mag_response(Workspace& workspace, int body_number, Faults& faults, Pacer& pacer = no_pace());

}  // namespace anomalis::forward
