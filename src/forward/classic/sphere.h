#pragma once

#include "forward/body_job.h"
#include "forward/classic/shape_terms.h"

namespace anomalis::forward {

/// Adds the anomaly of a sphere (nT) to column 1: a dipole at `top`, the radius is `width`.
void add_sphere(const BodyJob& job, const ShapeTerms& terms);

}  // namespace anomalis::forward
