#pragma once

#include "show/handles/handle.h"

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The handles of a body in the section, those in view. None for a body that the section does not show.
/// Sheets: top edge, corners, bottom edge, feet, and a lever beside the near wall that turns the dip; edges
/// and steps have no width; pipes, wires and spheres have middle and rim. A narrow or endless body has fewer.
std::vector<Handle> section_handles(const Workspace& workspace, const ModelBody& body,
                                    const HandleView& view);

/// What the parameters of a body must be for one of its handles to come to `target` (m), as far as they can:
/// sizes stay above 0, a dip off the level, a lever keeps its length. A sheet without lower end keeps none
/// while its bottom is not raised.
HandleValues drag_section_handle(const Workspace& workspace, const ModelBody& body, const HandleView& view,
                                 HandleKind kind, chart::Point target);

}  // namespace anomalis::show
