#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <utility>
#include <vector>

#include "forward/polyhedron/polyhedron.h"

namespace anomalis::forward::shapes {

/// Points and facets of a closed surface, seen from outside anticlockwise.
struct Solid {
    std::vector<Point3> points;
    std::vector<Facet> facets;
};

inline Polyhedron polyhedron_of(const Solid& solid) {
    return Polyhedron(solid.points, solid.facets);
}

/// A box of 12 facets between two corners.
inline Solid box_solid(const Point3& low, const Point3& high) {
    Solid solid;
    for (int i = 0; i < 8; ++i)
        solid.points.push_back(
            {(i & 1) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y, (i & 4) != 0 ? high.z : low.z});
    const int quads[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                             {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (const auto& q : quads) {
        solid.facets.push_back({q[0], q[1], q[2]});
        solid.facets.push_back({q[0], q[2], q[3]});
    }
    return solid;
}

/// A parallelepiped of three sides from a corner.
inline Solid slanted_solid(const Point3& corner, const std::array<Point3, 3>& side) {
    Solid solid = box_solid({0, 0, 0}, {1, 1, 1});
    for (Point3& p : solid.points)
        p = {corner.x + p.x * side[0].x + p.y * side[1].x + p.z * side[2].x,
             corner.y + p.x * side[0].y + p.y * side[1].y + p.z * side[2].y,
             corner.z + p.x * side[0].z + p.y * side[1].z + p.z * side[2].z};
    return solid;
}

/// A sphere of 8 * 4^levels facets: an octahedron whose sides are halved again and again, with its corners on
/// the sphere.
inline Solid sphere_solid(const Point3& centre, double radius, int levels) {
    Solid solid{{{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}}, {}};
    for (int z : {4, 5})
        for (int y : {2, 3})
            for (int x : {0, 1})
                solid.facets.push_back((z + y + x) % 2 == 0 ? Facet{x, y, z} : Facet{y, x, z});
    for (int level = 0; level < levels; ++level) {
        std::map<std::pair<int, int>, int> middle;
        const auto halve = [&](int a, int b) {
            const auto [place, is_new] =
                middle.try_emplace(std::minmax(a, b), static_cast<int>(solid.points.size()));
            if (is_new) {
                const Point3 p = solid.points[static_cast<std::size_t>(a)],
                             q = solid.points[static_cast<std::size_t>(b)];
                const Point3 m{p.x + q.x, p.y + q.y, p.z + q.z};
                const double size = std::hypot(m.x, m.y, m.z);
                solid.points.push_back({m.x / size, m.y / size, m.z / size});
            }
            return place->second;
        };
        std::vector<Facet> finer;
        for (const auto& [a, b, c] : solid.facets) {
            const int ab = halve(a, b), bc = halve(b, c), ca = halve(c, a);
            finer.insert(finer.end(), {{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}});
        }
        solid.facets = finer;
    }
    for (Point3& p : solid.points)
        p = {centre.x + radius * p.x, centre.y + radius * p.y, centre.z + radius * p.z};
    return solid;
}

/// An upright pipe with flat caps, `sectors` sides and `segments` rings of quadrilaterals: 2 sectors
/// (segments + 1) facets.
inline Solid pipe_solid(const Point3& top_centre, double radius, double length, int sectors, int segments) {
    Solid solid;
    for (int ring = 0; ring <= segments; ++ring)
        for (int i = 0; i < sectors; ++i) {
            const double angle = 2 * std::numbers::pi * i / sectors;
            solid.points.push_back({top_centre.x + radius * std::cos(angle),
                                    top_centre.y + radius * std::sin(angle),
                                    top_centre.z - length * ring / segments});
        }
    const int bottom = segments * sectors;
    const int top_middle = static_cast<int>(solid.points.size()), bottom_middle = top_middle + 1;
    solid.points.push_back(top_centre);
    solid.points.push_back({top_centre.x, top_centre.y, top_centre.z - length});
    for (int i = 0; i < sectors; ++i) {
        const int next = (i + 1) % sectors;
        for (int ring = 0; ring < segments; ++ring) {
            const int upper = ring * sectors, lower = upper + sectors;
            solid.facets.push_back({upper + i, lower + i, lower + next});
            solid.facets.push_back({upper + i, lower + next, upper + next});
        }
        solid.facets.push_back({top_middle, i, next});
        solid.facets.push_back({bottom_middle, bottom + next, bottom + i});
    }
    return solid;
}

}  // namespace anomalis::forward::shapes
