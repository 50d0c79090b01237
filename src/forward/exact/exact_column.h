#pragma once

#include <span>

#include "forward/exact/exact_plane.h"

namespace anomalis::forward {

/// A strike-limited sheet without lower end: anomaly in nT and attraction in mGal, both truly endless.
void fill_column_anomaly(const ExactPlace& place, const SheetShape& sheet, const ExactField& field,
                         std::span<double> values);
void fill_column_gravity(const ExactPlace& place, const SheetShape& sheet, double density,
                         std::span<double> values);

}  // namespace anomalis::forward
