#pragma once

#include <cmath>
#include <vector>

#include "forward/polyhedron/polyhedron.h"

namespace anomalis {

struct Surface {
    std::vector<Point3> points;
    std::vector<forward::Facet> facets;
};

/// A closed body of 2 * sectors * (rings - 1) facets under the origin, 100 m across and rough, so that no two
/// facets lie in one plane and every edge counts.
inline Surface lumpy_body(int sectors, int rings) {
    constexpr double pi = 3.14159265358979323846;
    Surface surface;
    surface.points.push_back({0, 0, -50});
    for (int ring = 1; ring < rings; ++ring)
        for (int i = 0; i < sectors; ++i) {
            const double down = pi * ring / rings, round = 2 * pi * (i + 0.3 * ring) / sectors;
            const double r = 50 * (1 + 0.1 * std::sin(7.1 * i + 3.3 * ring));
            surface.points.push_back({r * std::sin(down) * std::cos(round),
                                      r * std::sin(down) * std::sin(round), r * std::cos(down) - 100});
        }
    const auto last = static_cast<std::int32_t>(surface.points.size());
    surface.points.push_back({0, 0, -150});
    for (std::int32_t i = 0; i < sectors; ++i) {
        const std::int32_t next = (i + 1) % sectors;
        surface.facets.push_back({0, 1 + i, 1 + next});
        for (std::int32_t ring = 1; ring + 1 < rings; ++ring) {
            const std::int32_t upper = 1 + (ring - 1) * sectors, lower = upper + sectors;
            surface.facets.push_back({upper + i, lower + i, lower + next});
            surface.facets.push_back({upper + i, lower + next, upper + next});
        }
        surface.facets.push_back({last, last - sectors + next, last - sectors + i});
    }
    return surface;
}

/// The rough body of about that many facets.
inline Surface lumpy_body_of(int facets) {
    const int sectors = facets < 12 ? 3 : static_cast<int>(std::lround(std::sqrt(facets / 3.0)));
    const int across = sectors < 3 ? 3 : sectors;
    return lumpy_body(across, facets / (2 * across) + 1);
}

}  // namespace anomalis
