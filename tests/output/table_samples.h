#pragma once

#include <string>
#include <vector>

#include "core/workspace.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::output {

/// Three stations 100 m apart on an east-west line, every row a number of its own.
inline Workspace three_stations() {
    Workspace workspace;
    ScriptedPrompts prompts;
    initialise_workspace(workspace, prompts);
    workspace.definition.data_file = "line 7.dat";
    workspace.definition.mag_column = 3;
    workspace.definition.grav_column = 0;
    workspace.station_count = 3;
    workspace.stations.assign(3);
    workspace.distances.assign(3);
    workspace.mag.data.assign(3);
    workspace.grav.data.assign(3);
    for (int i = 1; i <= 3; ++i) {
        workspace.stations(i, column_east) = 412345.6785 + 100 * (i - 1);
        workspace.stations(i, column_north) = 7123456.25;
        workspace.stations(i, column_sensor) = 80.125 + i;
        workspace.stations(i, column_ground) = 0.0625 * i;
        workspace.distances[i] = 100.0 * (i - 1);
        for (int row = 1; row <= 6; ++row) {
            for (const int stage : {stage_observed, stage_calculated}) {
                workspace.mag.data(i, row, stage) = static_cast<float>(i * 100 + row * 10 + stage);
                workspace.grav.data(i, row, stage) = static_cast<float>(-(row + stage * 0.125));
            }
        }
    }
    workspace.x_min = 412345.5, workspace.x_max = 412545.5;
    workspace.y_min = workspace.y_max = 7123456.25;
    workspace.z_min = 0, workspace.z_max = 0.25F;
    return workspace;
}

inline std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find("\r\n", begin);
        lines.push_back(text.substr(begin, end - begin));
        if (end == std::string::npos) break;
        begin = end + 2;
    }
    return lines;
}

}  // namespace anomalis::output
