#include "forward/polyhedron/polyhedron_mesh.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "core/failure.h"
#include "core/pacer.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

constexpr double epsilon = std::numeric_limits<double>::epsilon();

/// A facet lower than this part of its longest side has no direction that means anything.
constexpr double least_height = 1e-14;

/// A station less deep than this below a face stands outside it, m.
constexpr double least_depth = 1e-9;

/// Nanoseconds that a facet takes in each of the four stages of a build.
constexpr double units_a_stage = 100;

/// Dyads below this are dropped at most: what the rounding of survey coordinates can make of a flat edge.
constexpr double largest_flat_dyad = 1e-8;

std::size_t hash_of(const Point3& p) {
    std::uint64_t h = std::bit_cast<std::uint64_t>(p.x);
    for (double value : {p.y, p.z}) {
        h = (h ^ (h >> 29)) * 0x9E3779B97F4A7C15U;
        h += std::bit_cast<std::uint64_t>(value);
    }
    h = (h ^ (h >> 32)) * 0xBF58476D1CE4E5B9U;
    return static_cast<std::size_t>(h ^ (h >> 31));
}

bool has_area(const Point3& a, const Point3& b, const Point3& c) {
    const Point3 ab = b - a, ac = c - a, bc = c - b;
    const double longest = std::max({dot(ab, ab), dot(ac, ac), dot(bc, bc)});
    return length(cross(ab, ac)) > least_height * longest;
}

/// Integrals of x_k dx_j and x_i x_k dx_j along a segment, exact by Simpson's rule: they cancel over the
/// edges of a closed surface, also where a long edge meets two short ones.
using EdgeMoments = std::array<double, 36>;

void add_edge_moments(const Point3& a, const Point3& b, double sense, EdgeMoments& sum) {
    const Point3 step = b - a, half = (a + b) * 0.5;
    const std::array<double, 3> dx{step.x, step.y, step.z};
    const std::array<std::array<double, 3>, 3> at{
        {{a.x, a.y, a.z}, {half.x, half.y, half.z}, {b.x, b.y, b.z}}};
    std::size_t n = 0;
    for (std::size_t j = 0; j < 3; ++j)
        for (std::size_t i = 0; i < 3; ++i) {
            sum[n++] += sense * dx[j] * at[1][i];
            for (std::size_t k = 0; k < 3; ++k)
                sum[n++] +=
                    sense * dx[j] * (at[0][i] * at[0][k] + 4 * at[1][i] * at[1][k] + at[2][i] * at[2][k]) / 6;
        }
}

}  // namespace

Point3 PolyhedronMesh::to_unit(const Point3& place) const {
    return (place - centre) * scale;
}

void PolyhedronMesh::clear() {
    vertices.clear();
    faces.clear();
    edges.clear();
    corners_.clear();
    half_edges_.clear();
    radius = volume = face_tolerance = 0;
    centroid = {};
    closed = false;
}

void PolyhedronMesh::build(std::span<const Point3> points, std::span<const Facet> facets, Pacer& pacer) {
    clear();
    rounding = place_unit_frame(points, facets);
    if (!finite || !(scale > 0)) return;
    const double stage_units = units_a_stage * static_cast<double>(facets.size());
    try {
        weld(points, facets);
        for (const Point3& vertex : vertices) radius = std::max(radius, length(vertex));
        face_tolerance = std::min(least_depth * scale + rounding, edge_clearance * radius);
        pacer.done(stage_units);
        sort_half_edges();
        pacer.done(stage_units);
        check_closed();
        orient();
        pacer.done(stage_units);
        build_faces();
        build_edges();
        pacer.done(stage_units);
    } catch (const Stopped&) {
        clear();
        throw;
    }
}

