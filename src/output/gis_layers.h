#pragma once

#include <string>
#include <vector>

#include "output/gis_tables.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// What a map of the model shows, whatever format it goes into. Private to this room.
namespace anomalis::output {

/// The stations; the outlines of the bodies on the ground, as the plan draws them; the middle of the top of
/// each body. In the system `target`, which is the line's own when it is the same text. Raises Fault when the
/// system of the line or the target is not known, or a place has no image there.
std::vector<GisLayer> gis_layers(const Workspace& workspace, const std::string& target);

}  // namespace anomalis::output
