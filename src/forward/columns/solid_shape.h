#pragma once

#include <array>
#include <vector>

#include "forward/columns/solid_columns_kernel.h"
#include "forward/exact/exact_axes.h"
#include "forward/shape/exact_shape.h"

namespace anomalis::forward {

/// The corners of a limited sheet in the axes of the body, or how fast they move: 1 to 4 round the top, 5 to
/// 8 below them; without a lower end the top alone and the unit vector that its walls run off along.
struct SolidCorners {
    std::vector<Point3> corner;
    Point3 along;
};
SolidCorners corners_of(const SheetShape& sheet);
/// How they move with a change of the sheet.
SolidCorners corner_slopes(const SheetShape& sheet, const SheetShape& change);
/// `corners` moved by so much of a change.
SolidCorners moved(SolidCorners corners, const SolidCorners& change, double by);

/// Which corners the edges join and what the faces go round; without weights.
SolidSection section_of(const SolidCorners& corners);
/// The corners go elsewhere, the edges and faces with them.
void place_corners(const SolidCorners& corners, SolidSection& section);

/// The weights of the anomaly of a body with this field, and of the attraction for a unit of `factor`, the
/// constant of gravity times the density.
void set_anomaly_weights(const ExactField& field, SolidSection& section);
void set_gravity_weights(double factor, SolidSection& section);

}  // namespace anomalis::forward
