#pragma once

#include "show/handles/handle.h"

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The handles of a body in the plan, those in view: its place on the line, a lever that turns its strike,
/// the ends along strike, and the middle of a body that lies beside the line. A body without ends has its two
/// where it leaves the view.
std::vector<Handle> plan_handles(const Workspace& workspace, const ModelBody& body, const HandleView& view);

/// What the parameters of a body must be for one of its handles to come to `target` (east, north, m), as far
/// as they can: the place stays on the line, the ends on the strike, each without the other, a lever keeps
/// its length. A body without ends keeps none until one is drawn in; then it ends as far on the other side.
HandleValues drag_plan_handle(const Workspace& workspace, const ModelBody& body, const HandleView& view,
                              HandleKind kind, chart::Point target);

}  // namespace anomalis::show
