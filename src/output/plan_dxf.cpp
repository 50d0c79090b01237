#include <cmath>

#include "core/angles.h"
#include "core/workspace.h"
#include "forward/exact/exact_axes.h"
#include "forward/shape/plan_outline.h"
#include "output/dxf.h"
#include "output/dxf_file.h"

namespace anomalis::output {

namespace {

/// Half the length given to a body without one, m.
constexpr double usual_half_length = 125.0;

void draw_vertex(double east, double north, DxfText& text) {
    text.pair("  0", "VERTEX");
    text.pair(" 10", east);
    text.pair(" 20", north);
    text.write_out_if_large();
}

void draw_line(const Workspace& workspace, DxfText& text) {
    text.pair("  0", "POLYLINE");
    for (int i = 1; i <= workspace.station_count; ++i)
        draw_vertex(workspace.stations(i, column_east), workspace.stations(i, column_north), text);
    text.pair("  0", "SEQEND");
}

/// A rectangle along strike: where one long side begins and ends, and how far the other lies across.
struct Outline {
    double near_end = 0, far_end = 0;
    double start = 0, across = 0;
};

/// A pipe as the exact formulas calculate it: as wide as it is, foreshortened by the fall of its axis.
Outline exact_pipe(const ModelBody& body) {
    const double fall = forward::exact_radians(static_cast<double>(body.dip.value) + body.plunge.value);
    const double half_length = body.length.value / 2.0 * std::cos(fall);
    const double half_width = std::abs(body.width.value / 2.0);
    const double centre = body.offset.value * std::cos(fall);
    return {centre - half_length, centre + half_length, -half_width, 2 * half_width};
}

Outline outline_of(const ModelBody& body, Formulas formulas) {
    const double length = body.length.value;
    const double width = body.width.value;
    const double centre = body.offset.value;
    if (formulas == Formulas::exact && body.type == pipe && length > 0) return exact_pipe(body);
    if (body.type == pipe) return {centre - length / 2, centre + length / 2, -width, 2 * width};
    if (body.type == thick_sheet && length > 0) return {centre - length / 2, centre + length / 2, 0, width};
    return {-usual_half_length, usual_half_length, 0, width};
}

void draw_outline(const ModelBody& body, Formulas formulas, const forward::ClipBox& box, DxfText& text) {
    const Outline outline = outline_of(body, formulas);
    const double strike = body.strike.value * radians_per_degree;
    const double s = std::sin(strike);
    const double c = std::cos(strike);
    double east1 = body.east + s * outline.near_end + c * outline.start;
    double north1 = body.north + c * outline.near_end - s * outline.start;
    double east2 = body.east + s * outline.far_end + c * outline.start;
    double north2 = body.north + c * outline.far_end - s * outline.start;
    if (forward::clip_line(east1, north1, east2, north2, box) < 0) return;
    const double reach = std::abs(outline.across) + std::abs(east1) + std::abs(east2) + std::abs(north1);
    if (!std::isfinite(reach + std::abs(north2))) return;
    text.pair("  0", "POLYLINE");
    draw_vertex(east1, north1, text);
    draw_vertex(east2, north2, text);
    draw_vertex(east2 + c * outline.across, north2 - s * outline.across, text);
    draw_vertex(east1 + c * outline.across, north1 - s * outline.across, text);
    draw_vertex(east1, north1, text);
    text.pair("  0", "SEQEND");
}

}  // namespace

int write_plan_dxf(const std::string& path, const Workspace& workspace, Prompts& prompts) {
    return write_drawing(path, workspace, "An error occurred while exporting the plan to dxf: ", prompts,
                         [&](DxfText& text) {
                             if (workspace.station_count > 0) draw_line(workspace, text);
                             const SquareExtents square = square_extents(workspace);
                             const forward::ClipBox box{square.east_low, square.east_high, square.north_low,
                                                        square.north_high};
                             for (int number = 1; number <= workspace.body_count; ++number) {
                                 const ModelBody& body = workspace.body(number);
                                 if (is_tabular(body.type) || body.type == pipe)
                                     draw_outline(body, workspace.formulas, box, text);
                             }
                         });
}

}  // namespace anomalis::output
