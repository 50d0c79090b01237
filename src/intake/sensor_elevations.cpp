#include <algorithm>

#include "core/failure.h"
#include "core/faults.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/profile.h"

namespace anomalis::intake {

namespace {

void fill_elevations(Workspace& w) {
    const bool sensor_read = w.definition.z_column > 0;
    const bool ground_read = w.definition.dtm_column > 0;
    const double offset = w.sensor_offset;
    const double surface = w.surface_elevation;
    for (int i = 1; i <= w.station_count; ++i) {
        double& sensor = w.stations(i, column_sensor);
        double& ground = w.stations(i, column_ground);
        if (!ground_read) ground = sensor_read ? sensor - offset : surface;
        if (!sensor_read) sensor = ground + offset;
    }
}

}  // namespace

void setup_sensor_elevations(Workspace& workspace, Faults& faults) {
    report_failure(faults, "An error occurred seting up the sensor elevations: ", [&] {
        if (workspace.elevations_ready) return;
        fill_elevations(workspace);
        const auto ground = workspace.stations.column(column_ground);
        const auto [low, high] = std::minmax_element(ground.begin(), ground.end());
        if (low != ground.end()) {
            workspace.z_min = to_single(*low);
            workspace.z_max = to_single(*high);
        }
        workspace.elevations_ready = true;
        invalidate_filtered_data(0, workspace);
    });
}

}  // namespace anomalis::intake
