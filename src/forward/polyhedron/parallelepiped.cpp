#include "forward/polyhedron/parallelepiped.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

constexpr std::size_t corner_count = 8, edge_count = 12, triangle_count = 12;

/// Corners may be this many roundings of the coordinates off their places.
constexpr double roundings = 16;

/// What is below this is not a direction that a body was given but none, whatever the rounding.
constexpr double largest_uncertainty = 1e-8;

void store(const Point3& from, double* to) {
    to[0] = from.x;
    to[1] = from.y;
    to[2] = from.z;
}

int other_end(const PolyhedronMesh::Edge& edge, int vertex) {
    return edge.end[0] == vertex ? edge.end[1] : edge.end[0];
}

/// `v` less its part along `axis`, of length 1.
Point3 aside_of(const Point3& v, const Point3& axis) {
    const Point3 off = v - axis * (dot(v, axis) / dot(axis, axis));
    return off * (1 / length(off));
}

int first_other(int axis) {
    return axis == 0 ? 1 : 0;
}
int second_other(int axis) {
    return axis == 2 ? 1 : 2;
}

}  // namespace

std::optional<Parallelepiped> Parallelepiped::of(const PolyhedronMesh& mesh) {
    if (!mesh.closed || mesh.vertices.size() != corner_count || mesh.edges.size() != edge_count ||
        mesh.faces.size() != triangle_count)
        return std::nullopt;
    Parallelepiped body;
    if (!body.number_corners(mesh)) return std::nullopt;
    body.find_sides(mesh);
    if (!body.fits(mesh)) return std::nullopt;
    body.order_axes();
    if (!body.is_thick(mesh)) return std::nullopt;
    return body;
}

/// Gives the vertices numbers by the three edges that leave from the first, so that each edge changes one
/// bit.
bool Parallelepiped::number_corners(const PolyhedronMesh& mesh) {
    number_.fill(-1);
    number_[0] = 0;
    int axes = 0;
    for (const PolyhedronMesh::Edge& edge : mesh.edges)
        if (edge.end[0] == 0 || edge.end[1] == 0) {
            if (axes == 3) return false;
            number_[static_cast<std::size_t>(other_end(edge, 0))] = 1 << axes++;
        }
    // Whoever is joined to two corners lies on the far side of both of their axes.
    std::array<int, corner_count> joined{};
    for (int bits = 1; bits < 3; ++bits) {
        joined.fill(0);
        for (const PolyhedronMesh::Edge& edge : mesh.edges)
            for (const std::int32_t end : edge.end) {
                const int from = number_[static_cast<std::size_t>(end)];
                const auto to = static_cast<std::size_t>(other_end(edge, end));
                if (from >= 0 && std::popcount(static_cast<unsigned>(from)) == bits) joined[to] |= from;
            }
        for (std::size_t v = 0; v < corner_count; ++v)
            if (number_[v] < 0 && std::popcount(static_cast<unsigned>(joined[v])) == bits + 1)
                number_[v] = joined[v];
    }
    int seen = 0;
    for (const int number : number_)
        if (number >= 0) seen |= 1 << number;
    const auto one_axis = [&](const PolyhedronMesh::Edge& edge) {
        const int change =
            number_[static_cast<std::size_t>(edge.end[0])] ^ number_[static_cast<std::size_t>(edge.end[1])];
        return std::has_single_bit(static_cast<unsigned>(change));
    };
    return axes == 3 && seen == 255 && std::ranges::all_of(mesh.edges, one_axis);
}

void Parallelepiped::find_sides(const PolyhedronMesh& mesh) {
    for (std::size_t v = 0; v < corner_count; ++v) {
        const Point3 part = mesh.vertices[v] * (1.0 / corner_count);
        centre_ = centre_ + part;
        for (int i = 0; i < 3; ++i) half_[i] = half_[i] + part * ((number_[v] >> i & 1) != 0 ? 1 : -1);
    }
}

Point3 Parallelepiped::corner(int number) const {
    Point3 at = centre_;
    for (int i = 0; i < 3; ++i) at = at + half_[i] * ((number >> i & 1) != 0 ? 1 : -1);
    return at;
}

/// Whether all corners are where they have to be. The triangles then lie in its faces, two in each.
bool Parallelepiped::fits(const PolyhedronMesh& mesh) const {
    for (std::size_t v = 0; v < corner_count; ++v)
        if (!(length(corner(number_[v]) - mesh.vertices[v]) <= roundings * mesh.rounding)) return false;
    std::array<int, 6> triangles{};
    for (const PolyhedronMesh::Face& face : mesh.faces) {
        int all = 7, none = 7;
        for (const std::int32_t vertex : face.corner) {
            all &= number_[static_cast<std::size_t>(vertex)];
            none &= ~number_[static_cast<std::size_t>(vertex)];
        }
        for (std::size_t i = 0; i < 3; ++i) {
            triangles[i] += all >> i & 1;
            triangles[3 + i] += none >> i & 1;
        }
    }
    return std::ranges::all_of(triangles, [](int count) { return count == 2; });
}

