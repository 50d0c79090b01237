#include <algorithm>
#include <cmath>
#include <span>

#include "core/append_number.h"
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

constexpr std::string_view comma = ", ";
constexpr std::string_view missing = "-1e32";

/// A missing value is the usual mark of one, not its 33 digits.
char* write_reading(char* at, float value) {
    if (is_reading(static_cast<double>(value)) || std::isnan(value)) return write_field(at, value, 2);
    return std::copy(missing.begin(), missing.end(), at);
}

/// The rows of a channel in the order of their columns.
std::vector<std::span<const float>> channel_columns(const Workspace& workspace, const ChannelTable& data) {
    const int gradient = workspace.processing.display_total_gradient == 1 ? workspace.total_gradient_row
                                                                          : workspace.gradient_row;
    std::vector<std::span<const float>> columns;
    for (const int stage : {stage_observed, stage_calculated}) {
        for (const int row : {workspace.raw_row, workspace.smoothed_row, workspace.residual_row, gradient})
            columns.push_back(data.row(row, stage));
    }
    return columns;
}

struct Place {
    std::span<const double> values;
    int decimals;
};

/// Where the stations stand, in the order of the columns.
std::vector<Place> place_columns(const Workspace& workspace) {
    const StationTable& stations = workspace.stations;
    std::vector<Place> columns{{stations.column(column_east), 3},
                               {stations.column(column_north), 3},
                               {stations.column(column_sensor), 2},
                               {workspace.distances.span(), 3}};
    if (workspace.definition.dtm_column > 0) columns.push_back({stations.column(column_ground), 3});
    return columns;
}

std::vector<std::span<const float>> reading_columns(const Workspace& workspace) {
    std::vector<std::span<const float>> columns;
    const auto add = [&](const ChannelTable& data) {
        for (const auto& column : channel_columns(workspace, data)) columns.push_back(column);
    };
    if (workspace.has_mag()) add(workspace.mag.data);
    if (workspace.has_grav()) add(workspace.grav.data);
    return columns;
}

void put_stations(const Workspace& workspace, const TextSink& put) {
    constexpr double bytes_a_field = 9;
    const std::vector<Place> places = place_columns(workspace);
    const std::vector<std::span<const float>> readings = reading_columns(workspace);
    const auto form = [&](int first, int last, std::string& text) {
        std::vector<char> row((places.size() + readings.size()) * (longest_fixed + comma.size()));
        for (auto i = static_cast<std::size_t>(first - 1); i < static_cast<std::size_t>(last); ++i) {
            char* at = row.data();
            const auto separate = [&at] { at = std::copy(comma.begin(), comma.end(), at); };
            for (const Place& place : places) {
                if (at != row.data()) separate();
                at = write_field(at, place.values[i], place.decimals);
            }
            for (const auto& column : readings) separate(), at = write_reading(at, column[i]);
            text.append(row.data(), at);
            text += "\r\n";
        }
    };
    const double fields = static_cast<double>(places.size() + readings.size());
    put_rows(workspace.station_count, bytes_a_field * fields, form, put);
}

}  // namespace

void put_profile_table(const Workspace& workspace, const TextSink& put,
                       const std::vector<std::string>& failures) {
    put("#Profile model data for " + single_line(workspace.definition.data_file) + failure_note(failures) +
        "\r\n" + header(workspace) + "\r\n");
    put_stations(workspace, put);
}

std::string profile_table_text(const Workspace& workspace, const std::vector<std::string>& failures) {
    return whole_text([&](const TextSink& put) { put_profile_table(workspace, put, failures); });
}

int write_profile_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                        const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix, [&] {
        write_pieces_telling(prompts, path,
                             [&](const TextSink& put) { put_profile_table(workspace, put, failures); });
    });
}

}  // namespace anomalis::output
