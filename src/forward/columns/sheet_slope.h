#pragma once

#include "forward/shape/exact_shape.h"

namespace anomalis::forward {

/// How the numbers of a sheet's shape change per unit of one of the body's parameters (m, degrees): a shape
/// of derivatives. All 0 for a parameter that is no part of the shape, for a dip that is held flat and for
/// extents of 0, which stand for no end. The sheet must meet its far wall.
SheetShape sheet_slope(const ModelBody& body, const SheetShape& sheet, int param_code);

/// The same of the face of an edge or a step.
StepShape step_slope(const ModelBody& body, const StepShape& step, int param_code);

}  // namespace anomalis::forward
