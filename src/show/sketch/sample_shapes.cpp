#include "show/sketch/sample_shapes.h"

#include <cmath>
#include <numbers>

#include "core/angles.h"
#include "core/faults.h"
#include "core/workspace.h"
#include "forward/shape/exact_shape.h"
#include "forward/shape/plan_outline.h"
#include "show/section_shapes.h"

namespace anomalis::show {

namespace {

constexpr double section_end = 260;  // m
constexpr double plan_reach = 400;
constexpr float unlimited_length = 150;

SketchPoints moved(const std::vector<double>& xs, const std::vector<double>& ys) {
    SketchPoints points;
    for (std::size_t i = 0; i < xs.size(); ++i) points.push_back({xs[i], ys[i]});
    return points;
}

SketchPoints side_of_sheet(const ModelBody& body) {
    const auto at = forward::sheet_corners(forward::sheet_shape(body));
    const double top = body.top.value;
    SketchPoints points;
    for (const std::size_t i : {1U, 0U, 4U, 5U, 1U}) points.push_back({at[i].y, top + at[i].z});
    return points;
}

/// The classic formulas hold a pipe at its end before the line, turn it there, count its offset against the
/// strike and its radius as a quarter of the diameter.
SketchPoints side_of_pipe(Formulas formulas, const ModelBody& body) {
    double fall = body.dip.value * radians_per_degree;
    chart::Point near{-body.length.value / 2.0 - body.offset.value, body.top.value};
    double length = body.length.value, radius = body.width.value / 4.0;
    if (formulas == Formulas::exact) {
        const forward::PipeShape pipe = forward::pipe_shape(body);
        fall = std::atan2(pipe.sin_fall, pipe.cos_fall);
        near = {pipe.near_end * pipe.cos_fall, body.top.value - pipe.near_end * pipe.sin_fall};
        length = pipe.length();
        radius = body.width.value / 2.0;
    }
    const double c = std::cos(fall), s = std::sin(fall);
    const chart::Point far{near.x + length * c, near.y - length * s};
    const double x = radius * s, y = radius * c;
    return {{near.x + x, near.y + y},
            {far.x + x, far.y + y},
            {far.x - x, far.y - y},
            {near.x - x, near.y - y},
            {near.x + x, near.y + y}};
}

}  // namespace

ModelBody sample_body(std::int32_t type, int side) {
    const bool has_middle = is_round(type) || type == sphere;
    ModelBody body;
    body.type = type;
    body.strike.value = static_cast<float>(90 * side);
    body.distance.value = side > 0 ? 95 : 165;
    body.top.value = 110;
    body.dip.value = 60;
    body.width.value = type == thin_sheet ? 11 : 54;
    body.depth_extent.value = 90;
    if (has_middle) {
        body.distance.value = 130;
        body.top.value = 70;
        body.width.value = type == wire ? 24 : 56;
        body.dip.value = type == wire ? 35 : 0;
    }
    if (type == wire) body.offset.value = 76;
    return body;
}

std::vector<SketchPoints> section_outlines(Formulas formulas, const ModelBody& body) {
    Workspace workspace;
    workspace.formulas = body.type == sphere ? Formulas::exact : formulas;
    const SectionShape shape = section_shape(workspace, body, {0, section_end});
    if (shape.xs.empty()) return {};
    return {moved(shape.xs, shape.ys)};
}

std::vector<SketchPoints> plan_outlines(const ModelBody& body) {
    Workspace workspace;
    workspace.formulas = Formulas::exact;
    workspace.drawing.infinite_body_length = unlimited_length;
    forward::PlanOutline outline;
    Faults faults;
    const forward::ClipBox box{-plan_reach, plan_reach, -plan_reach, plan_reach};
    if (forward::calculate_plan_outline(workspace, box, body, outline, faults) < 0) return {};
    return {moved({outline.east.begin(), outline.east.end()}, {outline.north.begin(), outline.north.end()})};
}

std::vector<SketchPoints> side_outlines(Formulas formulas, const ModelBody& body) {
    if (body.type == pipe) return {side_of_pipe(formulas, body)};
    if (is_sheet(body.type)) return {side_of_sheet(body)};
    return {};
}

WirePair wire_pair(const ModelBody& body, int side) {
    const double turn = body.dip.value * radians_per_degree, half = body.offset.value / 2.0;
    const double x = side * half * std::sin(turn), y = half * std::cos(turn);
    const chart::Point middle{body.distance.value, body.top.value};
    return {{middle.x + x, middle.y + y}, {middle.x - x, middle.y - y}};
}

SketchPoints sketch_circle(chart::Point centre, double radius) {
    constexpr int chords = 32;
    SketchPoints points;
    for (int i = 0; i <= chords; ++i) {
        const double angle = 2 * std::numbers::pi * i / chords;
        points.push_back({centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)});
    }
    return points;
}

}  // namespace anomalis::show
