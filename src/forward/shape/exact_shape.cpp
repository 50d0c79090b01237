#include "forward/shape/exact_shape.h"

#include <algorithm>
#include <cmath>

#include "forward/body_price.h"
#include "forward/exact/exact_axes.h"
#include "forward/shape/body_solid.h"

namespace anomalis::forward {

namespace {

constexpr double flattest = 100;          ///< the largest cotangent of a dip
constexpr double least_narrowing = 1e-6;  ///< below this a sloping top does not meet the far wall

/// Cuts the top by its slope; the far wall stays in its plane.
void tilt_top(const ModelBody& body, SheetShape& sheet) {
    const double slope = body.slope.value;
    if (slope == 0) return;
    const double tangent = std::tan(exact_radians(slope));
    const double narrowing = 1 + tangent * sheet.cotangent;
    if (std::abs(slope) >= 90 || narrowing <= least_narrowing) {
        sheet.meets = false;
        return;
    }
    sheet.width /= narrowing;
    sheet.rise = sheet.width * tangent;
}

/// Distance of a corner of the regular polygon that has the area of a circle.
double corner_distance(std::int32_t sectors, double radius) {
    const double step = 2 * exact_pi / sectors;
    return radius * std::sqrt(step / std::sin(step));
}

}  // namespace

double dip_cotangent(double dip) {
    double within = std::fmod(dip, 360.0);
    if (within < 0) within += 360;
    if (within == 0) return flattest;
    if (within == 180) return -flattest;
    const double angle = exact_radians(within > 180 ? within - 180 : within);
    return std::clamp(std::cos(angle) / std::sin(angle), -flattest, flattest);
}

SheetShape sheet_shape(const ModelBody& body) {
    SheetShape sheet;
    sheet.cotangent = dip_cotangent(body.dip.value);
    sheet.width = body.width.value;
    if (body.type == thin_sheet) sheet.width *= std::sqrt(1 + sheet.cotangent * sheet.cotangent);
    sheet.depth = body.depth_extent.value;
    const double length = body.length.value;
    sheet.limited = !(length <= 0);
    if (sheet.limited) {
        sheet.near_end = body.offset.value - length / 2;
        sheet.far_end = body.offset.value + length / 2;
        sheet.plunge = std::sin(exact_radians(body.plunge.value));
    }
    tilt_top(body, sheet);
    return sheet;
}

std::array<Point3, 8> sheet_corners(const SheetShape& s) {
    std::array<Point3, 8> at{Point3{0, s.far_end, 0}, Point3{0, s.near_end, 0},
                             Point3{s.width, s.near_end, s.rise}, Point3{s.width, s.far_end, s.rise}};
    for (std::size_t i = 0; i < 4; ++i) {
        at[i].z -= at[i].y * s.plunge;
        at[i + 4] = {at[i].x + s.foot(), at[i].y, at[i].z - s.depth};
    }
    return at;
}

StepShape step_shape(const ModelBody& body) {
    StepShape step;
    step.depth = body.depth_extent.value == 0 ? deepest : body.depth_extent.value;
    step.run = dip_cotangent(body.dip.value) * step.depth;
    return step;
}

PipeShape pipe_shape(const ModelBody& body) {
    PipeShape pipe;
    require_affordable(body_price(body, Formulas::exact, 0));
    pipe.sectors = static_cast<std::int32_t>(count_solid(body).sectors);
    const double radius = std::abs(static_cast<double>(body.width.value)) / 2;
    pipe.outer = corner_distance(pipe.sectors, radius);
    const double length = body.length.value;
    pipe.limited = !(length <= 0);
    const double wall = body.shell_thickness;
    const double cap = body.end_thickness > 0 ? body.end_thickness : 0.0;
    if (wall > 0 && wall < radius && !(pipe.limited && cap >= length / 2)) {
        pipe.inner = corner_distance(pipe.sectors, radius - wall);
        pipe.cap = pipe.limited ? cap : 0.0;
    }
    if (!pipe.limited) return pipe;
    const double fall = exact_radians(static_cast<double>(body.dip.value) + body.plunge.value);
    pipe.cos_fall = std::cos(fall);
    pipe.sin_fall = std::sin(fall);
    pipe.near_end = body.offset.value - length / 2;
    pipe.far_end = body.offset.value + length / 2;
    return pipe;
}

double ring_area(std::int32_t sectors, double corner_distance) {
    return sectors * corner_distance * corner_distance * std::sin(2 * exact_pi / sectors) / 2;
}

}  // namespace anomalis::forward
