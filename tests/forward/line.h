#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/angles.h"
#include "core/workspace.h"
#include "forward/driver.h"
#include "support/stale_body.h"
#include "support/told.h"

namespace anomalis::forward {

/// A straight, level survey line with both channels, and bodies that are valid in every field.
struct Line {
    /// `bearing` in degrees clockwise from north; the sensor stands `sensor` above the origin of elevations.
    explicit Line(int stations, double spacing = 10, double bearing = 0, double sensor = 100) {
        ScriptedPrompts prompts;
        initialise_workspace(workspace, prompts);
        workspace.definition.mag_column = 3;
        workspace.definition.grav_column = 4;
        place(stations, spacing, bearing, sensor);
    }

    void place(int stations, double spacing, double bearing, double sensor) {
        const double east = std::sin(bearing * std::acos(-1.0) / 180);
        const double north = std::cos(bearing * std::acos(-1.0) / 180);
        workspace.station_count = stations;
        workspace.stations.assign(stations);
        workspace.distances.assign(stations);
        workspace.mag.data.assign(stations);
        workspace.grav.data.assign(stations);
        for (int i = 1; i <= stations; ++i) {
            const double along = spacing * (i - 1);
            workspace.distances[i] = along;
            workspace.stations(i, column_east) = 350000 + east * along;
            workspace.stations(i, column_north) = 6500000 + north * along;
            workspace.stations(i, column_sensor) = sensor;
            workspace.stations(i, column_ground) = sensor - 10;
        }
        workspace.origin_east = 350000;
        workspace.origin_north = 6500000;
        const double run_east = std::abs(east) < 1e-12 ? 0 : east;
        const double run_north = std::abs(north) < 1e-12 ? 0 : north;
        workspace.azimuth = static_cast<float>(guarded_atan2(-run_east, -run_north));
        for (ModelBody& body : workspace.bodies) body.response.assign(stations);
    }

    /// A body with the values of a new one, at `distance` and with its top at elevation 0.
    ModelBody& add(BodyType type, double distance = 0, double strike = 90) {
        reserve_next_body(workspace);
        ModelBody& body = workspace.body(++workspace.body_count);
        body = ModelBody{};
        body.type = type;
        body.name = "Body " + std::to_string(workspace.body_count);
        body.distance.value = static_cast<float>(distance);
        body.strike.value = static_cast<float>(strike);
        body.dip.value = type < pipe ? 90.0F : 0.0F;
        body.width.value = 100;
        body.depth_extent.value = body.length.value = 250;
        body.susc.value = 50000;
        body.density.value = 2.67F;
        body.response.assign(workspace.station_count);
        return body;
    }

    /// Everything is calculated anew by these formulas.
    void use(Formulas formulas) {
        ScriptedPrompts prompts;
        workspace.formulas = formulas;
        reset_calculated_data(workspace, prompts);
    }

    void calculate() { calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults); }

    /// Calculates body 1 anew and returns a column of its response.
    std::vector<double> response(int column = 1, int number = 1) {
        invalidate_body(workspace.body(number));
        calculate();
        const auto values = workspace.body(number).response.column(column);
        return {values.begin(), values.end()};
    }

    ModelBody& body(int number = 1) { return workspace.body(number); }

    Faults faults;
    Workspace workspace;
};

inline double peak_of(const std::vector<double>& values) {
    double peak = 0;
    for (const double v : values) peak = std::max(peak, std::abs(v));
    return peak;
}

/// The largest difference of two curves.
inline double largest_difference(const std::vector<double>& a, const std::vector<double>& b) {
    double largest = a.size() == b.size() ? 0 : HUGE_VAL;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

inline std::vector<double> reversed(std::vector<double> values) {
    std::reverse(values.begin(), values.end());
    return values;
}

inline std::vector<double> times(std::vector<double> values, double factor) {
    for (double& v : values) v *= factor;
    return values;
}

}  // namespace anomalis::forward
