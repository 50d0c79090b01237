// The outlines of bodies by the exact formulas, as one JSON object a body, for the drawings of the guide
// (docs/images/bodies/sketches.py).
//
//   body_outlines "type=2 distance=90 top=110 dip=60 width=50 depth_extent=90 length=80" ...
//
// The line runs east from (0, 0), so strikes of 0 to 180 have their + side ahead. m.
//   section  along the line and up, as the section of the window has it; a pair of wires has two
//   plan     east and north on the map
//   side     seen across strike: along it from the reference point, and up; sheets that end, and pipes

#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/angles.h"
#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/faults.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "forward/shape/exact_shape.h"
#include "forward/shape/plan_outline.h"
#include "show/section_shapes.h"

namespace {

using namespace anomalis;

struct Place {
    double x, y;
};
using Outline = std::vector<Place>;

constexpr show::SectionWindow window{-50, 400};
constexpr double plan_reach = 1000;
constexpr float unlimited_length = 170;

void set_value(ModelBody& body, std::string_view name, double value) {
    if (name == "type") body.type = static_cast<std::int32_t>(value);
    if (name == "shell") body.shell_thickness = static_cast<float>(value);
    if (name == "type" || name == "shell") return;
    for (const BodyParameter& row : body_parameters()) {
        if (row.name != name) continue;
        (body.*row.slot).value = static_cast<float>(value);
        return;
    }
    throw Fault("no parameter is called " + std::string(name));
}

ModelBody body_of(const std::string& words) {
    ModelBody body;
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        const std::size_t sign = word.find('=');
        double value = 0;
        if (sign == std::string::npos || !parse_number(std::string_view(word).substr(sign + 1), value))
            throw Fault(word + " is not NAME=NUMBER");
        set_value(body, std::string_view(word).substr(0, sign), value);
    }
    body.east = body.distance.value;
    return body;
}

Workspace eastward_line() {
    Workspace workspace;
    workspace.formulas = Formulas::exact;
    workspace.azimuth = static_cast<float>(-90 * radians_per_degree);
    workspace.drawing.infinite_body_length = unlimited_length;
    return workspace;
}

std::vector<Outline> section_of(const Workspace& workspace, const ModelBody& body) {
    const auto outline_of = [&](const ModelBody& one) {
        const show::SectionShape shape = show::section_shape(workspace, one, window);
        Outline outline;
        for (std::size_t i = 0; i < shape.xs.size(); ++i) outline.push_back({shape.xs[i], shape.ys[i]});
        return outline;
    };
    if (body.type != wire || body.offset.value == 0) return {outline_of(body)};
    const double turn = body.dip.value * radians_per_degree, half = body.offset.value / 2.0;
    ModelBody first = body, second = body;
    first.distance.value += static_cast<float>(half * std::sin(turn));
    first.top.value += static_cast<float>(half * std::cos(turn));
    second.distance.value -= static_cast<float>(half * std::sin(turn));
    second.top.value -= static_cast<float>(half * std::cos(turn));
    return {outline_of(first), outline_of(second)};
}

std::vector<Outline> plan_of(const Workspace& workspace, const ModelBody& body) {
    forward::PlanOutline plan;
    Faults faults;
    const forward::ClipBox box{-plan_reach, plan_reach, -plan_reach, plan_reach};
    if (forward::calculate_plan_outline(workspace, box, body, plan, faults) < 0) return {};
    Outline outline;
    for (std::size_t i = 0; i < plan.east.size(); ++i) outline.push_back({plan.east[i], plan.north[i]});
    return {outline};
}

Outline side_of_sheet(const ModelBody& body) {
    const auto corners = forward::sheet_corners(forward::sheet_shape(body));
    Outline outline;
    for (const std::size_t i : {1U, 0U, 4U, 5U, 1U})
        outline.push_back({corners[i].y, body.top.value + corners[i].z});
    return outline;
}

Outline side_of_pipe(const ModelBody& body) {
    const forward::PipeShape shape = forward::pipe_shape(body);
    const double radius = body.width.value / 2.0;
    const auto corner = [&](double along, double up) -> Place {
        return {along * shape.cos_fall + up * shape.sin_fall,
                body.top.value - along * shape.sin_fall + up * shape.cos_fall};
    };
    return {corner(shape.near_end, radius), corner(shape.far_end, radius), corner(shape.far_end, -radius),
            corner(shape.near_end, -radius), corner(shape.near_end, radius)};
}

std::vector<Outline> side_of(const ModelBody& body) {
    if (!(body.length.value > 0)) return {};
    if (is_sheet(body.type)) return {side_of_sheet(body)};
    if (body.type == BodyType::pipe) return {side_of_pipe(body)};
    return {};
}

void put(std::string_view name, const std::vector<Outline>& outlines) {
    std::cout << '"' << name << "\":[";
    for (const Outline& outline : outlines) {
        std::cout << (&outline == outlines.data() ? "[" : ",[");
        for (const Place& at : outline)
            std::cout << (&at == outline.data() ? "[" : ",[") << format_number(at.x, "0.0000") << ','
                      << format_number(at.y, "0.0000") << ']';
        std::cout << ']';
    }
    std::cout << ']';
}

void put_body(const std::string& words) {
    const Workspace workspace = eastward_line();
    const ModelBody body = body_of(words);
    std::cout << '{';
    put("section", section_of(workspace, body));
    std::cout << ',';
    put("plan", plan_of(workspace, body));
    std::cout << ',';
    put("side", side_of(body));
    std::cout << "}\n";
}

}  // namespace

int main(int argc, char** argv) {
    try {
        for (int i = 1; i < argc; ++i) put_body(argv[i]);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
