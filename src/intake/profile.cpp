#include "intake/profile.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <utility>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/pacer.h"
#include "core/prompts.h"
#include "core/shared_pieces.h"
#include "core/workspace.h"
#include "intake/merge.h"
#include "intake/missing_heights.h"
#include "intake/profile_line.h"
#include "intake/resample.h"

namespace anomalis::intake {

namespace {

void reverse_stations(Workspace& w) {
    for (int c = column_east; c <= column_ground; ++c) {
        const auto column = w.stations.column(c);
        std::reverse(column.begin(), column.end());
    }
    for (ChannelTable* data : {&w.mag.data, &w.grav.data}) {
        const auto row = data->row(row_raw, stage_observed);
        std::reverse(row.begin(), row.end());
    }
}

/// The line towards the east or the north. False when it has no length.
bool orient_profile(Workspace& w) {
    ProfileLine line = profile_line(w.stations, w.station_count);
    if (!line.long_enough()) return false;
    if (line.runs_backwards()) {
        reverse_stations(w);
        line.dx = -line.dx;
        line.dy = -line.dy;
    }
    set_line_geometry(line, w.stations, w);
    return true;
}

/// Stations at rising distances. False when the line has no length once it is rounded to singles.
bool merge_stations(Workspace& w) {
    w.distances.assign(w.station_count);
    const int kept = merge_close_stations(w);
    return kept == w.station_count || cut_to_kept_stations(kept, w);
}

void find_mean(Channel& channel) {
    double sum = 0, count = 0;
    for (const float value : std::as_const(channel.data).row(row_raw, stage_observed)) {
        if (!(static_cast<double>(value) > missing_limit)) continue;
        sum += static_cast<double>(value);
        ++count;
    }
    channel.mean = channel.mean_at_load = to_single(count > 0 ? sum / count : 0);
}

/// Heights and channels know nothing of each other.
void fill_heights_and_find_means(Workspace& w) {
    constexpr double nanoseconds = 5;  // a station
    const std::function<void()> parts[] = {[&w] { fill_missing_heights(w, column_sensor); },
                                           [&w] { fill_missing_heights(w, column_ground); },
                                           [&w] {
                                               if (w.has_mag()) find_mean(w.mag);
                                           },
                                           [&w] {
                                               if (w.has_grav()) find_mean(w.grav);
                                           }};
    for_each_piece(std::size(parts), worker_count(nanoseconds * w.station_count, std::size(parts)), no_pace(),
                   [&](PieceWorker&, std::size_t part) { parts[part](); });
}

void finish_profile(Workspace& w) {
    fill_heights_and_find_means(w);
    settle_base_levels(w);
    if (w.station_spacing > 0) resample_profile(w);
}

/// After a failure too every array of stations has `station_count` rows.
void size_station_arrays(bool laid_out, Workspace& w) {
    if (!laid_out || w.distances.count() != w.station_count) w.distances.assign(w.station_count);
    w.mag.work.assign(w.station_count);
    w.grav.work.assign(w.station_count);
    w.station_spare.assign(w.station_count);
}

}  // namespace

void settle_base_levels(Workspace& workspace) {
    if (workspace.has_mag() && workspace.mag.base == unset) workspace.mag.base = workspace.mag.mean_at_load;
    if (workspace.has_grav() && workspace.grav.base == unset)
        workspace.grav.base = workspace.grav.mean_at_load;
}

int setup_profile_coordinates(Workspace& workspace, Prompts& prompts) {
    int status = 0;
    const int failure =
        report_failure(prompts, "An error occurred while setting up the profile coordinates : ", [&] {
            const bool oriented = orient_profile(workspace);
            const bool laid_out = oriented && merge_stations(workspace);
            // A line that collapses only when it is merged leaves the status as it was.
            if (!oriented) status = -1;
            if (!laid_out) prompts.message("The data profile is not long enough to model");
            if (laid_out) finish_profile(workspace);
            size_station_arrays(laid_out, workspace);
        });
    if (failure != 0) report_failure(prompts, "", [&] { size_station_arrays(true, workspace); });
    return failure != 0 ? failure : status;
}

}  // namespace anomalis::intake
