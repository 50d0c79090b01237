#pragma once

#include <array>
#include <span>

#include "../columns/quad.h"
#include "forward/polyhedron/polyhedron.h"

// The field of a polyhedron facet by facet in quadruple precision.

namespace anomalis::forward::reference {

struct QuadPoint {
    Quad x, y, z;
};
inline QuadPoint operator-(const QuadPoint& a, const QuadPoint& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline QuadPoint operator*(const QuadPoint& a, Quad factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
inline Quad dot(const QuadPoint& a, const QuadPoint& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline QuadPoint cross(const QuadPoint& a, const QuadPoint& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline Quad length(const QuadPoint& a) {
    return quad_sqrt(dot(a, a));
}

/// Second derivatives (xx, xy, xz, yy, yz, zz) and the downward derivative of the integral of 1 / r.
struct QuadField {
    std::array<Quad, 6> tensor{};
    Quad down = 0;
};

/// Adds a triangle a, b, c from the station: logarithms of its edges, its solid angle.
inline void add_facet(const std::array<QuadPoint, 3>& at, QuadField& sum) {
    const QuadPoint area = cross(at[1] - at[0], at[2] - at[0]);
    const QuadPoint n = area * (1 / length(area));
    const std::array<Quad, 3> r{length(at[0]), length(at[1]), length(at[2])};
    const Quad lower =
        r[0] * r[1] * r[2] + dot(at[0], at[1]) * r[2] + dot(at[1], at[2]) * r[0] + dot(at[2], at[0]) * r[1];
    const Quad angle = 2 * quad_log({lower, dot(at[0], cross(at[1], at[2]))}).z;
    QuadPoint field = n * -angle;
    Quad potential = -dot(n, at[0]) * angle;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t next = (i + 1) % 3;
        const QuadPoint side = at[next] - at[i];
        const Quad l = length(side), s = r[i] + r[next];
        const Quad log = quad_log({(s + l) / (s - l), 0}).x;
        const QuadPoint out = cross(side * (1 / l), n) * log;
        field = field - out * -1;
        potential += dot(out, at[i]);
    }
    const std::array<Quad, 3> normal{n.x, n.y, n.z}, f{field.x, field.y, field.z};
    std::size_t k = 0;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = i; j < 3; ++j) sum.tensor[k++] += (normal[i] * f[j] + normal[j] * f[i]) / 2;
    sum.down += n.z * potential;
}

inline QuadField quad_field(std::span<const Point3> points, std::span<const Facet> facets,
                            const Point3& station) {
    QuadField sum;
    for (const Facet& facet : facets) {
        std::array<QuadPoint, 3> at{};
        for (std::size_t i = 0; i < 3; ++i) {
            const Point3& p = points[static_cast<std::size_t>(facet[i])];
            at[i] = {Quad(p.x) - station.x, Quad(p.y) - station.y, Quad(p.z) - station.z};
        }
        add_facet(at, sum);
    }
    return sum;
}

}  // namespace anomalis::forward::reference
