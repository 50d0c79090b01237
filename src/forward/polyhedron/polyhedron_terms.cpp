#include "forward/polyhedron/polyhedron_terms.h"

#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

Point3 operator*(const Tensor3& t, const Point3& v) {
    return {t.xx * v.x + t.xy * v.y + t.xz * v.z, t.xy * v.x + t.yy * v.y + t.yz * v.z,
            t.xz * v.x + t.yz * v.y + t.zz * v.z};
}

}  // namespace

void FoldedTerms::fold(const PolyhedronMesh& mesh, const PolyhedronParts& parts, const Wanted& wanted) {
    kind_ = wanted.kind;
    fold_edges(mesh, parts, wanted);
    fold_faces(mesh, wanted);
}

void FoldedTerms::fold_edges(const PolyhedronMesh& mesh, const PolyhedronParts& parts, const Wanted& wanted) {
    edges_.clear();
    edges_.reserve(mesh.edges.size() * edge_term_size(wanted.kind));
    for (const std::int32_t number : parts.edge_order()) {
        const PolyhedronMesh::Edge& edge = mesh.edges[static_cast<std::size_t>(number)];
        edges_.push_back(edge.length);
        for (int k = 0; k < tensor_sums(wanted.kind); ++k)
            edges_.push_back(dot(wanted.first[k], edge.dyad * wanted.second[k]));
        if (!has_attraction(wanted.kind)) continue;
        const Point3 g = edge.dyad * Point3{0, 0, wanted.attraction / mesh.scale};
        const double at_edge = dot(g, mesh.vertices[static_cast<std::size_t>(edge.end[0])]);
        edges_.insert(edges_.end(), {g.x, g.y, g.z, at_edge});
    }
}

void FoldedTerms::fold_faces(const PolyhedronMesh& mesh, const Wanted& wanted) {
    faces_.clear();
    faces_.reserve(mesh.faces.size() * face_term_size(wanted.kind));
    for (const PolyhedronMesh::Face& face : mesh.faces) {
        const Point3 twice = face.area * 2;
        const Point3& corner = mesh.vertices[static_cast<std::size_t>(face.corner[0])];
        const double size = length(face.area);
        faces_.insert(faces_.end(),
                      {twice.x, twice.y, twice.z, dot(twice, corner) - 2 * size * plane_shift * mesh.radius});
        faces_.insert(faces_.end(), face.opposite_side.begin(), face.opposite_side.end());
        faces_.push_back(2 * size * mesh.face_tolerance);
        for (int k = 0; k < tensor_sums(wanted.kind); ++k)
            faces_.push_back(-2 * dot(wanted.first[k], face.normal) * dot(face.normal, wanted.second[k]));
        if (has_attraction(wanted.kind))
            faces_.push_back(-wanted.attraction / mesh.scale * face.normal.z / size);
    }
}

PolyhedronTerms FoldedTerms::of_part(const PolyhedronParts& parts, const PolyhedronParts::Part& part) const {
    return {kind_,
            &parts.vertices()[part.first_vertex].x,
            part.vertex_count,
            parts.edge_ends().data() + 2 * part.first_edge,
            edges_.data() + part.first_edge * edge_term_size(kind_),
            part.edge_count,
            parts.face_corners().data() + 3 * part.first_face,
            faces_.data() + part.first_face * face_term_size(kind_),
            part.face_count};
}

}  // namespace anomalis::forward
