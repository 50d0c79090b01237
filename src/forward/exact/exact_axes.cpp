#include "forward/exact/exact_axes.h"

#include <cmath>

#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

/// The unit vector of an inclination (down positive) and a declination, in the body's axes.
Point3 unit_vector(double inclination, double declination, const BodyFrame& frame) {
    const double i = exact_radians(inclination);
    const double d = exact_radians(declination);
    const double east = std::cos(i) * std::sin(d);
    const double north = std::cos(i) * std::cos(d);
    return {east * frame.cos_strike - north * frame.sin_strike,
            east * frame.sin_strike + north * frame.cos_strike, -std::sin(i)};
}

}  // namespace

BodyFrame exact_frame(const ModelBody& body) {
    const double strike = exact_radians(body.strike.value);
    return {std::cos(strike), std::sin(strike), body.east, body.north, body.top.value, 1.0};
}

Point3 turned_out(const BodyFrame& frame, const Point3& in_body) {
    return {in_body.x * frame.cos_strike + in_body.y * frame.sin_strike,
            -in_body.x * frame.sin_strike + in_body.y * frame.cos_strike, in_body.z};
}

Point3 placed(const BodyFrame& frame, const Point3& in_body) {
    return turned_out(frame, in_body) + Point3{frame.east, frame.north, frame.top};
}

ExactField exact_field(const Workspace& workspace, const ModelBody& body, const BodyFrame& frame) {
    ExactField field;
    field.direction = unit_vector(workspace.field.inclination, workspace.field.declination, frame);
    field.intensity = workspace.field.intensity;
    const double q = body.rem_q.value;
    const double induced = body.susc.value / 1e6 * field.intensity / (4 * exact_pi);
    field.magnetisation =
        (field.direction + unit_vector(body.rem_i.value, body.rem_d.value, frame) * q) * induced;
    return field;
}

}  // namespace anomalis::forward
