#pragma once

#include "core/stale.h"

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

// The one place that knows what a change makes out of date. Nobody announces a change: the fields are
// compared with what they were when the derived values were last looked at.
namespace anomalis::model {

/// Drops the stations of a line that would now be read in another way.
void drop_line_read_otherwise(Workspace& workspace);

/// Compares every field with its known value and marks what its change makes out of date. Stations that would
/// now be read in another way are dropped. A sphere takes its strike from the line as it is calculated: that
/// is a change like any other, seen the next time. Allocates nothing but room for the responses of new
/// bodies.
void find_stale(Workspace& workspace);

}  // namespace anomalis::model
