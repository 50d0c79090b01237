#include "forward/polyhedron/polyhedron_clearance.h"

#include <algorithm>
#include <cmath>

#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

double square_distance_to_segment(const Point3& p, const Point3& a, const Point3& b) {
    const Point3 ab = b - a, ap = p - a;
    const double t = std::clamp(dot(ap, ab) / dot(ab, ab), 0.0, 1.0);
    const Point3 off = ap - ab * t;
    return dot(off, off);
}

}  // namespace

Point3 clear_of_edges(const PolyhedronMesh& mesh, const Point3& unit, double* scratch) {
    for (std::size_t v = 0; v < mesh.vertices.size(); ++v) scratch[v] = length(mesh.vertices[v] - unit);
    const double near = edge_clearance * mesh.radius;
    Point3 outward;
    for (const PolyhedronMesh::Face& face : mesh.faces) {
        bool touches = false;
        for (std::size_t i = 0; i < 3 && !touches; ++i) {
            const auto a = static_cast<std::size_t>(face.corner[(i + 1) % 3]);
            const auto b = static_cast<std::size_t>(face.corner[(i + 2) % 3]);
            const double detour = scratch[a] + scratch[b] - std::sqrt(face.opposite_side[i]);
            touches = detour < 2.1 * near &&
                      square_distance_to_segment(unit, mesh.vertices[a], mesh.vertices[b]) < near * near;
        }
        if (touches) outward = outward + face.normal;
    }
    const double size = length(outward);
    return size > 0 ? unit + outward * (2 * near / size) : unit;
}

}  // namespace anomalis::forward
