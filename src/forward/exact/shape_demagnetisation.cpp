#include "forward/exact/shape_demagnetisation.h"

#include <cmath>

#include "forward/exact/exact_axes.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

Point3 unit(const Point3& v) {
    return v * (1 / length(v));
}

/// a a.
Tensor3 square(const Point3& a) {
    return {a.x * a.x, a.x * a.y, a.x * a.z, a.y * a.y, a.y * a.z, a.z * a.z};
}

/// The section at right angles to the endless direction `along`, turned back into the body's axes.
Tensor3 endless_column(const Point3& along, const Point3& edge1, const Point3& edge2) {
    const Point3 first = unit(edge1 - along * dot(edge1, along));
    const Point3 second = cross(along, first);
    const auto in_plane = [&](const Point3& v) { return std::array{dot(v, first), dot(v, second)}; };
    const auto [xx, xz, zz] = plane_demagnetisation(in_plane(edge1), in_plane(edge2));
    // Captured by value: clang 14 captures no structured binding otherwise.
    const auto part = [&, xx = xx, xz = xz, zz = zz](double Point3::*i, double Point3::*j) {
        return xx * first.*i * first.*j + xz * (first.*i * second.*j + second.*i * first.*j) +
               zz * second.*i * second.*j;
    };
    constexpr double Point3::*x = &Point3::x, Point3::*y = &Point3::y, Point3::*z = &Point3::z;
    return {part(x, x), part(x, y), part(x, z), part(y, y), part(y, z), part(z, z)};
}

}  // namespace

Tensor3 slab_demagnetisation() {
    return {0, 0, 0, 0, 0, 1};
}

Tensor3 sphere_demagnetisation() {
    return {1.0 / 3, 0, 0, 1.0 / 3, 0, 1.0 / 3};
}

Tensor3 sheet_demagnetisation(const SheetShape& sheet) {
    const Point3 top{sheet.width, 0, sheet.rise};
    if (sheet.depth == 0 && !sheet.limited) return square(unit({1, 0, sheet.cotangent}));
    if (!sheet.limited) {
        const auto [xx, xz, zz] = plane_demagnetisation({top.x, top.z}, {sheet.foot(), -sheet.depth});
        return {xx, 0, xz, 0, 0, zz};
    }
    const double run = sheet.far_end - sheet.near_end;
    const Point3 along{0, run, -run * sheet.plunge};
    if (sheet.depth == 0) return endless_column(unit({sheet.cotangent, 0, -1}), top, along);
    return prism_demagnetisation({top, along, Point3{sheet.foot(), 0, -sheet.depth}});
}

Point3 demagnetised(const Tensor3& n, double chi, const Point3& plain) {
    if (!(chi > -1)) return plain;
    // The rows of 1 + chi N, solved by cross products.
    const Point3 a{1 + chi * n.xx, chi * n.xy, chi * n.xz};
    const Point3 b{chi * n.xy, 1 + chi * n.yy, chi * n.yz};
    const Point3 c{chi * n.xz, chi * n.yz, 1 + chi * n.zz};
    const Point3 sum = cross(b, c) * plain.x + cross(c, a) * plain.y + cross(a, b) * plain.z;
    return sum * (1 / dot(a, cross(b, c)));
}

}  // namespace anomalis::forward
