#include <array>
#include <cmath>

#include "core/failure.h"
#include "core/gaps.h"
#include "core/text.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "output/failure_note.h"
#include "output/table_field.h"
#include "output/tables.h"

namespace anomalis::output {

namespace {

constexpr std::string_view mag_vertical =
    ", TMI_Obs, TMI_Obs_Smth, TMI_Obs_Res, TMI_Obs_VG, TMI_Mod, TMI_Mod_Smth, TMI_Mod_Res, TMI_Mod_VG";
constexpr std::string_view mag_total =
    ", TMI_Obs, TMI_Obs_Smth, TMI_Obs_Res, TMI_Obs_TG, TMI_Mod, TMI_Mod_Smth, TMI_Mod_Res, TMI_Mod_TG";
constexpr std::string_view grav_vertical =
    ", Grav_Obs, Grav_Obs_Smth, Grav_Obs_Res, Grav_Obs_VG, Grav_Mod, Grav_Mod_Smth, Grav_Mod_Res, "
    "Grav_Mod_VG";
// "SMth" is part of the format: readers look the column up by its name.
constexpr std::string_view grav_total =
    ", Grav_Obs, Grav_Obs_Smth, Grav_Obs_Res, Grav_Obs_TG, Grav_Mod, Grav_Mod_SMth, Grav_Mod_Res, "
    "Grav_Mod_TG";

std::string header(const Workspace& workspace) {
    const bool total = workspace.processing.display_total_gradient == 1;
    std::string line = "East, North, Sensor, Dist";
    if (workspace.definition.dtm_column > 0) line += ", DTM";
    if (workspace.has_mag()) line += total ? mag_total : mag_vertical;
    if (workspace.has_grav()) line += total ? grav_total : grav_vertical;
    return line;
}

/// A missing value is the usual mark of one, not its 33 digits.
std::string reading_field(float value) {
    return is_reading(static_cast<double>(value)) || std::isnan(value) ? fixed_field(value, "0.00") : "-1e32";
}

void append_channel(const Workspace& workspace, const ChannelTable& data, int station, std::string& line) {
    const int gradient = workspace.processing.display_total_gradient == 1 ? workspace.total_gradient_row
                                                                          : workspace.gradient_row;
    for (const int stage : {stage_observed, stage_calculated}) {
        for (const int row : {workspace.raw_row, workspace.smoothed_row, workspace.residual_row, gradient})
            line += ", " + reading_field(data(station, row, stage));
    }
}

}  // namespace

std::string profile_table_text(const Workspace& workspace, const std::vector<std::string>& failures) {
    std::string text = "#Profile model data for " + single_line(workspace.definition.data_file) +
                       failure_note(failures) + "\r\n";
    text += header(workspace) + "\r\n";
    const StationTable& stations = workspace.stations;
    for (int i = 1; i <= workspace.station_count; ++i) {
        text += fixed_field(stations(i, column_east), "0.000");
        text += ", " + fixed_field(stations(i, column_north), "0.000");
        text += ", " + fixed_field(stations(i, column_sensor), "0.00");
        text += ", " + fixed_field(workspace.distances[i], "0.000");
        if (workspace.definition.dtm_column > 0)
            text += ", " + fixed_field(stations(i, column_ground), "0.000");
        if (workspace.has_mag()) append_channel(workspace, workspace.mag.data, i, text);
        if (workspace.has_grav()) append_channel(workspace, workspace.grav.data, i, text);
        text += "\r\n";
    }
    return text;
}

int write_profile_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                        const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix, [&] {
        write_file_telling(prompts, path, profile_table_text(workspace, failures));
    });
}

}  // namespace anomalis::output
