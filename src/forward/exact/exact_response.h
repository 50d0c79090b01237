#pragma once

#include <span>
#include <string_view>

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/body_job.h"
#include "forward/exact/exact_notes.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/station_view.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

// The exact route: every body's response is the field of the body as section and plan draw it.
namespace anomalis::forward {

/// Anomaly (nT) and attraction (mGal) of one body at every station, in double precision. The body's
/// reference point is brought up to date and its demagnetising tensor kept; `polyhedron` serves as memory.
/// What the body cannot have is noted and gives zeros.
void exact_anomaly(const Workspace& workspace, ModelBody& body, Polyhedron& polyhedron,
                   std::span<double> values, ExactNotes& notes, Pacer& pacer = no_pace());
void exact_gravity(const Workspace& workspace, ModelBody& body, Polyhedron& polyhedron,
                   std::span<double> values, ExactNotes& notes, Pacer& pacer = no_pace());

/// The same at some of the stations. `channel` is channel_mag or channel_grav.
void exact_values(const Workspace& workspace, ModelBody& body, int channel, const StationView& stations,
                  Polyhedron& polyhedron, std::span<double> values, ExactNotes& notes,
                  Pacer& pacer = no_pace());

/// What the text of a failure in a channel begins with.
std::string_view exact_failure(int channel);

/// The channels that are wanted into the body's response table, rounded to single precision: columns 1 and 2.
/// Both come out of one pass where a body has both, with the bits that each has alone. A failure is noted,
/// and a response that is not finite counts as zero.
void calculate_exact_responses(const BodyJob& job);

/// The same for one channel of a body of the workspace.
void calculate_exact_mag_response(Workspace& workspace, int body_number, ExactNotes& notes, Faults& faults,
                                  Pacer& pacer = no_pace());
void calculate_exact_gravity_response(Workspace& workspace, int body_number, ExactNotes& notes,
                                      Faults& faults, Pacer& pacer = no_pace());

/// A fault for each reason that was noted.
void report_notes(const ExactNotes& notes, Faults& faults);

/// The demagnetising tensor of a body's shape, in its axes; found once for a shape.
Tensor3 body_demagnetisation(ModelBody& body);

}  // namespace anomalis::forward
