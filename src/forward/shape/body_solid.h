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
    std::int64_t sectors = 12;        ///< an odd count gets one more, below 4 counts as 12
    std::int64_t segments = 1;
};

/// How finely a solid is cut, and how many points and facets that takes. Counts beyond 64 bits stay at the
/// largest number. All but the first two are zero for a shape that cannot be.
struct SolidCounts {
    std::uint64_t sectors = 0;   ///< corners of a ring
    std::uint64_t segments = 0;  ///< along the axis
    std::uint64_t points = 0;
    std::uint64_t facets = 0;
};
SolidCounts count_solid(const GraphicObject& object);
SolidCounts count_solid(const BodySolid::Shape& shape);
/// Of a pipe's solid: `num_sectors` and `num_segments`, more where the triangle size asks for it.
SolidCounts count_solid(const ModelBody& body);

/// Builds the closed triangulated surface of a cylinder, cone or pipe; triangles turn the same way, seen
/// from outside anticlockwise. A shape that cannot be (no diameter, a shell or caps that fill it) leaves
/// both lists empty without a fault. More facets than `most_facets` are refused before memory is taken.
void create_graphic_object(const GraphicObject& object, std::vector<Point3>& points, SolidFacets& facets,
                           Faults& faults);

/// Scales, turns and shifts points in place: about y by rotation 0, about x by rotation 2, about z by
/// rotation 1 (degrees), in this order. Rotations 0 and 2 at or below -180 and rotation 1 at or below -360
/// are left out.
void transform_solid(const std::array<float, 3>& scale, const std::array<float, 3>& rotation,
                     const Point3& origin, std::span<Point3> points);

/// Brings a solid up to date with a pipe (or a wire's stand-in for drawing): built anew when its shape
/// changed, placed anew when its position or direction changed, kept otherwise. The physical diameter is
/// half of `width`. The reference point must be current. Returns 0, or -1 after a failure, which is noted; a
/// solid that costs more than is granted for a calculation at so many stations is one.
int setup_cylinder_body(const ModelBody& body, BodySolid& solid, Faults& faults, std::int64_t stations = 0);

/// The surface of a solid with a single segment, built anew and placed as the solid is when it has more than
/// one, otherwise its own: the wall of a pipe is plane along its axis, so its field is the same and costs no
/// more however many segments there are.
struct PlainSurface {
    std::span<const Point3> points;  ///< in the solid's axes, or in survey coordinates
    std::span<const SolidFacets::value_type> facets;
};
struct PlainSolid {
    std::vector<Point3> points;
    SolidFacets facets;
};
PlainSurface plain_surface(const BodySolid& solid, PlainSolid& memory);
PlainSurface placed_plain_surface(const BodySolid& solid, PlainSolid& memory);

}  // namespace anomalis::forward
