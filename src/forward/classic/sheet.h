#pragma once

#include "forward/body_job.h"
#include "forward/classic/shape_terms.h"

namespace anomalis::forward {

// Sheets of unlimited strike in the plane across it. For a strike that meets the profile the other way round
// (`strike_sine` below 0) x runs forward along the profile, so that strikes s and s + 180 are mirror images.

/// Adds the anomaly of a thin sheet (nT) to column 1: a line of poles at its top and, for a depth extent
/// above 0, the opposite one at its lower end.
void add_thin_sheet(const BodyJob& job, double strike_sine, const ShapeTerms& terms);

/// Adds the anomaly of a thick sheet (nT) to column 1; also a pipe without a length.
void add_thick_sheet(const BodyJob& job, double strike_sine, const ShapeTerms& terms);

}  // namespace anomalis::forward
