#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "core/model_body.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// More facets than this are refused: a pipe of 20,000 is already finer than any survey can tell.
inline constexpr std::int64_t most_solid_facets = 2'000'000;

using SolidFacets = std::vector<std::array<std::int32_t, 3>>;

/// What a solid of revolution is made from. Lengths in m, angles in degrees.
struct GraphicObject {
    bool axis_is_y = true;  ///< the axis runs along y, else along z
    bool apply_transform = false;
    Point3 origin;
    double length = 0;
    double diameter_start = 0;  ///< a diameter of 0 makes a cone with its tip at that end
    double diameter_end = 0;
    double shell = 0;    ///< taken off the diameter; 0 makes a full solid
    double end_cap = 0;  ///< thickness of the closed ends of a shell; 0 leaves them open
    double z_scale = 1;
    std::array<float, 3> rotation{};  ///< as transform_solid takes it
    std::int32_t sectors = 12;        ///< an odd count gets one more, below 4 counts as 12
    std::int32_t segments = 1;
};

/// Builds the closed triangulated surface of a cylinder, cone or pipe; triangles turn the same way, seen
/// from outside anticlockwise. A shape that cannot be (no diameter, a shell or caps that fill it) leaves
/// both lists empty without a fault. More than `most_solid_facets` are refused before memory is taken.
void create_graphic_object(const GraphicObject& object, std::vector<Point3>& points, SolidFacets& facets,
                           Faults& faults);

/// Scales, turns and shifts points in place: about y by rotation 0, about x by rotation 2, about z by
/// rotation 1 (degrees), in this order. Rotations 0 and 2 at or below -180 and rotation 1 at or below -360
/// are left out.
void transform_solid(const std::array<float, 3>& scale, const std::array<float, 3>& rotation,
                     const Point3& origin, std::span<Point3> points);

/// Corners of the ring of a pipe's solid: `num_sectors`, more where the triangle size asks for it, an odd
/// count one more, 12 for a count below 4. Raises a Fault when the solid would have too many facets.
std::int32_t solid_sectors(const ModelBody& body);

/// Brings a solid up to date with a pipe (or a wire's stand-in for drawing): built anew when its shape
/// changed, placed anew when its position or direction changed, kept otherwise. The physical diameter is
/// half of `width`. The reference point must be current. Returns 0, or -1 after a failure, which is noted.
int setup_cylinder_body(const ModelBody& body, BodySolid& solid, Faults& faults);

}  // namespace anomalis::forward
