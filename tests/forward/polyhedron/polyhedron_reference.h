#pragma once

#include <array>
#include <cmath>
#include <vector>

#include "forward/polyhedron/polyhedron.h"

// Fields by other roads than the kernel's, in long double.

namespace anomalis::forward::reference {

using Real = long double;

/// Downward integral of (z - z') / r^3 and the second derivatives of the integral of 1 / r.
struct Field {
    Real down = 0;
    Real xx = 0, xy = 0, xz = 0, yy = 0, yz = 0, zz = 0;
};

/// A box between two corners in closed form (Nagy 1966, Geophysics 31), for a station that is on none of its
/// planes and edge lines.
inline Field box_field(const Point3& low, const Point3& high, const Point3& station) {
    Field f;
    for (int corner = 0; corner < 8; ++corner) {
        const Real x = static_cast<Real>((corner & 1) != 0 ? high.x : low.x) - station.x;
        const Real y = static_cast<Real>((corner & 2) != 0 ? high.y : low.y) - station.y;
        const Real z = static_cast<Real>((corner & 4) != 0 ? high.z : low.z) - station.z;
        const int ones = (corner & 1) + (corner >> 1 & 1) + (corner >> 2 & 1);
        const Real sign = ones % 2 == 1 ? 1 : -1;
        const Real r = std::sqrt(x * x + y * y + z * z);
        const auto log_of = [&](Real along, Real p, Real q) {  // log(along + r), whole also for along near -r
            return along > 0 ? std::log(along + r) : std::log(p * p + q * q) - std::log(r - along);
        };
        const Real lx = log_of(x, y, z), ly = log_of(y, x, z), lz = log_of(z, x, y);
        f.down += sign * (x * ly + y * lx - z * std::atan(x * y / (z * r)));
        f.xx -= sign * std::atan(y * z / (x * r));
        f.yy -= sign * std::atan(x * z / (y * r));
        f.zz -= sign * std::atan(x * y / (z * r));
        f.xy += sign * lz;
        f.xz += sign * ly;
        f.yz += sign * lx;
    }
    return f;
}

/// Gauss-Legendre points and weights on 0 to 1.
inline std::vector<std::array<Real, 2>> line_rule(int n) {
    std::vector<std::array<Real, 2>> rule;
    for (int i = 0; i < n; ++i) {
        Real x = std::cos(3.14159265358979323846L * (i + 0.75L) / (n + 0.5L)), slope = 1;
        for (int pass = 0; pass < 10; ++pass) {
            Real p = 1, below = 0;
            for (int k = 0; k < n; ++k) {
                const Real next = ((2 * k + 1) * x * p - k * below) / (k + 1);
                below = p;
                p = next;
            }
            slope = n * (x * p - below) / (x * x - 1);
            x -= p / slope;
        }
        rule.push_back({(1 - x) / 2, 1 / ((1 - x * x) * slope * slope)});
    }
    return rule;
}

inline void add_point(Real dx, Real dy, Real dz, Real weight, Field& f) {
    const Real r2 = dx * dx + dy * dy + dz * dz, r = std::sqrt(r2);
    const Real w3 = weight / (r2 * r), w5 = 3 * w3 / r2;
    f.down -= w3 * dz;
    f.xx += w5 * dx * dx - w3;
    f.yy += w5 * dy * dy - w3;
    f.zz += w5 * dz * dz - w3;
    f.xy += w5 * dx * dy;
    f.xz += w5 * dx * dz;
    f.yz += w5 * dy * dz;
}

/// A box summed up point by point: nothing cancels, so it is right at any distance that is large against the
/// box.
inline Field box_by_points(const Point3& low, const Point3& high, const Point3& station, int n = 8) {
    const auto rule = line_rule(n);
    const Real sx = static_cast<Real>(high.x) - low.x, sy = static_cast<Real>(high.y) - low.y,
               sz = static_cast<Real>(high.z) - low.z;
    Field f;
    for (const auto& [x, wx] : rule)
        for (const auto& [y, wy] : rule)
            for (const auto& [z, wz] : rule)
                add_point(low.x + sx * x - station.x, low.y + sy * y - station.y, low.z + sz * z - station.z,
                          wx * wy * wz * sx * sy * sz, f);
    return f;
}

/// A tetrahedron summed up point by point, for a station outside.
inline Field tetrahedron_by_points(const std::array<Point3, 4>& corner, const Point3& station, int n) {
    const auto rule = line_rule(n);
    const auto edge = [&](std::size_t i) {
        return std::array<Real, 3>{static_cast<Real>(corner[i].x) - corner[0].x,
                                   static_cast<Real>(corner[i].y) - corner[0].y,
                                   static_cast<Real>(corner[i].z) - corner[0].z};
    };
    const auto a = edge(1), b = edge(2), c = edge(3);
    const Real volume = std::fabs(a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
                                  a[2] * (b[0] * c[1] - b[1] * c[0]));
    Field f;
    for (const auto& [u, wu] : rule)
        for (const auto& [v, wv] : rule)
            for (const auto& [w, ww] : rule) {
                const Real s = u, t = v * (1 - u), q = w * (1 - u) * (1 - v);
                const Real weight = wu * wv * ww * (1 - u) * (1 - u) * (1 - v) * volume;
                add_point(corner[0].x + s * a[0] + t * b[0] + q * c[0] - station.x,
                          corner[0].y + s * a[1] + t * b[1] + q * c[1] - station.y,
                          corner[0].z + s * a[2] + t * b[2] + q * c[2] - station.z, weight, f);
            }
    return f;
}

}  // namespace anomalis::forward::reference
