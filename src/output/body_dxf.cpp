#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "core/append_number.h"
#include "core/numbers.h"
#include "core/prompts.h"
#include "core/text.h"
#include "core/workspace.h"
#include "forward/exact/exact_axes.h"
#include "forward/exact/exact_solid.h"
#include "forward/shape/body_solid.h"
#include "forward/shape/exact_shape.h"
#include "forward/shape/trapezoid.h"
#include "output/dxf.h"
#include "output/dxf_file.h"

namespace anomalis::output {

namespace {

/// The corners of the six faces of a box; 0 to 3 go round the bottom, 4 to 7 round the top.
constexpr std::array<std::array<std::size_t, 4>, 6> box_faces{
    {{0, 1, 2, 3}, {7, 6, 5, 4}, {0, 4, 5, 1}, {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 4, 0}}};

// The two kinds of faces indent their codes differently; readers of drawings skip the blanks.
constexpr std::array<std::array<std::string_view, 3>, 4> box_codes{
    {{"  10", "  20", "  30"}, {"  11", "  21", "  31"}, {"  12", "  22", "  32"}, {"  13", "  23", "  33"}}};
constexpr std::array<std::array<std::string_view, 3>, 4> solid_codes{
    {{" 10", " 20", " 30"}, {" 11", " 21", " 31"}, {" 12", " 22", " 32"}, {" 13", " 23", " 33"}}};

/// The lines that begin a face: its kind, the body's name as its layer, the colour.
std::string face_start(const ModelBody& body) {
    // A line break in a name would shift all that follows.
    return "  0\r\n3DFACE\r\n  8\r\n" + single_line(body.name) + "\r\n  62\r\n  1";
}

void draw_box(const ModelBody& body, Formulas formulas, Faults& faults, DxfText& text) {
    forward::Trapezoid offsets{};
    const bool exact_sheet = formulas == Formulas::exact && is_tabular(body.type) && !is_step(body.type);
    const auto convert =
        exact_sheet ? forward::convert_exact_sheet_to_trapezoid : forward::convert_profile_model_to_trapezoid;
    if (convert(body, offsets, faults) != 0) return;
    std::array<std::array<float, 3>, 8> corners{};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const std::array<float, 3>& offset = i < 4 ? offsets[1][i] : offsets[0][i - 4];
        corners[i] = {to_single(offset[0] + body.east), to_single(offset[1] + body.north),
                      to_single(double{body.top.value} + offset[2])};
    }
    const std::string start = face_start(body);
    for (const auto& face : box_faces) {
        text.line(start);
        for (std::size_t i = 0; i < face.size(); ++i)
            for (std::size_t axis = 0; axis < 3; ++axis)
                text.pair(box_codes[i][axis], corners[face[i]][axis]);
    }
}

/// The texts of a point's coordinates: a point belongs to several faces, so they are formed once.
using PointText = std::array<std::string, 3>;

using Points = std::span<const Point3>;
using Facets = std::span<const std::array<std::int32_t, 3>>;

bool is_finite(Points points) {
    for (const Point3& point : points)
        if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) return false;
    return true;
}

void form_point_texts(Points corners, std::vector<PointText>& points) {
    constexpr int decimals = 2;
    points.resize(corners.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point3& point = corners[i];
        for (std::string& coordinate : points[i]) coordinate.clear();
        append_fixed(points[i][0], point.x, decimals);
        append_fixed(points[i][1], point.y, decimals);
        append_fixed(points[i][2], point.z, decimals);
    }
}

void draw_triangles(const ModelBody& body, Points corners, Facets facets, std::vector<PointText>& points,
                    DxfText& text) {
    if (!is_finite(corners)) return;
    form_point_texts(corners, points);
    const std::string start = face_start(body);
    for (const auto& facet : facets) {
        text.line(start);
        // A triangle is a face whose third corner comes twice.
        for (std::size_t i = 0; i < 4; ++i) {
            const PointText& point = points[static_cast<std::size_t>(facet[std::min<std::size_t>(i, 2)])];
            for (std::size_t axis = 0; axis < 3; ++axis) text.pair(solid_codes[i][axis], point[axis]);
        }
        text.write_out_if_large();
    }
}

void draw_solid(const ModelBody& body, Faults& faults, std::vector<PointText>& points, DxfText& text) {
    BodySolid solid = body.solid;
    if (forward::setup_cylinder_body(body, solid, faults) != 0) return;
    draw_triangles(body, solid.transformed_points, solid.facets, points, text);
}

/// The pipe that the exact formulas calculate.
void draw_exact_pipe(const ModelBody& body, Faults& faults, std::vector<PointText>& points, DxfText& text) {
    forward::PipeMesh mesh;
    const int status = report_failure(faults, "An error occurred while setting up the cylinder body: ", [&] {
        mesh = forward::pipe_mesh(forward::exact_frame(body), forward::pipe_shape(body));
    });
    if (status == 0) draw_triangles(body, mesh.points, mesh.facets, points, text);
}

}  // namespace

int write_body_dxf(const std::string& path, const Workspace& workspace, Prompts& prompts) {
    Faults faults;
    std::vector<PointText> points;
    const auto draw_bodies = [&](DxfText& text) {
        for (int number = 1; number <= workspace.body_count; ++number) {
            const ModelBody& body = workspace.body(number);
            if (!is_round(body.type)) {
                draw_box(body, workspace.formulas, faults, text);
            } else if (workspace.formulas == Formulas::exact && body.type == pipe && body.length.value > 0) {
                draw_exact_pipe(body, faults, points, text);
            } else {
                draw_solid(body, faults, points, text);
            }
            text.write_out_if_large();
        }
    };
    const int status =
        write_drawing(path, workspace, "An error occurred while exporting the 3D DXF: ", faults, draw_bodies);
    show_faults(faults, prompts);
    return status;
}

}  // namespace anomalis::output
