#include "flow/line_heights.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/numbers.h"

namespace anomalis::flow {

namespace {

using intake::SurveyLine;

/// A magnetometer on the ground is carried on a pole of some 2 m; a gravity meter stands on the ground.
constexpr float pole = 2;

/// Distance along the way of the stations, m.
std::vector<double> way_of(const SurveyLine& line) {
    std::vector<double> way(line.east.size());
    for (std::size_t i = 1; i < way.size(); ++i)
        way[i] = way[i - 1] + std::hypot(line.east[i] - line.east[i - 1], line.north[i] - line.north[i - 1]);
    return way;
}

/// Fills what is missing, linearly along the way; ends as the nearest value. Returns how many were.
long fill_missing(const std::vector<double>& way, std::vector<double>& values) {
    long filled = 0;
    std::size_t before = values.size();  // of the last value that is there
    for (std::size_t i = 0; i <= values.size(); ++i) {
        const bool end = i == values.size();
        if (!end && std::isnan(values[i])) continue;
        const std::size_t first = before == values.size() ? 0 : before + 1;
        for (std::size_t k = first; k < i; ++k, ++filled) {
            if (before == values.size()) {
                values[k] = values[i];
            } else if (end) {
                values[k] = values[before];
            } else {
                const double length = way[i] - way[before];
                const double part = length > 0 ? (way[k] - way[before]) / length : 0;
                values[k] = values[before] + part * (values[i] - values[before]);
            }
        }
        before = i;
    }
    return filled;
}

void fill_heights(SurveyLine& line, ImportedLine& imported) {
    const std::vector<double> way = way_of(line);
    for (auto [values, what] : {std::pair{&line.height, "sensor height"}, {&line.ground, "ground"}}) {
        if (values->empty()) continue;
        if (std::ranges::all_of(*values, [](double value) { return std::isnan(value); })) {
            values->clear();
        } else if (const long filled = fill_missing(way, *values); filled > 0) {
            imported.notes.add("The " + std::string(what) + " is missing at " + std::to_string(filled) +
                                   " stations of " + imported.title +
                                   ", and was interpolated between their neighbours",
                               1, Severity::remark);
        }
    }
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

std::string metres(float value) {
    return format_number(value, "0.##") + " m";
}

}  // namespace

void settle_heights(SurveyLine& line, const ImportChoices& choices, ImportedLine& imported) {
    fill_heights(line, imported);
    Workspace& workspace = imported.workspace;
    const auto offset = [&](float usual) { workspace.sensor_offset = choices.sensor_offset.value_or(usual); };
    const auto remark = [&](const std::string& text) { imported.notes.add(text, 1, Severity::remark); };
    if (!line.height.empty() && !line.ground.empty()) {
        offset(workspace.sensor_offset);
    } else if (line.height_is_clearance) {
        offset(to_single(std::round(median(line.height))));
        workspace.surface_elevation = 0;
        remark(
            "The file tells how high the sensor is above ground and nothing else: the ground is taken to be "
            "flat, at elevation 0");
    } else if (!line.height.empty() && line.mag.empty()) {
        line.ground = std::exchange(line.height, {});
        offset(0);
        remark("The file tells one elevation: gravity is taken to be read on the ground");
    } else if (!line.height.empty()) {
        offset(workspace.sensor_offset);
        remark("The file tells no ground: it is taken to lie " + metres(workspace.sensor_offset) +
               " below the sensor");
    } else if (!line.ground.empty()) {
        offset(line.mag.empty() ? 0 : pole);
        remark("The file tells the ground alone: the sensor is taken to be " +
               (workspace.sensor_offset == 0 ? "on it" : metres(workspace.sensor_offset) + " above it"));
    } else {
        offset(workspace.sensor_offset);
        remark("The file tells no heights: the ground is taken to be flat, at elevation 0, the sensor " +
               metres(workspace.sensor_offset) + " above it");
    }
}

}  // namespace anomalis::flow
