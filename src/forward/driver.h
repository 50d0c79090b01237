#pragma once

#include "core/pacer.h"
#include "core/workspace.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

// The forward room: what every body of the model gives at every station. Others call `calculate_model`;
// the other chief headers are reference_point.h and body_solid.h (place and shape of a body),
// plan_outline.h and trapezoid.h (its outlines for drawing and export) and polyhedron.h (a kernel that
// stands alone). The rest serves these.
namespace anomalis::forward {

/// Brings the calculated stage of both channels up to date: row 1 of stage 2 of `mag_data` (nT) and
/// `grav_data` (mGal) is the sum of the bodies' responses.
///
/// Only bodies whose mark is clear are calculated; the sums are formed anew from all of them, so that no
/// rounding builds up. A body that is switched off counts as zero. A channel without a column is left
/// alone. A body whose response is not finite counts as zero and a fault names it. The two tables may be
/// working copies with the station count of the workspace. Allocates nothing once the arrays exist, but
/// for the solid of a body whose shape has changed, and with the exact formulas for the corners of a body.
/// Which formulas are used is the workspace's choice.
///
/// Responses that would not fit into memory are refused before any is calculated: a fault tells what they
/// need, and all stays as it was.
///
/// When `pacer` has the work left, Stopped goes on to the caller: the two tables are as they were, and a body
/// whose response was not finished keeps its mark clear.
void calculate_model(Workspace& workspace, ChannelTable& mag_data, ChannelTable& grav_data, Faults& faults,
                     Pacer& pacer = no_pace());

}  // namespace anomalis::forward
