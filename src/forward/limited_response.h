#pragma once

#include "core/workspace.h"

namespace anomalis {

class Prompts;

/// Fills column 1 with the anomaly (nT) of a strike-limited thick sheet without demagnetisation, face by face
/// through columns 3 to 5. Rebuilds the moment of the body in north, east, down.
void fill_prism(Workspace& workspace, ModelBody& body, Prompts& prompts);

}  // namespace anomalis
