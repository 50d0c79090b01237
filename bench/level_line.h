#pragma once

#include <cstdint>
#include <string>

#include "core/workspace.h"

namespace anomalis {

/// A level east-west line of `stations` at 1 m spacing with both channels, and bodies along it.
inline Workspace level_line(int stations) {
    Workspace workspace;
    workspace.bodies.resize(33);
    workspace.definition.mag_column = 3;
    workspace.station_count = stations;
    workspace.stations.assign(stations);
    workspace.distances.assign(stations);
    workspace.mag.data.assign(stations);
    workspace.grav.data.assign(stations);
    workspace.azimuth = -1.5707963F;
    for (int i = 1; i <= stations; ++i) {
        workspace.distances[i] = i - 1;
        workspace.stations(i, column_east) = 350000 + i - 1;
        workspace.stations(i, column_north) = 6500000;
        workspace.stations(i, column_sensor) = 150;
    }
    return workspace;
}

inline ModelBody& add_body(Workspace& workspace, BodyType type, double distance) {
    reserve_next_body(workspace);
    ModelBody& body = workspace.body(++workspace.body_count);
    body.type = type;
    body.name = "Body " + std::to_string(workspace.body_count);
    body.distance.value = static_cast<float>(distance);
    body.top.value = 90;
    body.dip.value = type < pipe ? 70.0F : 10.0F;
    body.width.value = 100;
    body.depth_extent.value = body.length.value = 250;
    body.susc.value = 50000;
    body.density.value = 2.67F;
    body.response.assign(workspace.station_count);
    return body;
}

}  // namespace anomalis
