#pragma once

#include "core/workspace.h"
#include "forward/classic/shape_terms.h"

namespace anomalis::forward {

/// Adds the anomaly of a single edge (nT) to column 1. Width and depth extent have no effect.
void add_edge(const Workspace& workspace, ModelBody& body, const ShapeTerms& terms);

/// Adds the anomaly of a sloping step (nT) to column 1: `width` is the offset of its lower corner,
/// `depth_extent` the throw. Raises Fault division_by_zero at a station level with the lower corner.
void add_sloping_step(const Workspace& workspace, ModelBody& body, const ShapeTerms& terms);

}  // namespace anomalis::forward
