#pragma once

#include "core/workspace.h"
#include "forward/classic/shape_terms.h"

namespace anomalis::forward {

/// Adds the anomaly of a sphere (nT) to column 1: a dipole at `top`, the radius is `width`.
void add_sphere(const Workspace& workspace, ModelBody& body, const ShapeTerms& terms);

}  // namespace anomalis::forward
