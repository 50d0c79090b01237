#include "forward/polyhedron/polyhedron_parts.h"

#include <algorithm>

namespace anomalis::forward {

void PolyhedronParts::split(const PolyhedronMesh& mesh) {
    vertices_.clear();
    edge_ends_.clear();
    face_corners_.clear();
    local_.assign(mesh.vertices.size(), -1);
    most_vertices_ = 0;
    parts_.assign((mesh.faces.size() + most_faces - 1) / most_faces, {});
    order_edges(mesh);
    for (std::size_t p = 0; p < parts_.size(); ++p) {
        Part& part = parts_[p];
        part.first_vertex = vertices_.size();
        part.first_face = p * most_faces;
        part.face_count = std::min(most_faces, mesh.faces.size() - part.first_face);
        for (std::size_t f = part.first_face; f < part.first_face + part.face_count; ++f)
            for (std::int32_t corner : mesh.faces[f].corner)
                face_corners_.push_back(local_vertex(mesh, corner, part));
        for (std::size_t e = part.first_edge; e < part.first_edge + part.edge_count; ++e)
            for (std::int32_t end : mesh.edges[static_cast<std::size_t>(edge_order_[e])].end)
                edge_ends_.push_back(local_vertex(mesh, end, part));
        part.vertex_count = vertices_.size() - part.first_vertex;
        most_vertices_ = std::max(most_vertices_, part.vertex_count);
    }
}

void PolyhedronParts::order_edges(const PolyhedronMesh& mesh) {
    const auto part_of = [](const PolyhedronMesh::Edge& edge) {
        return static_cast<std::size_t>(edge.face) / most_faces;
    };
    for (const PolyhedronMesh::Edge& edge : mesh.edges) ++parts_[part_of(edge)].edge_count;
    std::size_t next = 0;
    for (Part& part : parts_) {
        part.first_edge = next;
        next += part.edge_count;
        part.edge_count = 0;
    }
    edge_order_.resize(mesh.edges.size());
    for (std::size_t e = 0; e < mesh.edges.size(); ++e) {
        Part& part = parts_[part_of(mesh.edges[e])];
        edge_order_[part.first_edge + part.edge_count++] = static_cast<std::int32_t>(e);
    }
}

/// The vertices of a part follow each other, so a number from before its first belongs to another part.
std::int32_t PolyhedronParts::local_vertex(const PolyhedronMesh& mesh, std::int32_t vertex,
                                           const Part& part) {
    const auto first = static_cast<std::int32_t>(part.first_vertex);
    std::int32_t& place = local_[static_cast<std::size_t>(vertex)];
    if (place < first) {
        place = static_cast<std::int32_t>(vertices_.size());
        vertices_.push_back(mesh.vertices[static_cast<std::size_t>(vertex)]);
    }
    return place - first;
}

}  // namespace anomalis::forward
