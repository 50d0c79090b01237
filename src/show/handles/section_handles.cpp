#include "show/handles/section_handles.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/angles.h"
#include "core/workspace.h"
#include "show/section_shapes.h"

namespace anomalis::show {

namespace {

using chart::Point;

constexpr double wide_edge = 44 * handle_pixel;  // an edge that has room for three handles
constexpr double apart = 18 * handle_pixel;      // between neighbours
constexpr double tall_body = 30 * handle_pixel;
constexpr double inset = 9 * handle_pixel;  // of a handle at the edge of the plot
constexpr double shortest_lever = 36 * handle_pixel, longest_lever = 90 * handle_pixel;
constexpr double lever_gap = 14 * handle_pixel;  // beside the wall

Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
Point middle(Point a, Point b) {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

/// The four corners that the section draws of a sheet, an edge or a step.
struct Slab {
    Point near_top, far_top, far_foot, near_foot;
};

/// A body and what the section makes of its parameters.
class Drawn {
  public:
    Drawn(const Workspace& workspace, const ModelBody& body, const HandleView& view)
        : workspace_(workspace), window_{view.bottom, view.profile_end}, body_(edit::shape_of(body)) {}

    const ModelBody& body() const { return body_; }
    SectionShape shape() const { return section_shape(workspace_, body_, window_); }
    Slab slab() const {
        const SectionShape s = shape();
        return {{s.xs[0], s.ys[0]}, {s.xs[1], s.ys[1]}, {s.xs[2], s.ys[2]}, {s.xs[3], s.ys[3]}};
    }
    /// The same body with one parameter changed.
    Drawn with(ParamCode code, double value) const {
        Drawn other = *this;
        body_param(other.body_, code).value = static_cast<float>(value);
        return other;
    }
    double value(ParamCode code) const { return static_cast<double>(body_param(body_, code).value); }
    bool endless() const { return value(param_depth_extent) == 0; }
    double drawn_extent() const {
        return endless() ? value(param_top) - window_.bottom : value(param_depth_extent);
    }
    /// Of the dip that is drawn.
    double cotangent() const {
        const Slab s = slab();
        return (s.near_foot.x - s.near_top.x) / (drawn_extent() * stretch());
    }
    /// Metres along the line a metre across strike, with the side that the body lies on.
    double stretch() const {
        const Slab s = with(param_dip, 45).slab();
        return (s.near_foot.x - s.near_top.x) / drawn_extent();
    }

  private:
    const Workspace& workspace_;
    SectionWindow window_;
    ModelBody body_;
};

/// The far corner of the top from the near one: `still` + `each` a metre of width.
struct TopEdge {
    Point still, each;
    explicit TopEdge(const Drawn& drawn) {
        const Slab none = drawn.with(param_width, 0).slab();
        const Slab one = drawn.with(param_width, 1).slab();
        still = none.far_top - none.near_top;
        each = (one.far_top - one.near_top) - still;
    }
};

bool in_view(const HandleView& view, const Handle& handle) {
    const Point at{handle.at.x + handle.shift.x / view.x_scale, handle.at.y + handle.shift.y / view.y_scale};
    return view.shown.contains(at);
}

std::vector<Handle> those_in_view(std::vector<Handle> handles, const HandleView& view) {
    std::erase_if(handles, [&](const Handle& handle) { return !in_view(view, handle); });
    return handles;
}

/// The side of the near wall that the body lies on: 1 right, -1 left.
double side_of(const Drawn& drawn) {
    return drawn.stretch() < 0 ? -1 : 1;
}

/// Where a body without lower end leaves the view.
double bottom_in_view(const Slab& slab, const HandleView& view) {
    return std::max(slab.near_foot.y, view.shown.y_low);
}

/// A lever from the near top corner along the near wall, drawn beside it. Its length hangs on no dip.
Handle dip_lever(const Drawn& drawn, const Slab& slab, const HandleView& view) {
    const double foot = std::max(slab.near_foot.y, view.shown.y_low);
    const double length =
        std::clamp((slab.near_top.y - foot) * view.y_scale / 2, shortest_lever, longest_lever);
    const Point wall = slab.near_foot - slab.near_top;
    Point along{wall.x * view.x_scale, wall.y * view.y_scale};
    const double size = std::hypot(along.x, along.y);
    along = size > 0 ? Point{along.x / size, along.y / size} : Point{0, -1};
    const double out = -side_of(drawn) * lever_gap;
    Handle lever{HandleKind::dip,
                 {slab.near_top.x + along.x * length / view.x_scale,
                  slab.near_top.y + along.y * length / view.y_scale},
                 {-along.y * out, along.x * out}};
    lever.pivot = slab.near_top;
    return lever;
}

void add_top_edge(const Drawn& drawn, const Slab& slab, const HandleView& view,
                  std::vector<Handle>& handles) {
    const double width = std::abs(slab.far_top.x - slab.near_top.x) * view.x_scale;
    const double side = side_of(drawn);
    const double outward = std::max(0.0, apart - width / 2) * side;
    handles.push_back({HandleKind::place, middle(slab.near_top, slab.far_top), {}});
    handles.push_back({HandleKind::far_corner, slab.far_top, {outward, 0}, {}, 45 * side});
    if (width >= wide_edge) handles.push_back({HandleKind::near_corner, slab.near_top, {}, {}, -45 * side});
}

void add_bottom_edge(const Drawn& drawn, const Slab& slab, const HandleView& view,
                     std::vector<Handle>& handles) {
    const double height = (slab.near_top.y - slab.near_foot.y) * view.y_scale;
    const double width = std::abs(slab.far_top.x - slab.near_top.x) * view.x_scale;
    Handle bottom{HandleKind::bottom, middle(slab.near_foot, slab.far_foot), {}, {}, 90};
    if (drawn.endless()) {
        const double seen = bottom_in_view(slab, view);
        const double share = (seen - slab.near_top.y) / (slab.near_foot.y - slab.near_top.y);
        const double top = (slab.near_top.x + slab.far_top.x) / 2;
        bottom.at = {top + (bottom.at.x - top) * share, seen};
        bottom.shift = {0, inset};
    } else {
        bottom.shift = {0, std::min(0.0, height - tall_body)};
    }
    handles.push_back(bottom);
    if (drawn.endless() || width < wide_edge) return;
    const double side = side_of(drawn);
    handles.push_back({HandleKind::near_foot, slab.near_foot, bottom.shift, {}, 45 * side});
    handles.push_back({HandleKind::far_foot, slab.far_foot, bottom.shift, {}, -45 * side});
}

std::vector<Handle> sheet_handles(const Drawn& drawn, const HandleView& view) {
    std::vector<Handle> handles;
    const Slab slab = drawn.slab();
    add_top_edge(drawn, slab, view, handles);
    add_bottom_edge(drawn, slab, view, handles);
    handles.push_back(dip_lever(drawn, slab, view));
    return handles;
}

/// An edge or a step has its near wall alone.
std::vector<Handle> step_handles(const Drawn& drawn, const HandleView& view) {
    const Slab slab = drawn.slab();
    std::vector<Handle> handles{{HandleKind::place, slab.near_top, {}}};
    add_bottom_edge(drawn, {slab.near_top, slab.near_top, slab.near_foot, slab.near_foot}, view, handles);
    handles.push_back(dip_lever(drawn, slab, view));
    return handles;
}

std::vector<Handle> round_handles(const SectionShape& shape, const HandleView& view) {
    std::vector<Handle> handles{{HandleKind::place, {shape.distance, shape.top}, {}}};
    if (shape.xs.empty()) return handles;
    const double radius = shape.right() - shape.distance;
    const double outward = std::max(0.0, apart - radius * view.x_scale);
    handles.push_back({HandleKind::rim, {shape.right(), shape.top}, {outward, 0}});
    return handles;
}

double dip_of(double run, double depth) {
    if (depth <= 0) return run > 0 ? flattest_dip : 180 - flattest_dip;
    return std::clamp(std::atan2(depth, run) / radians_per_degree, flattest_dip, 180 - flattest_dip);
}

HandleValues drag_place(const Drawn& drawn, Point from, Point target) {
    return {{param_distance, drawn.value(param_distance) + target.x - from.x},
            {param_top, drawn.value(param_top) + target.y - from.y}};
}

HandleValues drag_corner(const Drawn& drawn, HandleKind kind, Point target) {
    const Slab slab = drawn.slab();
    const TopEdge edge(drawn);
    if (edge.each.x == 0) return {};
    const bool near = kind == HandleKind::near_corner;
    const double span = near ? slab.far_top.x - target.x : target.x - slab.near_top.x;
    const double width = std::max((span - edge.still.x) / edge.each.x, least_size);
    const double shift = near ? slab.far_top.x - edge.still.x - edge.each.x * width - slab.near_top.x : 0;
    const double rise = near ? 0 : edge.still.y + edge.each.y * width;
    return {{param_distance, drawn.value(param_distance) + shift},
            {param_top, drawn.value(param_top) + target.y - rise - slab.near_top.y},
            {param_width, width}};
}

/// How far down the foot of a wall goes from its top for the middle of the bottom edge to come to `level`.
HandleValues drag_bottom(const Drawn& drawn, const HandleView& view, double level) {
    const Slab slab = drawn.slab();
    if (drawn.endless() && level <= bottom_in_view(slab, view)) return {{param_depth_extent, 0}};
    const double tilt = (slab.far_foot.y - slab.near_foot.y) / 2;
    return {{param_depth_extent, std::max(slab.near_top.y + tilt - level, least_size)}};
}

/// A foot comes to its place by depth extent and dip. How far the far one lies from the near one hangs on the
/// dip too, so its cotangent is found by the secant method.
HandleValues drag_foot(const Drawn& drawn, HandleKind kind, Point target) {
    constexpr int most_steps = 60;
    constexpr double near_enough = 1e-6;  // dips are singles
    // A sheet that is nearly upright is drawn upright: there the last step is as near as it comes.
    constexpr double upright_gap = 2e-3;
    const double stretch = drawn.stretch();
    const Point top = drawn.slab().near_top;
    const auto between_feet = [&](double cotangent) {
        if (kind == HandleKind::near_foot) return Point{};
        const Slab turned = drawn.with(param_dip, dip_of(cotangent, 1)).slab();
        return turned.far_foot - turned.near_foot;
    };
    const auto extent_at = [&](double cotangent) {
        return std::max(top.y + between_feet(cotangent).y - target.y, least_size);
    };
    const auto miss = [&](double cotangent) {
        return cotangent - (target.x - top.x - between_feet(cotangent).x) / (stretch * extent_at(cotangent));
    };
    const auto solved = [&](double cotangent, double now) {
        return std::abs(now) <= near_enough * (1 + std::abs(cotangent));
    };
    const double present = drawn.cotangent();
    double before = present, missed = miss(before);
    double cotangent = before - missed, now = miss(cotangent);
    for (int step = 0; step < most_steps && !solved(cotangent, now) && now != missed; ++step) {
        const double next = cotangent - now * (cotangent - before) / (now - missed);
        before = std::exchange(cotangent, next);
        missed = std::exchange(now, miss(cotangent));
    }
    // Where no dip brings it there, the foot goes up and down alone.
    if (!(std::abs(now) <= upright_gap)) return {{param_depth_extent, extent_at(present)}};
    return {{param_depth_extent, extent_at(cotangent)}, {param_dip, dip_of(cotangent, 1)}};
}

HandleValues drag_dip(const Drawn& drawn, Point target) {
    const Point pivot = drawn.slab().near_top;
    return {{param_dip, dip_of((target.x - pivot.x) / drawn.stretch(), pivot.y - target.y)}};
}

HandleValues drag_rim(const Drawn& drawn, Point target) {
    const SectionShape one = drawn.with(param_width, 2).shape();
    const double stretch = one.right() - one.distance;
    const double radius = std::hypot((target.x - one.distance) / stretch, target.y - one.top);
    return {{param_width, std::max(2 * radius, least_size)}};
}

bool is_slab(const ModelBody& body, const SectionShape& shape) {
    return is_tabular(body.type) && shape.xs.size() == 5;
}

}  // namespace

std::vector<Handle> section_handles(const Workspace& workspace, const ModelBody& body,
                                    const HandleView& view) {
    if (!(view.x_scale > 0) || !(view.y_scale > 0)) return {};
    const Drawn drawn(workspace, body, view);
    const SectionShape shape = drawn.shape();
    if (!shape.visible) return {};
    if (!is_slab(body, shape)) return those_in_view(round_handles(shape, view), view);
    // Without room below its top a body has no bottom to take hold of.
    if (!(drawn.drawn_extent() > 0))
        return those_in_view({{HandleKind::place, drawn.slab().near_top, {}}}, view);
    return those_in_view(is_step(body.type) ? step_handles(drawn, view) : sheet_handles(drawn, view), view);
}

HandleValues drag_section_handle(const Workspace& workspace, const ModelBody& body, const HandleView& view,
                                 HandleKind kind, chart::Point target) {
    const Drawn drawn(workspace, body, view);
    const SectionShape shape = drawn.shape();
    if (!shape.visible || !std::isfinite(target.x) || !std::isfinite(target.y)) return {};
    const bool slab = is_slab(body, shape);
    switch (kind) {
        case HandleKind::place: {
            if (!slab) return drag_place(drawn, {shape.distance, shape.top}, target);
            const Slab corners = drawn.slab();
            const bool whole_edge = !is_step(body.type) && drawn.drawn_extent() > 0;
            return drag_place(
                drawn, whole_edge ? middle(corners.near_top, corners.far_top) : corners.near_top, target);
        }
        case HandleKind::near_corner:
        case HandleKind::far_corner:
            return slab ? drag_corner(drawn, kind, target) : HandleValues{};
        case HandleKind::bottom:
            return slab ? drag_bottom(drawn, view, target.y) : HandleValues{};
        case HandleKind::near_foot:
        case HandleKind::far_foot:
            return slab ? drag_foot(drawn, kind, target) : HandleValues{};
        case HandleKind::dip:
            return slab ? drag_dip(drawn, target) : HandleValues{};
        case HandleKind::rim:
            return drag_rim(drawn, target);
        default:
            return {};
    }
}

}  // namespace anomalis::show
