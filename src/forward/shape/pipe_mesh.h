#pragma once

#include <cstdint>
#include <vector>

#include "core/model_body.h"
#include "forward/shape/body_solid.h"

// The triangles of a solid of revolution. Private to this room; body_solid.h is the face.
namespace anomalis::forward {

/// Fills lists of the counted sizes. Raises Fault division_by_zero for a solid without length, which
/// leaves all points at the origin.
void build_mesh(const GraphicObject& object, const SolidCounts& counts, std::vector<Point3>& points,
                SolidFacets& facets);

}  // namespace anomalis::forward
