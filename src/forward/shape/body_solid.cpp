#include "forward/shape/body_solid.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/angles.h"
#include "core/faults.h"
#include "core/numbers.h"
#include "core/saturating.h"
#include "forward/body_price.h"
#include "forward/shape/pipe_mesh.h"

namespace anomalis::forward {

namespace {

struct Turn {
    double c, s;

    explicit Turn(double degrees)
        : c(std::cos(degrees * radians_per_degree)), s(std::sin(degrees * radians_per_degree)) {}
};

GraphicObject object_of(const BodySolid::Shape& shape) {
    GraphicObject object;
    object.length = shape.length;
    object.diameter_start = object.diameter_end = static_cast<double>(shape.width) / 2;
    object.shell = shape.shell_thickness;
    object.end_cap = shape.end_thickness;
    object.sectors = shape.sectors;
    object.segments = shape.segments;
    return object;
}

BodySolid::Shape shape_of(const ModelBody& body) {
    BodySolid::Shape shape;
    shape.length = body.length.value;
    shape.width = body.width.value;
    shape.shell_thickness = body.shell_thickness;
    shape.end_thickness = body.end_thickness;
    shape.max_triangle_size = body.max_triangle_size;
    shape.sectors = body.num_sectors;
    shape.segments = body.num_segments;
    return shape;
}

std::int64_t whole_count(double value) {
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(std::min(saturating_count(std::nearbyint(value)), largest));
}

/// Sectors and segments of the body, raised where the triangle size asks for it. `width` stands for a radius
/// here, so the ring is cut finer than the size says.
void refine(const ModelBody& body, GraphicObject& object) {
    const double size = body.max_triangle_size;
    const double length = body.length.value;
    if (!(size > 0 && size < length)) return;
    object.segments = std::max(object.segments, whole_count(length / size));
    object.sectors = std::max(object.sectors, whole_count(2 * pi * body.width.value / size));
}

void shape_solid(const ModelBody& body, BodySolid& solid, Faults& faults) {
    BodySolid::Shape shape = shape_of(body);
    GraphicObject object = object_of(shape);
    refine(body, object);
    // The price has held both far below 32 bits, but for a shape that cannot be.
    const auto held = [](std::int64_t count) {
        return static_cast<std::int32_t>(std::min(count, static_cast<std::int64_t>(most_facets)));
    };
    shape.sectors = held(object.sectors);
    shape.segments = held(object.segments);
    if (!solid.points.empty() && !solid.facets.empty() && solid.shape == shape) return;
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
        const SolidCounts counts = count_solid(object);
        require_affordable({.sectors = counts.sectors, .segments = counts.segments, .facets = counts.facets});
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

SolidCounts count_solid(const BodySolid::Shape& shape) {
    return count_solid(object_of(shape));
}

SolidCounts count_solid(const ModelBody& body) {
    GraphicObject object = object_of(shape_of(body));
    refine(body, object);
    return count_solid(object);
}

int setup_cylinder_body(const ModelBody& body, BodySolid& solid, Faults& faults, std::int64_t stations) {
    return report_failure(faults, "An error occurred while setting up the cylinder body: ", [&] {
        require_affordable(body_price(body, Formulas::classic, stations));
        shape_solid(body, solid, faults);
        place_solid(body, solid);
    });
}

PlainSurface plain_surface(const BodySolid& solid, PlainSolid& memory) {
    if (solid.shape.segments <= 1 || solid.facets.empty()) return {solid.points, solid.facets};
    GraphicObject object = object_of(solid.shape);
    object.segments = 1;
    build_mesh(object, count_solid(object), memory.points, memory.facets);
    return {memory.points, memory.facets};
}

PlainSurface placed_plain_surface(const BodySolid& solid, PlainSolid& memory) {
    if (solid.shape.segments <= 1 || solid.facets.empty()) return {solid.transformed_points, solid.facets};
    const PlainSurface surface = plain_surface(solid, memory);
    const BodySolid::Placement& placement = solid.placement;
    transform_solid({1, 1, 1}, {placement.plunge, placement.strike, placement.dip}, placement.origin,
                    memory.points);
    return {memory.points, surface.facets};
}

}  // namespace anomalis::forward
