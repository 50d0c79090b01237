#include "show/handles/plan_handles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/angles.h"
#include "core/faults.h"
#include "core/workspace.h"
#include "forward/shape/plan_outline.h"
#include "forward/shape/reference_point.h"

namespace anomalis::show {

namespace {

using chart::Point;

constexpr double lever_length = 70 * handle_pixel;
constexpr double beyond_end = 26 * handle_pixel;
constexpr double inset = 14 * handle_pixel;  // of an end that lies beyond the view
constexpr double apart = 16 * handle_pixel;
constexpr double least_fall = 0.05;  // a steeper pipe shows no length in the plan
constexpr double whole_turn = 360;

/// A body in the plan: along and across its strike from the reference point.
struct Ground {
    Point at;
    Point along;
    forward::Footprint print;
    Point axis;  ///< where the middle line of the outline passes the reference point
    double length, offset;

    Ground(const Workspace& workspace, const ModelBody& body)
        : at{body.east, body.north},
          print(forward::plan_footprint(workspace, body)),
          length(static_cast<double>(body.length.value)),
          offset(static_cast<double>(body.offset.value)) {
        const double strike = static_cast<double>(body.strike.value) * radians_per_degree;
        along = {std::sin(strike), std::cos(strike)};
        const double across = print.start + print.across / 2;
        axis = {at.x + along.y * across, at.y - along.x * across};
    }
    Point on_axis(double t) const { return {axis.x + along.x * t, axis.y + along.y * t}; }
    Point on_strike(double t) const { return {at.x + along.x * t, at.y + along.y * t}; }
    double along_of(Point p) const { return (p.x - at.x) * along.x + (p.y - at.y) * along.y; }
    /// Of the line of its strike on screen, degrees.
    double rise() const { return std::atan2(along.y, along.x) / radians_per_degree; }
};

/// A length above 0 would give it ends.
bool can_end(const Workspace& workspace, std::int32_t type) {
    if (workspace.formulas == Formulas::exact) return is_sheet(type) || type == pipe;
    return type == thick_sheet || type == pipe;
}

/// How far the view reaches from a place in a direction, less the inset; 0 when the place is out of it.
double reach_of_view(const HandleView& view, Point from, Point direction) {
    const double x_in = inset / view.x_scale, y_in = inset / view.y_scale;
    const chart::Rect room{view.shown.x_low + x_in, view.shown.x_high - x_in, view.shown.y_low + y_in,
                           view.shown.y_high - y_in};
    if (!room.contains(from)) return 0;
    const auto reach = [](double place, double step, double low, double high) {
        if (step == 0) return std::numeric_limits<double>::infinity();
        return ((step > 0 ? high : low) - place) / step;
    };
    return std::min(reach(from.x, direction.x, room.x_low, room.x_high),
                    reach(from.y, direction.y, room.y_low, room.y_high));
}

/// Where the two ends of a body without any have their handles: on the drawn ends, or where the view ends.
std::array<double, 2> seen_ends(const Ground& ground, const HandleView& view) {
    const Point back{-ground.along.x, -ground.along.y};
    return {-std::min(-ground.print.near_end, reach_of_view(view, ground.axis, back)),
            std::min(ground.print.far_end, reach_of_view(view, ground.axis, ground.along))};
}

std::array<double, 2> ends_of(const Ground& ground, const HandleView& view) {
    return ground.print.limited ? std::array{ground.print.near_end, ground.print.far_end}
                                : seen_ends(ground, view);
}

void add_ends(const Workspace& workspace, const ModelBody& body, const Ground& ground, const HandleView& view,
              std::vector<Handle>& handles) {
    if (!can_end(workspace, body.type) || ground.print.clipped || std::abs(ground.print.fall) < least_fall)
        return;
    const auto [near, far] = ends_of(ground, view);
    if (!ground.print.limited && (near == 0 || far == 0)) return;
    const double outward = std::max(0.0, apart - (far - near) * view.x_scale / 2);
    const Point shift{ground.along.x * outward, ground.along.y * outward};
    handles.push_back({HandleKind::near_end, ground.on_axis(near), {-shift.x, -shift.y}, {}, ground.rise()});
    handles.push_back({HandleKind::far_end, ground.on_axis(far), shift, {}, ground.rise()});
    const double middle = ground.offset * ground.print.fall;
    if (ground.print.limited && std::abs(middle) * view.x_scale >= apart)
        handles.push_back({HandleKind::offset, ground.on_axis(middle), {}, {}, ground.rise()});
}

/// From the reference point along the strike: beyond the end that lies further off while there is room in
/// view, else on the way to it. The side does not change while it turns.
Handle strike_lever(const Workspace& workspace, const ModelBody& body, const Ground& ground,
                    const HandleView& view) {
    double reach = lever_length / view.x_scale;
    double side = 1;
    if (can_end(workspace, body.type)) {
        const auto [near, far] = ends_of(ground, view);
        side = near + far < 0 && ground.print.limited ? -1 : 1;
        const double end = std::max(side * near, side * far);
        const double beyond = end + beyond_end / view.x_scale;
        const bool seen = view.shown.contains(ground.on_strike(side * beyond));
        reach = seen ? std::max(beyond, reach) : std::min(reach, end / 2);
    }
    return {HandleKind::strike, ground.on_strike(side * reach), {}, ground.at};
}

HandleValues drag_place(const Workspace& workspace, Point target) {
    const auto distance = forward::nearest_distance(workspace, target.x, target.y);
    return distance ? HandleValues{{param_distance, *distance}} : HandleValues{};
}

/// The bearing nearest to the present strike among those of its whole turns that a person may give.
double nearest_strike(double bearing, const ModelBody& body) {
    const double strike = static_cast<double>(body.strike.value);
    const ValueRange& range = value_range(body.type, param_strike);
    double best = std::remainder(bearing, whole_turn);
    for (const double turns : {-2, -1, 1, 2}) {
        const double other = std::remainder(bearing, whole_turn) + turns * whole_turn;
        if (range.holds(other) && std::abs(other - strike) < std::abs(best - strike)) best = other;
    }
    return best;
}

HandleValues drag_strike(const Workspace& workspace, const ModelBody& body, const Ground& ground,
                         const HandleView& view, Point target) {
    const Handle lever = strike_lever(workspace, body, ground, view);
    const double side = ground.along_of(lever.at) < 0 ? -1 : 1;
    const double east = (target.x - ground.at.x) * side, north = (target.y - ground.at.y) * side;
    if (east == 0 && north == 0) return {};
    return {{param_strike, nearest_strike(std::atan2(east, north) / radians_per_degree, body)}};
}

HandleValues drag_end(const Ground& ground, const HandleView& view, HandleKind kind, double t) {
    const bool far = kind == HandleKind::far_end;
    if (!ground.print.limited) {
        const auto [near_seen, far_seen] = seen_ends(ground, view);
        if (far ? t >= far_seen : t <= near_seen) return {{param_length, 0}};
        const double half = far ? t - ground.offset : ground.offset - t;
        return {{param_length, std::max(2 * half, least_size)}};
    }
    const double end = t / ground.print.fall;
    const double other = ground.offset + (far ? -ground.length : ground.length) / 2;
    const double length = std::max(far ? end - other : other - end, least_size);
    return {{param_length, length}, {param_offset, other + (far ? length : -length) / 2}};
}

}  // namespace

std::vector<Handle> plan_handles(const Workspace& workspace, const ModelBody& body, const HandleView& view) {
    std::vector<Handle> handles;
    if (!(view.x_scale > 0) || !(view.y_scale > 0)) return handles;
    Faults told_by_the_drawing;
    report_failure(told_by_the_drawing, "", [&] {
        handles.push_back({HandleKind::place, {body.east, body.north}, {}});
        if (!has_plan_outline(body.type)) return;
        const Ground ground(workspace, body);
        add_ends(workspace, body, ground, view, handles);
        handles.push_back(strike_lever(workspace, body, ground, view));
    });
    std::erase_if(handles, [&](const Handle& handle) { return !view.shown.contains(handle.at); });
    return handles;
}

HandleValues drag_plan_handle(const Workspace& workspace, const ModelBody& body, const HandleView& view,
                              HandleKind kind, chart::Point target) {
    if (!std::isfinite(target.x) || !std::isfinite(target.y)) return {};
    if (kind == HandleKind::place) return drag_place(workspace, target);
    HandleValues values;
    Faults told_by_the_drawing;
    report_failure(told_by_the_drawing, "", [&] {
        const Ground ground(workspace, body);
        const double t = ground.along_of(target);
        if (kind == HandleKind::strike) values = drag_strike(workspace, body, ground, view, target);
        if (kind == HandleKind::near_end || kind == HandleKind::far_end)
            values = drag_end(ground, view, kind, t);
        if (kind == HandleKind::offset) values = {{param_offset, t / ground.print.fall}};
    });
    return values;
}

}  // namespace anomalis::show
