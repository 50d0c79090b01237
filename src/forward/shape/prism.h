#pragma once

#include <array>
#include <cstdint>

#include "core/workspace.h"
#include "forward/classic/facet.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// Corners of a strike-limited sheet: 1 to 4 round the top from its end along strike, 5 to 8 below them.
using PrismCorners = std::array<Point3, 8>;  ///< east, north, up in survey coordinates, m

/// The six faces, zero-based; a sheet of positive width turns their normals outward.
inline constexpr std::array<std::array<std::uint8_t, 4>, 6> prism_faces{
    {{0, 1, 2, 3}, {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 4, 0}, {0, 4, 5, 1}, {7, 6, 5, 4}}};

/// The same as triangles, two a face.
inline constexpr std::array<std::array<std::int32_t, 3>, 12> prism_triangles = [] {
    std::array<std::array<std::int32_t, 3>, 12> triangles{};
    for (std::size_t f = 0; f < prism_faces.size(); ++f) {
        const auto& face = prism_faces[f];
        triangles[2 * f] = {face[0], face[1], face[2]};
        triangles[2 * f + 1] = {face[0], face[2], face[3]};
    }
    return triangles;
}();

/// Corners as the magnetics has them: without a depth extent 5 km deep, a sloping top narrowed by minus the
/// slope. Raises Fault division_by_zero for a slope that has no width.
PrismCorners magnetic_prism(const ModelBody& body);

/// Where the bottom of a sheet lies: across strike from its top, and below it, m.
struct SheetBottom {
    double offset = 0;
    double depth = 0;
};

/// The bottom as the gravity of all sheets has it: without a depth extent 1000 widths deep.
SheetBottom gravity_bottom(const ModelBody& body);

/// Corners as the gravity has them: without a depth extent 1000 widths deep, a sloping top narrowed by plus
/// the slope.
PrismCorners gravity_prism(const ModelBody& body);

/// The corners in north, east, down from station 1.
std::array<NedVector, 8> relative_to_first_station(const PrismCorners& corners, const Workspace& workspace);

}  // namespace anomalis::forward
