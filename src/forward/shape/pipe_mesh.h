#pragma once

#include <cstdint>
#include <vector>

#include "core/model_body.h"
#include "forward/shape/body_solid.h"

// The triangles of a solid of revolution. Private to this room; body_solid.h is the face.
namespace anomalis::forward {

/// How finely a solid is cut, and how many points and facets that takes.
struct MeshCounts {
    std::int64_t sectors = 0;
    std::int64_t sections = 0;
    std::int64_t points = 0;
    std::int64_t facets = 0;
};

/// Counts all zero: a shape that cannot be. Raises a Fault as `require_few_facets` does.
MeshCounts count_mesh(const GraphicObject& object);

/// Raises a Fault that tells the number and the limit when there are more than `most_solid_facets`.
void require_few_facets(double facets);

/// Fills lists of the counted sizes. Raises Fault division_by_zero for a solid without length, which
/// leaves all points at the origin.
void build_mesh(const GraphicObject& object, const MeshCounts& counts, std::vector<Point3>& points,
                SolidFacets& facets);

}  // namespace anomalis::forward
