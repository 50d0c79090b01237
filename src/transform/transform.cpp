#include "transform/transform.h"

#include <cmath>
#include <utility>

#include "core/angles.h"
#include "core/failure.h"
#include "core/prompts.h"
#include "core/workspace.h"

namespace anomalis::transform {

namespace {

constexpr double degrees_per_radian = 57.29577951;
constexpr double shortest_pair = 0.0001;

struct Direction {
    double length = 0;
    double east = 0, north = 0;  ///< of the unit vector
};

Direction direction_between(double x1, double y1, double x2, double y2) {
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double length = std::hypot(dx, dy);
    if (!std::isfinite(length)) throw Fault(FaultKind::overflow);
    if (length < shortest_pair) return {length, 0, 0};
    return {length, dx / length, dy / length};
}

/// Degrees clockwise from east, -180 to 180.
double clockwise_angle(const Direction& direction) {
    const auto [length, a, b] = direction;
    if (a == 0) return b > 0 ? -90 : 90;
    const double slope = std::atan(b / a) * degrees_per_radian;
    if (a > 0) return -slope;
    const double angle = 180 - std::abs(slope);
    return b > 0 ? -angle : angle;
}

bool changes_points(const PointTransform& t) {
    const double whole_degrees = t.rotation - std::remainder(t.rotation, 1.0);
    return t.x_origin != t.x_offset || t.y_origin != t.y_offset || std::abs(t.x_scale - 1) > 0.000001 ||
           std::abs(t.y_scale - 1) > 0.000001 || std::abs(std::fmod(whole_degrees, 360.0)) > 0.01 ||
           t.elevation_shift != 0 || std::abs(t.elevation_scale - 1) > 0.0001;
}

void replace_zero(double& scale) {
    if (scale == 0) scale = 1;
}

void invert_scale(double& scale) {
    replace_zero(scale);
    scale = 1 / scale;
}

}  // namespace

void reset_transform(PointTransform& transform) {
    transform = PointTransform{};
}

void update_transform(PointTransform& transform) {
    transform.cos_rotation = std::cos(transform.rotation * radians_per_degree);
    transform.sin_rotation = std::sin(transform.rotation * radians_per_degree);
    replace_zero(transform.x_scale);
    replace_zero(transform.y_scale);
    replace_zero(transform.elevation_scale);
    transform.active = changes_points(transform);
}

void apply_transform(const PointTransform& t, int direction, double& x, double& y, double& z) {
    if (!(t.x_scale > 0 && t.y_scale > 0)) return;
    if (direction == -1) {
        const double u = x - t.x_offset;
        const double v = y - t.y_offset;
        x = (u * t.cos_rotation - v * t.sin_rotation) / t.x_scale + t.x_origin;
        y = (v * t.cos_rotation + u * t.sin_rotation) / t.y_scale + t.y_origin;
    } else {
        const double u = (x - t.x_origin) * t.x_scale;
        const double v = (y - t.y_origin) * t.y_scale;
        x = u * t.cos_rotation + v * t.sin_rotation + t.x_offset;
        y = -u * t.sin_rotation + v * t.cos_rotation + t.y_offset;
    }
    // The same in both directions on purpose: `invert_transform` gives the record that leads back.
    if (z > missing_limit) z = (t.elevation_shift + z) * t.elevation_scale;
}

int define_transform_from_points(const TransformPoints& p, PointTransform& transform, Prompts& prompts) {
    int status = -1;
    report_failure(prompts, "An error occurred while calculating the transform parameters: ", [&] {
        const Direction original =
            direction_between(p.original_x1, p.original_y1, p.original_x2, p.original_y2);
        const Direction target = direction_between(p.new_x1, p.new_y1, p.new_x2, p.new_y2);
        if (original.length < shortest_pair || target.length < shortest_pair) return;
        transform.rotation = clockwise_angle(target) - clockwise_angle(original);
        transform.x_scale = transform.y_scale = target.length / original.length;
        transform.active = transform.two_point_defined = true;
        transform.x_origin = p.original_x1;
        transform.y_origin = p.original_y1;
        transform.x_offset = p.new_x1;
        transform.y_offset = p.new_y1;
        transform.original_x2 = p.original_x2;
        transform.original_y2 = p.original_y2;
        transform.new_x2 = p.new_x2;
        transform.new_y2 = p.new_y2;
        transform.elevation_shift = p.elevation_shift;
        transform.elevation_scale = p.elevation_scale;
        status = 0;
    });
    return status;
}

void invert_transform(int tab, PointTransform& t) {
    if (tab == 0) {
        t.rotation = -t.rotation;
        invert_scale(t.x_scale);
        invert_scale(t.y_scale);
    }
    std::swap(t.x_origin, t.x_offset);
    std::swap(t.y_origin, t.y_offset);
    std::swap(t.original_x2, t.new_x2);
    std::swap(t.original_y2, t.new_y2);
    t.elevation_shift = t.elevation_scale == 0 ? -t.elevation_shift : -t.elevation_shift * t.elevation_scale;
    invert_scale(t.elevation_scale);
}

}  // namespace anomalis::transform
