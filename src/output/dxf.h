#pragma once

#include <string>

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// Drawings for CAD, with the coordinate system in a comment where it is known: plain DXF text with a header
// of extents and a list of entities, lines ended by CR LF.
namespace anomalis::output {

/// Writes the bodies as 3D faces, one layer a body: sheets as boxes of six faces, pipes and wires as the
/// triangles of their solids, which are brought up to date. A body whose shape cannot be formed is left out.
/// Returns 0, or -1 after a failure, which was shown; what was drawn up to a failed body is written then, but
/// a failure of the disk leaves the old file.
int write_body_dxf(const std::string& path, const Workspace& workspace, Prompts& prompts);

/// Writes the profile line and the outlines of the bodies as polylines, cut to the extents. The same results.
int write_plan_dxf(const std::string& path, const Workspace& workspace, Prompts& prompts);

}  // namespace anomalis::output
