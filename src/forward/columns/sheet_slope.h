#pragma once

#include "forward/polyhedron/polyhedron.h"
#include "forward/shape/exact_shape.h"

namespace anomalis::forward {

/// How the numbers of a sheet's shape change per unit of one of the body's parameters (m, degrees): a shape
/// of derivatives. All 0 for a parameter that is no part of the shape, for a dip that is held flat and for
/// extents of 0, which stand for no end. The sheet must meet its far wall.
SheetShape sheet_slope(const ModelBody& body, const SheetShape& sheet, int param_code);

/// What such a change does to the demagnetising tensor, by differences of the fourth order: it costs no
/// station.
Tensor3 sheet_tensor_slope(const SheetShape& sheet, const SheetShape& change);

/// `sheet_slope` of the face of an edge or a step.
StepShape step_slope(const ModelBody& body, const StepShape& step, int param_code);

}  // namespace anomalis::forward
