#include "forward/columns/solid_shape.h"

#include <algorithm>
#include <cmath>

#include "forward/polyhedron/vector3.h"
#include "forward/shape/prism.h"

namespace anomalis::forward {

namespace {

Point3 unit(const Point3& v) {
    return v * (1 / length(v));
}

Point3 vector_of(const double* v) {
    return {v[0], v[1], v[2]};
}

void store(const Point3& from, double* to) {
    to[0] = from.x;
    to[1] = from.y;
    to[2] = from.z;
}

/// Adds the side from `from` to `to` of a face that it goes round; the other face has it the other way.
void add_side(int from, int to, int face, SolidSection& section) {
    for (int e = 0; e < section.edges; ++e)
        if (section.edge[e].from == to && section.edge[e].to == from) {
            section.edge[e].right = face;
            return;
        }
    SolidSection::Edge& edge = section.edge[section.edges++];
    edge.from = from;
    edge.to = to;
    edge.left = face;
}

SolidSection closed_section(bool inside_out) {
    SolidSection section{};
    section.corners = 8;
    section.faces = 6;
    for (int f = 0; f < 6; ++f) {
        for (int k = 0; k < 4; ++k)
            section.face[f].corner[k] =
                prism_faces[static_cast<std::size_t>(f)][static_cast<std::size_t>(inside_out ? 3 - k : k)];
        for (int k = 0; k < 4; ++k)
            add_side(section.face[f].corner[k], section.face[f].corner[(k + 1) % 4], f, section);
    }
    return section;
}

/// Face 0 is the top, 1 + k the strip of its edge k.
SolidSection endless_section(bool inside_out) {
    SolidSection section{};
    section.corners = 4;
    section.faces = 5;
    for (int k = 0; k < 4; ++k) section.face[0].corner[k] = inside_out ? 3 - k : k;
    for (int k = 0; k < 4; ++k) {
        const int from = section.face[0].corner[k], to = section.face[0].corner[(k + 1) % 4];
        section.edge[k] = {.from = from, .to = to, .left = 0, .right = 1 + k};
        section.edge[4 + k] = {.from = from, .to = -1, .left = 1 + k, .right = 1 + (k + 3) % 4};
        section.face[1 + k] = {.corner = {to, from, -1, -1}};
    }
    section.edges = 8;
    return section;
}

/// The outward normals of an edge within the faces on its left and on its right.
struct EdgeNormals {
    Point3 left, right;
};
EdgeNormals edge_normals(const SolidSection& section, const SolidSection::Edge& edge) {
    const Point3 along = vector_of(edge.along);
    return {cross(along, vector_of(section.face[edge.left].normal)),
            cross(vector_of(section.face[edge.right].normal), along)};
}

}  // namespace

SolidCorners corners_of(const SheetShape& sheet) {
    SolidCorners corners;
    for (const Point3& corner : sheet_corners(sheet)) corners.corner.push_back(corner);
    if (sheet.depth != 0) return corners;
    corners.corner.resize(4);
    corners.along = unit({sheet.cotangent, 0, -1});
    return corners;
}

SolidCorners corner_slopes(const SheetShape& sheet, const SheetShape& change) {
    const double near = -change.near_end * sheet.plunge - sheet.near_end * change.plunge;
    const double far = -change.far_end * sheet.plunge - sheet.far_end * change.plunge;
    SolidCorners slopes;
    slopes.corner = {{0, change.far_end, far},
                     {0, change.near_end, near},
                     {change.width, change.near_end, change.rise + near},
                     {change.width, change.far_end, change.rise + far}};
    if (sheet.depth == 0) {
        const double squared = 1 + sheet.cotangent * sheet.cotangent;
        slopes.along = Point3{1, 0, sheet.cotangent} * (change.cotangent / (squared * std::sqrt(squared)));
        return slopes;
    }
    const Point3 lower{change.cotangent * sheet.depth + sheet.cotangent * change.depth, 0, -change.depth};
    for (std::size_t k = 0; k < 4; ++k) slopes.corner.push_back(slopes.corner[k] + lower);
    return slopes;
}

SolidCorners moved(SolidCorners corners, const SolidCorners& change, double by) {
    for (std::size_t k = 0; k < corners.corner.size(); ++k)
        corners.corner[k] = corners.corner[k] + change.corner[k] * by;
    if (corners.corner.size() == 4) corners.along = unit(corners.along + change.along * by);
    return corners;
}

SolidSection section_of(const SolidCorners& corners) {
    const auto& c = corners.corner;
    const Point3 top = cross(c[1] - c[0], c[3] - c[0]);
    const bool endless = c.size() == 4;
    const bool inside_out = dot(top, endless ? corners.along : c[4] - c[0]) > 0;
    SolidSection section = endless ? endless_section(inside_out) : closed_section(inside_out);
    place_corners(corners, section);
    return section;
}

void place_corners(const SolidCorners& corners, SolidSection& section) {
    const auto at = [&](int corner) { return corners.corner[static_cast<std::size_t>(corner)]; };
    for (int k = 0; k < section.corners; ++k) store(at(k), section.corner[k]);
    for (int e = 0; e < section.edges; ++e) {
        SolidSection::Edge& edge = section.edge[e];
        const Point3 along = edge.to < 0 ? corners.along : at(edge.to) - at(edge.from);
        edge.length = length(along);
        store(unit(along), edge.along);
    }
    for (int f = 0; f < section.faces; ++f) {
        SolidSection::Face& face = section.face[f];
        const Point3 first = at(face.corner[1]) - at(face.corner[0]);
        const Point3 spanned =
            cross(first, face.corner[3] < 0 ? corners.along : at(face.corner[3]) - at(face.corner[0]));
        face.spread = length(spanned);
        store(unit(spanned), face.normal);
    }
}

void set_anomaly_weights(const ExactField& field, SolidSection& section) {
    std::array<double, SolidSection::most_faces> poles{};
    for (int f = 0; f < section.faces; ++f) {
        const Point3 normal = vector_of(section.face[f].normal);
        poles[static_cast<std::size_t>(f)] = dot(field.magnetisation, normal);
        section.face[f].weight = {poles[static_cast<std::size_t>(f)] * dot(normal, field.direction), {}};
    }
    for (int e = 0; e < section.edges; ++e) {
        SolidSection::Edge& edge = section.edge[e];
        const EdgeNormals normals = edge_normals(section, edge);
        edge.weight = {poles[static_cast<std::size_t>(edge.left)] * dot(normals.left, field.direction) +
                           poles[static_cast<std::size_t>(edge.right)] * dot(normals.right, field.direction),
                       {}};
    }
}

void set_gravity_weights(double factor, SolidSection& section) {
    section.gradients = true;
    const auto level = [&](int face) { return factor * section.face[face].normal[2]; };
    for (int f = 0; f < section.faces; ++f) {
        SolidSection::Face& face = section.face[f];
        face.weight.constant = 0;
        store(vector_of(face.normal) * level(f), face.weight.gradient);
    }
    for (int e = 0; e < section.edges; ++e) {
        SolidSection::Edge& edge = section.edge[e];
        const EdgeNormals normals = edge_normals(section, edge);
        edge.weight.constant = 0;
        store(normals.left * level(edge.left) + normals.right * level(edge.right), edge.weight.gradient);
    }
}

}  // namespace anomalis::forward