void Parallelepiped::order_axes() {
    std::ranges::sort(half_, {}, [](const Point3& half) { return dot(half, half); });
    if (dot(half_[0], cross(half_[1], half_[2])) < 0) half_[2] = half_[2] * -1;
}

bool Parallelepiped::is_thick(const PolyhedronMesh& mesh) const {
    const double volume = 8 * dot(half_[0], cross(half_[1], half_[2]));
    const double least = 4 * (mesh.face_tolerance + plane_shift * mesh.radius);
    for (int i = 0; i < 3; ++i) {
        const double area = 4 * length(cross(half_[first_other(i)], half_[second_other(i)]));
        if (!(volume > least * area)) return false;
    }
    return true;
}

Parallelepiped::Frame Parallelepiped::frame(const PolyhedronMesh& mesh) const {
    Frame frame{};
    for (int i = 0; i < 3; ++i) {
        const Point3 across = cross(half_[(i + 1) % 3], half_[(i + 2) % 3]);
        frame.outward[i] = across * (1 / length(across));
        const double longest = std::max(length(half_[(i + 1) % 3]), length(half_[(i + 2) % 3]));
        const double uncertain =
            std::min(roundings * mesh.rounding * longest / length(across), largest_uncertainty);
        frame.uncertain = std::max(frame.uncertain, uncertain);
        const double tilt = frame.outward[i].z;
        frame.tilt[i] = std::fabs(tilt) > uncertain ? tilt : 0;
    }
    return frame;
}

void Parallelepiped::fold_shape(const PolyhedronMesh& mesh, ParallelepipedTerms& terms) const {
    for (int c = 0; c < 8; ++c) store(corner(c), terms.corner[c]);
    store(centre_, terms.centre);
    for (int i = 0; i < 3; ++i) {
        const Point3 side = half_[i] * 2;
        store(side, terms.side[i]);
        terms.length[i] = length(side);
        for (int j = 0; j < 3; ++j) terms.lean[i][j] = dot(side, half_[j]);
        const Point3 normal = cross(half_[(i + 1) % 3], half_[(i + 2) % 3]) * 4;
        store(normal, terms.normal[i]);
        terms.area[i] = length(normal);
        const Point3 diagonal = (half_[first_other(i)] + half_[second_other(i)]) * 2;
        terms.diagonal[i] = dot(diagonal, diagonal);
    }
    terms.half_volume = 4 * dot(half_[0], cross(half_[1], half_[2]));
    terms.radius = mesh.radius;
    terms.face_tolerance = mesh.face_tolerance;
    terms.clearance = 2 * edge_clearance * mesh.radius;
}

/// Vertical faces attract nothing, and edges nothing by the weights that vanish with them: what rounding
/// leaves of such is dropped, and with it the logarithms and angles that it would take.
void Parallelepiped::fold_attraction(const Frame& frame, double attraction, double rounding,
                                     ParallelepipedTerms& terms) const {
    for (int i = 0; i < 3; ++i) {
        const int j = first_other(i), k = second_other(i);
        const Point3 weight =
            (aside_of(half_[k], half_[i]) * frame.tilt[j] + aside_of(half_[j], half_[i]) * frame.tilt[k]) *
            attraction;
        const auto along = [&](const Point3& half) {
            const double value = dot(weight, half);
            const double least = length(weight) * (roundings * rounding + frame.uncertain * length(half));
            return std::fabs(value) > least ? value : 0;
        };
        terms.has_weight[i] = frame.tilt[j] != 0 || frame.tilt[k] != 0;
        store(weight, terms.edge_weight[i]);
        terms.first_weight[i] = along(half_[j]);
        terms.second_weight[i] = along(half_[k]);
        terms.face_weight[i] = -2 * attraction * frame.tilt[i] / terms.area[i];
    }
}

ParallelepipedTerms Parallelepiped::fold(const PolyhedronMesh& mesh, const Wanted& wanted) const {
    ParallelepipedTerms terms{};
    terms.kind = wanted.kind;
    fold_shape(mesh, terms);
    const Frame at = frame(mesh);
    for (int i = 0; i < 3; ++i) {
        const int j = first_other(i), k = second_other(i);
        const Point3 over_j = aside_of(half_[k], half_[i]), over_k = aside_of(half_[j], half_[i]);
        for (int s = 0; s < tensor_sums(wanted.kind); ++s) {
            const Point3 &u = wanted.first[s], &v = wanted.second[s];
            const auto both = [&](const Point3& a, const Point3& b) {
                return (dot(u, a) * dot(v, b) + dot(u, b) * dot(v, a)) / 2;
            };
            terms.edge_factor[i][s] = both(at.outward[j], over_j) + both(at.outward[k], over_k);
            terms.face_factor[i][s] = -2 * dot(u, at.outward[i]) * dot(v, at.outward[i]);
        }
    }
    if (has_attraction(wanted.kind))
        fold_attraction(at, wanted.attraction / mesh.scale, mesh.rounding, terms);
    return terms;
}

}  // namespace anomalis::forward
