#pragma once

#include <array>

#include "core/model_body.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// Eight corners of a sheet: level (0 top, 1 bottom), corner (0 to 3 round the level), coordinate (east,
/// north, up), in m from the reference point at `top`.
using Trapezoid = std::array<std::array<std::array<float, 3>, 4>, 2>;

/// The corners of a sheet for the export of its solid. A `depth_extent` of 0 is drawn 1000 m deep.
/// Returns 0, or -1 after a failure, which is noted.
int convert_profile_model_to_trapezoid(const ModelBody& body, Trapezoid& corners, Faults& faults);

/// The same for the sheet that the exact formulas calculate, a thin one as wide as it is over the sine of
/// its dip.
int convert_exact_sheet_to_trapezoid(const ModelBody& body, Trapezoid& corners, Faults& faults);

}  // namespace anomalis::forward
