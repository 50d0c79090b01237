#pragma once

#include <vector>

#include "forward/polyhedron/polyhedron_mesh.h"

namespace anomalis::forward {

/// A mesh cut into runs of faces, each with copies of the vertices that it needs. A block of stations is
/// taken through one part after the other, so that what a part needs stays in the near memory of the
/// processor and the cost of a facet does not grow with the mesh. A mesh of ordinary size is one part.
class PolyhedronParts {
  public:
    static constexpr std::size_t most_faces = 4096;

    struct Part {
        std::size_t first_vertex = 0, vertex_count = 0;
        std::size_t first_edge = 0, edge_count = 0;
        std::size_t first_face = 0, face_count = 0;
    };

    void split(const PolyhedronMesh& mesh);

    const std::vector<Part>& parts() const { return parts_; }
    const std::vector<Point3>& vertices() const { return vertices_; }
    /// Edges of the mesh in the order of the parts. An edge belongs to the part of its first face.
    const std::vector<std::int32_t>& edge_order() const { return edge_order_; }
    /// Two for an edge, in that order, and three for a face: numbers within the part.
    const std::vector<std::int32_t>& edge_ends() const { return edge_ends_; }
    const std::vector<std::int32_t>& face_corners() const { return face_corners_; }
    std::size_t most_vertices() const { return most_vertices_; }

  private:
    void order_edges(const PolyhedronMesh& mesh);
    std::int32_t local_vertex(const PolyhedronMesh& mesh, std::int32_t vertex, const Part& part);

    std::vector<Part> parts_;
    std::vector<Point3> vertices_;
    std::vector<std::int32_t> edge_order_, edge_ends_, face_corners_;
    std::vector<std::int32_t> local_;  ///< the latest copy of each vertex of the mesh, -1 before the first
    std::size_t most_vertices_ = 0;
};

}  // namespace anomalis::forward
