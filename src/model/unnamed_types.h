#pragma once

namespace anomalis {
class Faults;
struct Workspace;
}  // namespace anomalis

namespace anomalis::model {

/// Notes a doubt for each body whose type has no name, unless it is turned off: no formula knows its
/// shape, and its curves are zero. The window makes such a body a thin sheet as it reads it; where nobody
/// looks nothing is changed.
void note_unnamed_types(const Workspace& workspace, Faults& faults);

}  // namespace anomalis::model
