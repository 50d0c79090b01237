#pragma once

#include "forward/polyhedron/polyhedron_mesh.h"

namespace anomalis::forward {

/// Where the derivatives are taken for a station (unit coordinates) that may stand on an edge or at a corner:
/// within 1e-8 of the radius of one, it is moved outward by twice as much, along the mean normal of the faces
/// there. Flat edges count. `scratch` takes a number for each vertex.
Point3 clear_of_edges(const PolyhedronMesh& mesh, const Point3& unit, double* scratch);

}  // namespace anomalis::forward
