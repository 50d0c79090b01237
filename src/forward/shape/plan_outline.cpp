#include "forward/shape/plan_outline.h"

#include <algorithm>
#include <cmath>

#include "core/angles.h"
#include "core/faults.h"
#include "forward/shape/exact_shape.h"

namespace anomalis::forward {

namespace {

/// Half the length of a body without end that is drawn across the whole plan, m.
constexpr double unlimited_half_length = 100000.0;

enum Outcode : unsigned { inside = 0, west = 1, east_of = 2, south = 4, north_of = 8 };

unsigned outcode(double east, double north, const ClipBox& box) {
    unsigned code = inside;
    if (east < box.east_low) code |= west;
    if (east > box.east_high) code |= east_of;
    if (north < box.north_low) code |= south;
    if (north > box.north_high) code |= north_of;
    return code;
}

/// Both ends by length and offset, shortened where the drawing cuts limited bodies.
void limit_ends(const Workspace& workspace, const ModelBody& body, Footprint& print) {
    const double half = static_cast<double>(body.length.value) / 2;
    const double left = workspace.drawing.finite_body_left_clip;
    const double right = workspace.drawing.finite_body_right_clip;
    print.limited = true;
    print.near_end = body.offset.value - half;
    print.far_end = half + body.offset.value;
    const double near_end = left > 0 ? std::max(print.near_end, -left) : print.near_end;
    const double far_end = right > 0 ? std::min(print.far_end, right) : print.far_end;
    print.clipped = near_end != print.near_end || far_end != print.far_end;
    print.near_end = near_end;
    print.far_end = far_end;
}

void set_ends(const Workspace& workspace, const ModelBody& body, bool limited, Footprint& print) {
    if (limited) return limit_ends(workspace, body, print);
    const double length = workspace.drawing.infinite_body_length;
    const double half = length > 0 ? length / 2 : unlimited_half_length;
    print.near_end = -half;
    print.far_end = half;
}

Footprint classic_footprint(const Workspace& workspace, const ModelBody& body) {
    const bool centred = is_round(body.type);
    const double width = body.width.value;
    Footprint print;
    print.start = centred ? -width : 0.0;
    print.across = centred ? 2.0 * width : width;
    set_ends(workspace, body, centred || (body.type == thick_sheet && body.length.value > 0), print);
    return print;
}

/// The body that the exact formulas calculate: thin sheets have their length and their horizontal width,
/// pipes are as wide as they are and foreshortened by the fall of their axis, a wire has no end.
Footprint exact_footprint(const Workspace& workspace, const ModelBody& body) {
    const double width = body.width.value;
    const bool limited = (is_sheet(body.type) || body.type == pipe) && body.length.value > 0;
    Footprint print;
    print.across = width;
    set_ends(workspace, body, limited, print);
    if (is_sheet(body.type)) {
        const SheetShape sheet = sheet_shape(body);
        if (sheet.meets) print.across = sheet.width;
    }
    if (!is_round(body.type)) return print;
    print.start = -width / 2;
    if (body.type == pipe && limited) {
        print.fall = pipe_shape(body).cos_fall;
        print.near_end *= print.fall;
        print.far_end *= print.fall;
    }
    return print;
}

int outline_of(const Workspace& workspace, const ClipBox& box, const ModelBody& body, PlanOutline& outline) {
    const double strike = body.strike.value * radians_per_degree;
    const double ss = std::sin(strike);
    const double cs = std::cos(strike);
    const Footprint print = plan_footprint(workspace, body);
    const double near_end = print.near_end, far_end = print.far_end;
    const double start = print.start, across = print.across;
    double east1 = body.east + ss * near_end + cs * start;
    double north1 = body.north + cs * near_end - ss * start;
    double east2 = body.east + ss * far_end + cs * start;
    double north2 = body.north + cs * far_end - ss * start;
    if (clip_line(east1, north1, east2, north2, box) != 0) return -1;

    outline.east = {east1, east2, east2 + cs * across, east1 + cs * across, east1};
    outline.north = {north1, north2, north2 - ss * across, north1 - ss * across, north1};
    return 5;
}

}  // namespace

Footprint plan_footprint(const Workspace& workspace, const ModelBody& body) {
    return workspace.formulas == Formulas::exact ? exact_footprint(workspace, body)
                                                 : classic_footprint(workspace, body);
}

int clip_line(double& east1, double& north1, double& east2, double& north2, const ClipBox& box) {
    if (!std::isfinite(east1 + north1) || !std::isfinite(east2 + north2)) return -1;
    // Every turn takes one of at most eight bits away; a box turned inside out is left by the count.
    for (int turn = 0; turn < 9; ++turn) {
        const unsigned code1 = outcode(east1, north1, box);
        const unsigned code2 = outcode(east2, north2, box);
        if ((code1 | code2) == inside) return 0;
        if ((code1 & code2) != inside) return -1;
        const unsigned code = code1 != inside ? code1 : code2;
        double east = 0, north = 0;
        if (code & (north_of | south)) {
            north = code & north_of ? box.north_high : box.north_low;
            east = east1 + (east2 - east1) * ((north - north1) / (north2 - north1));
        } else {
            east = code & east_of ? box.east_high : box.east_low;
            north = north1 + (north2 - north1) * ((east - east1) / (east2 - east1));
        }
        (code == code1 ? east1 : east2) = east;
        (code == code1 ? north1 : north2) = north;
    }
    return -1;
}

int calculate_plan_outline(const Workspace& workspace, const ClipBox& box, const ModelBody& body,
                           PlanOutline& outline, Faults& faults) {
    int points = -1;
    report_failure(faults, "An error occurred while calculating the plan view of the body: ", [&] {
        if (has_plan_outline(body.type)) points = outline_of(workspace, box, body, outline);
    });
    return points;
}

}  // namespace anomalis::forward
