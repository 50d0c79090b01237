#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "core/faults.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/profile.h"
#include "intake/station_pieces.h"

namespace anomalis::intake {

namespace {

constexpr double nanoseconds_per_station = 3;

void fill_elevations(Workspace& w) {
    const bool sensor_read = w.definition.z_column > 0;
    const bool ground_read = w.definition.dtm_column > 0;
    const double offset = w.sensor_offset;
    const double surface = w.surface_elevation;
    const std::span<double> sensors = w.stations.column(column_sensor);
    const std::span<double> grounds = w.stations.column(column_ground);
    const auto fill = [&](std::size_t first, std::size_t count) {
        for (std::size_t i = first; i < first + count; ++i) {
            if (!ground_read) grounds[i] = sensor_read ? sensors[i] - offset : surface;
            if (!sensor_read) sensors[i] = grounds[i] + offset;
        }
    };
    if (sensor_read && ground_read) return;
    for_station_pieces(static_cast<std::size_t>(std::max(w.station_count, 0)), nanoseconds_per_station, fill);
}

struct Range {
    double low, high;

    /// Of equal numbers the first is the low one and the last the high one, as zeros have two signs.
    void add(const Range& following) {
        low = following.low < low ? following.low : low;
        high = following.high < high ? high : following.high;
    }
};

/// Of the ground, which has a station.
void find_range(Workspace& w) {
    const auto ground = std::as_const(w.stations).column(column_ground);
    std::vector<Range> pieces(station_pieces(ground.size()));
    for_station_pieces(ground.size(), nanoseconds_per_station, [&](std::size_t first, std::size_t count) {
        Range range{ground[first], ground[first]};
        for (const double height : ground.subspan(first, count)) range.add({height, height});
        pieces[first / stations_of_a_piece] = range;
    });
    Range all = pieces.front();
    for (const Range& piece : pieces) all.add(piece);
    w.z_min = to_single(all.low);
    w.z_max = to_single(all.high);
}

}  // namespace

void setup_sensor_elevations(Workspace& workspace, Faults& faults) {
    report_failure(faults, "An error occurred seting up the sensor elevations: ", [&] {
        if (workspace.elevations_ready) return;
        fill_elevations(workspace);
        if (workspace.stations.rows() > 0) find_range(workspace);
        workspace.elevations_ready = true;
        invalidate_filtered_data(0, workspace);
    });
}

}  // namespace anomalis::intake
