#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "core/workspace.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis {

/// A fresh workspace over a data file of the test's own: east, north, mag in columns 1 to 3 from the first
/// line.
struct Survey {
    Survey() {
        initialise_workspace(workspace, prompts);
        workspace.definition.first_data_line = 1;
        workspace.definition.x_column = 1;
        workspace.definition.y_column = 2;
        workspace.definition.mag_column = 3;
    }
    explicit Survey(std::string_view contents) : Survey() { set_file(contents); }

    void set_file(std::string_view contents) {
        workspace.definition.data_file = folder.write("line.dat", contents);
    }

    TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace;
};

struct TestStation {
    double east = 0, north = 0, mag = 0, sensor = 0, ground = 0, grav = 0;
};

/// Stations as the reading leaves them.
inline void set_stations(Workspace& workspace, std::initializer_list<TestStation> stations) {
    const auto count = static_cast<int>(stations.size());
    workspace.station_count = count;
    workspace.stations.assign(count);
    workspace.mag.data.assign(count);
    workspace.grav.data.assign(count);
    int row = 0;
    for (const TestStation& station : stations) {
        ++row;
        workspace.stations(row, column_east) = station.east;
        workspace.stations(row, column_north) = station.north;
        workspace.stations(row, column_sensor) = station.sensor;
        workspace.stations(row, column_ground) = station.ground;
        workspace.mag.data(row, row_raw, stage_observed) = static_cast<float>(station.mag);
        workspace.grav.data(row, row_raw, stage_observed) = static_cast<float>(station.grav);
    }
}

}  // namespace anomalis
