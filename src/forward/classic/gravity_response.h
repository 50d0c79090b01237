#pragma once

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/body_job.h"
#include "forward/gravity_constant.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// Fills column 2 of the body's response with its gravity (mGal) at every station: a polygon across
/// strike for a sheet of unlimited strike, the six faces of the prism for a limited one, a polyhedron for
/// a pipe. All other types give zero, as does a strike within 5.7 degrees of the profile.
///
/// The polygon gives half of what a very long prism gives: a density that was found with one form does not
/// hold for the other. A failure, or a response that is not finite, is noted and names the body. Where
/// `found` the attraction of the body is in the job's memory already.
void calculate_gravity_response(const BodyJob& job, bool found);

/// The same for a body of the workspace by its number.
void calculate_gravity_response(Workspace& workspace, int body_number, Faults& faults,
                                Pacer& pacer = no_pace());

/// A density that is too small has no response.
bool has_weight(const ModelBody& body);

}  // namespace anomalis::forward
