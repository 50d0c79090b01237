#include "forward/shape/body_solid.h"

#include <algorithm>
#include <cmath>

#include "core/angles.h"
#include "core/faults.h"
#include "core/numbers.h"
#include "forward/shape/pipe_mesh.h"

namespace anomalis::forward {

namespace {

struct Turn {
    double c, s;

    explicit Turn(double degrees)
        : c(std::cos(degrees * radians_per_degree)), s(std::sin(degrees * radians_per_degree)) {}
};

/// Sectors and segments of the body, raised where the triangle size asks for it. `width` stands for a
/// radius here, so the ring is cut finer than the size says.
struct Fineness {
    std::int32_t sectors, segments;
};

Fineness fineness_of(const ModelBody& body) {
    const double size = body.max_triangle_size;
    const double length = body.length.value;
    if (!(size > 0 && size < length)) return {body.num_sectors, body.num_segments};
    const double segments = std::max<double>(body.num_segments, std::nearbyint(length / size));
    const double sectors =
        std::max<double>(body.num_sectors, std::nearbyint(2 * pi * body.width.value / size));
    // Told in floating point first: the numbers may be beyond every integer.
    require_few_facets(2 * segments * sectors);
    return {static_cast<std::int32_t>(sectors), static_cast<std::int32_t>(segments)};
}

void shape_solid(BodySolid& solid, const BodySolid::Shape& shape, Faults& faults) {
    if (!solid.points.empty() && !solid.facets.empty() && solid.shape == shape) return;
    GraphicObject object;
    object.length = shape.length;
    object.diameter_start = object.diameter_end = static_cast<double>(shape.width) / 2;
    object.shell = shape.shell_thickness;
    object.end_cap = shape.end_thickness;
    object.sectors = shape.sectors;
    object.segments = shape.segments;
    require_few_facets(static_cast<double>(count_mesh(object).facets));
    solid.shape = shape;
    solid.transformed_points.clear();
    solid.demagnetisation = {};
    create_graphic_object(object, solid.points, solid.facets, faults);
}

void place_solid(const ModelBody& body, BodySolid& solid) {
    const double strike = body.strike.value * radians_per_degree;
    const float sin_strike = to_single(std::sin(strike));
    const float cos_strike = to_single(std::cos(strike));
    const double along = static_cast<double>(body.length.value) / 2 + body.offset.value;
    // The offset acts against the strike here; a strike-limited sheet has it the other way round.
    const BodySolid::Placement placement{
        body.dip.value,
        body.strike.value,
        body.plunge.value,
        {body.east - along * sin_strike, body.north - along * cos_strike, body.top.value}};
    if (solid.transformed_points.size() == solid.points.size() && solid.placement == placement) return;
    solid.placement = placement;
    solid.transformed_points = solid.points;
    transform_solid({1, 1, 1}, {placement.plunge, placement.strike, placement.dip}, placement.origin,
                    solid.transformed_points);
}

}  // namespace

void create_graphic_object(const GraphicObject& object, std::vector<Point3>& points, SolidFacets& facets,
                           Faults& faults) {
    points.clear();
    facets.clear();
    report_failure(faults, "An error occurred while creating the graphic object: ", [&] {
        const MeshCounts counts = count_mesh(object);
        require_few_facets(static_cast<double>(counts.facets));
        build_mesh(object, counts, points, facets);
        if (object.apply_transform)
            transform_solid({1, 1, static_cast<float>(object.z_scale)}, object.rotation, object.origin,
                            points);
    });
}

void transform_solid(const std::array<float, 3>& scale, const std::array<float, 3>& rotation,
                     const Point3& origin, std::span<Point3> points) {
    const auto applies = [](float angle, float least) { return angle != 0 && angle > least; };
    const Turn about_y(rotation[0]), about_z(rotation[1]), about_x(rotation[2]);
    for (Point3& p : points) {
        p = {p.x * scale[0], p.y * scale[1], p.z * scale[2]};
        if (applies(rotation[0], -180))
            p = {about_y.c * p.x - about_y.s * p.z, p.y, about_y.s * p.x + about_y.c * p.z};
        if (applies(rotation[2], -180))
            p = {p.x, about_x.c * p.y + about_x.s * p.z, -about_x.s * p.y + about_x.c * p.z};
        if (applies(rotation[1], -360))
            p = {about_z.c * p.x + about_z.s * p.y, -about_z.s * p.x + about_z.c * p.y, p.z};
        p = {p.x + origin.x, p.y + origin.y, p.z + origin.z};
    }
}

std::int32_t solid_sectors(const ModelBody& body) {
    std::int32_t sectors = fineness_of(body).sectors;
    if (sectors % 2 != 0) ++sectors;
    return sectors < 4 ? 12 : sectors;
}

int setup_cylinder_body(const ModelBody& body, BodySolid& solid, Faults& faults) {
    return report_failure(faults, "An error occurred while setting up the cylinder body: ", [&] {
        const Fineness fineness = fineness_of(body);
        BodySolid::Shape shape;
        shape.length = body.length.value;
        shape.width = body.width.value;
        shape.shell_thickness = body.shell_thickness;
        shape.end_thickness = body.end_thickness;
        shape.max_triangle_size = body.max_triangle_size;
        shape.sectors = fineness.sectors;
        shape.segments = fineness.segments;
        shape_solid(solid, shape, faults);
        place_solid(body, solid);
    });
}

}  // namespace anomalis::forward