/// Sets centre, scale and finite from the points in use; returns how far rounding may have moved a vertex. A
/// body without extent gets the scale 0.
double PolyhedronMesh::place_unit_frame(std::span<const Point3> points, std::span<const Facet> facets) {
    constexpr double huge = std::numeric_limits<double>::infinity();
    Point3 low{huge, huge, huge}, high{-huge, -huge, -huge};
    finite = true;
    for (const Facet& facet : facets)
        for (std::int32_t corner : facet) {
            if (corner < 0 || static_cast<std::size_t>(corner) >= points.size())
                throw Fault(FaultKind::subscript);
            const Point3& p = points[static_cast<std::size_t>(corner)];
            finite = finite && std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
    centre = {};
    scale = 0;
    if (facets.empty() || !finite) return 0;
    centre = low + (high - low) * 0.5;
    const Point3 half = (high - low) * 0.5;
    const double extent = std::max({half.x, half.y, half.z});
    finite = std::isfinite(extent);
    if (!finite || extent < 1e-290) return 0;
    scale = std::ldexp(1.0, -std::ilogb(extent) - 1);
    double farthest = 0;
    for (double value : {low.x, low.y, low.z, high.x, high.y, high.z})
        farthest = std::max(farthest, std::fabs(value));
    return epsilon * (1 + farthest * scale);
}

/// Gives equal points one vertex and keeps the facets that have an area.
void PolyhedronMesh::weld(std::span<const Point3> points, std::span<const Facet> facets) {
    point_vertex_.assign(points.size(), -1);
    table_.assign(std::bit_ceil(2 * std::min(points.size(), 3 * facets.size()) + 1), -1);
    for (const Facet& facet : facets) {
        Facet welded;
        for (std::size_t i = 0; i < 3; ++i) {
            const auto point = static_cast<std::size_t>(facet[i]);
            if (point_vertex_[point] < 0) point_vertex_[point] = vertex_at(to_unit(points[point]));
            welded[i] = point_vertex_[point];
        }
        const auto corner = [&](std::size_t i) { return vertices[static_cast<std::size_t>(welded[i])]; };
        if (has_area(corner(0), corner(1), corner(2))) corners_.push_back(welded);
    }
}

std::int32_t PolyhedronMesh::vertex_at(const Point3& unit) {
    const Point3 place = unit + Point3{};  // turns -0 into 0, so that equal places have equal bits
    const std::size_t mask = table_.size() - 1;
    std::size_t slot = hash_of(place) & mask;
    while (table_[slot] >= 0) {
        if (vertices[static_cast<std::size_t>(table_[slot])] == place) return table_[slot];
        slot = (slot + 1) & mask;
    }
    table_[slot] = static_cast<std::int32_t>(vertices.size());
    vertices.push_back(place);
    return table_[slot];
}

/// Groups the sides of all facets by their smaller vertex, then by their larger.
void PolyhedronMesh::sort_half_edges() {
    first_half_edge_.assign(vertices.size() + 1, 0);
    const auto each_side = [&](auto&& use) {
        for (std::size_t face = 0; face < corners_.size(); ++face)
            for (std::size_t i = 0; i < 3; ++i) {
                const std::int32_t from = corners_[face][i], to = corners_[face][(i + 1) % 3];
                use(static_cast<std::size_t>(std::min(from, to)),
                    HalfEdge{std::max(from, to), static_cast<std::int32_t>(face), from < to ? 1 : -1});
            }
    };
    each_side([&](std::size_t smaller, const HalfEdge&) { ++first_half_edge_[smaller + 1]; });
    for (std::size_t v = 0; v < vertices.size(); ++v) first_half_edge_[v + 1] += first_half_edge_[v];
    half_edges_.resize(3 * corners_.size());
    table_.assign(first_half_edge_.begin(), first_half_edge_.end());
    each_side([&](std::size_t smaller, const HalfEdge& side) {
        half_edges_[static_cast<std::size_t>(table_[smaller]++)] = side;
    });
    for (std::size_t v = 0; v < vertices.size(); ++v)
        std::sort(half_edges_.begin() + first_half_edge_[v], half_edges_.begin() + first_half_edge_[v + 1],
                  [](const HalfEdge& a, const HalfEdge& b) {
                      return a.other != b.other ? a.other < b.other : a.face < b.face;
                  });
}

/// Calls use(smaller end, its sides) for every pair of vertices with an edge between them.
template <class Use>
void PolyhedronMesh::each_edge(Use&& use) const {
    for (std::size_t v = 0; v < vertices.size(); ++v) {
        auto h = static_cast<std::size_t>(first_half_edge_[v]);
        const auto end = static_cast<std::size_t>(first_half_edge_[v + 1]);
        while (h < end) {
            std::size_t next = h + 1;
            while (next < end && half_edges_[next].other == half_edges_[h].other) ++next;
            use(v, std::span(half_edges_).subspan(h, next - h));
            h = next;
        }
    }
}

void PolyhedronMesh::check_closed() {
    EdgeMoments sum{};
    double boundary = 0;
    each_edge([&](std::size_t from, std::span<const HalfEdge> sides) {
        std::int32_t unmatched = 0;
        for (const HalfEdge& side : sides) unmatched += side.sense;
        const Point3& to = vertices[static_cast<std::size_t>(sides.front().other)];
        boundary += length(to - vertices[from]);
        if (unmatched != 0) add_edge_moments(vertices[from], to, unmatched, sum);
    });
    closed = !corners_.empty();
    for (double moment : sum) closed = closed && std::fabs(moment) <= 1e-9 * boundary;
}

/// Volume and centroid; a closed surface that faces inward is turned.
void PolyhedronMesh::orient() {
    Point3 first_moment;
    for (const Facet& facet : corners_) {
        const Point3& a = vertices[static_cast<std::size_t>(facet[0])];
        const Point3& b = vertices[static_cast<std::size_t>(facet[1])];
        const Point3& c = vertices[static_cast<std::size_t>(facet[2])];
        const double part = dot(a, cross(b, c)) / 6;
        volume += part;
        first_moment = first_moment + (a + b + c) * (part / 4);
    }
    if (closed && volume != 0) centroid = first_moment * (1 / volume);
    if (!closed || volume >= 0) return;
    volume = -volume;
    for (Facet& facet : corners_) std::swap(facet[1], facet[2]);
    for (HalfEdge& side : half_edges_) side.sense = -side.sense;
}

void PolyhedronMesh::build_faces() {
    faces.reserve(corners_.size());
    for (const Facet& facet : corners_) {
        const Point3& a = vertices[static_cast<std::size_t>(facet[0])];
        const Point3& b = vertices[static_cast<std::size_t>(facet[1])];
        const Point3& c = vertices[static_cast<std::size_t>(facet[2])];
        const Point3 ab = b - a, bc = c - b, ca = a - c;
        const Point3 area = cross(ab, bc);
        faces.push_back({facet, area, area * (1 / length(area)), {dot(bc, bc), dot(ca, ca), dot(ab, ab)}});
    }
}

void PolyhedronMesh::build_edges() {
    edges.reserve(half_edges_.size() / 2);
    each_edge([&](std::size_t from, std::span<const HalfEdge> sides) {
        add_edge(static_cast<std::int32_t>(from), sides);
    });
}

void PolyhedronMesh::add_edge(std::int32_t from, std::span<const HalfEdge> sides) {
    const std::int32_t to = sides.front().other;
    const Point3 along = vertices[static_cast<std::size_t>(to)] - vertices[static_cast<std::size_t>(from)];
    const double size = length(along);
    Edge edge{{from, to}, sides.front().face, size, {}};
    double uncertain = 0;  // of the normals, radians
    for (const HalfEdge& side : sides) {
        const Face& face = faces[static_cast<std::size_t>(side.face)];
        const Point3& n = face.normal;
        const Point3 out =
            cross(along * (side.sense / size), n);  // in the face, away from it across the edge
        edge.dyad.xx += n.x * out.x;
        edge.dyad.yy += n.y * out.y;
        edge.dyad.zz += n.z * out.z;
        edge.dyad.xy += (n.x * out.y + n.y * out.x) / 2;
        edge.dyad.xz += (n.x * out.z + n.z * out.x) / 2;
        edge.dyad.yz += (n.y * out.z + n.z * out.y) / 2;
        uncertain += 4 * rounding * size / length(face.area);
    }
    const Tensor3& d = edge.dyad;
    double largest = 0;
    for (double part : {d.xx, d.xy, d.xz, d.yy, d.yz, d.zz}) largest = std::max(largest, std::fabs(part));
    if (largest > std::min(uncertain, largest_flat_dyad)) edges.push_back(edge);
}

}  // namespace anomalis::forward
