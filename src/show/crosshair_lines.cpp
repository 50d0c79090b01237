#include "show/crosshair_lines.h"

#include <algorithm>
#include <span>

#include "chart/ax_grapher.h"
#include "core/gaps.h"
#include "core/search.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "show/graph_ranges.h"

namespace anomalis::show {

namespace {

/// What one pixel is worth, in units of an axis.
double pixel_step(double scale) {
    return scale > 0 ? chart::units_per_screen_pixel / scale : 1;
}

/// Of a length one digit more than a decimetre says nothing.
std::string length_text(double value, double step) {
    return chart::value_text(value, std::max(step, 0.1)) + " m";
}

std::string ground_text(const Workspace& workspace, double distance, double step) {
    return length_text(workspace.stations(nearest_station(workspace, distance), column_ground), step);
}

std::vector<std::string> section_lines(const Workspace& workspace, const chart::AX_Grapher& section,
                                       double distance, const chart::Point* pointer) {
    const double step = pixel_step(section.YAxisScale());
    if (!pointer) return {"Ground " + ground_text(workspace, distance, step)};
    const double ground = workspace.stations(nearest_station(workspace, distance), column_ground);
    const double depth = ground - pointer->y;
    return {"Distance " + length_text(distance, pixel_step(section.XAxisScale())),
            "Elevation " + length_text(pointer->y, step),
            depth >= 0 ? "Depth " + length_text(depth, step) : "Above ground " + length_text(-depth, step)};
}

void add_value(std::vector<std::string>& lines, const std::string& name, std::span<const float> curve,
               int station, double step, const std::string& unit) {
    const auto i = static_cast<std::size_t>(station - 1);
    if (i >= curve.size() || !is_reading(static_cast<double>(curve[i]))) return;
    lines.push_back(name + " " + chart::value_text(static_cast<double>(curve[i]), step) + " " + unit);
}

}  // namespace

int nearest_station(const Workspace& workspace, double distance) {
    const int n = workspace.station_count;
    int nearest = search_sorted(workspace.distances.span(), distance);
    if (nearest > 1 && distance - workspace.distances[nearest - 1] < workspace.distances[nearest] - distance)
        --nearest;
    return nearest < 1 ? std::min(1, n) : std::min(nearest, n);
}

std::vector<std::string> crosshair_lines(const Workspace& workspace, int chart,
                                         const chart::AX_Grapher& grapher, double distance,
                                         const chart::Point* pointer) {
    const int station = nearest_station(workspace, distance);
    if (station < 1) return {};
    if (chart == edit::chart_section) return section_lines(workspace, grapher, distance, pointer);
    const std::string unit = grapher.YAxisLabel();
    const double step = pixel_step(grapher.YAxisScale());
    std::vector<std::string> lines;
    if (pointer) {
        lines.push_back("Distance " + length_text(distance, pixel_step(grapher.XAxisScale())));
        lines.push_back("Pointer " + chart::value_text(pointer->y, step) + " " + unit);
    }
    // A value has a digit more than a pixel shows: it is why one reads it off.
    add_value(lines, "Observed", chart_curve(workspace, chart, stage_observed), station, step / 10, unit);
    add_value(lines, "Calculated", chart_curve(workspace, chart, stage_calculated), station, step / 10, unit);
    return lines;
}

}  // namespace anomalis::show
