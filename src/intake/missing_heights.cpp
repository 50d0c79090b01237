#include "intake/missing_heights.h"

#include <cstddef>
#include <utility>

namespace anomalis::intake {

namespace {

void fill_between(Workspace& w, StationColumn column, int before, int behind) {
    for (int i = before + 1; i < behind; ++i) {
        double& height = w.stations(i, column);
        if (before < 1) {
            height = w.stations(behind, column);
        } else if (behind > w.station_count) {
            height = w.stations(before, column);
        } else {
            const double t =
                (w.distances[i] - w.distances[before]) / (w.distances[behind] - w.distances[before]);
            height =
                w.stations(before, column) + t * (w.stations(behind, column) - w.stations(before, column));
        }
    }
}

void fill_column(Workspace& w, StationColumn column) {
    const auto heights = std::as_const(w.stations).column(column);
    int before = 0;  // the last station with a height
    for (int i = 1; i <= w.station_count; ++i) {
        if (!(heights[static_cast<std::size_t>(i - 1)] > missing_limit)) continue;
        if (before + 1 < i) fill_between(w, column, before, i);
        before = i;
    }
    if (before > 0) fill_between(w, column, before, w.station_count + 1);
}

}  // namespace

void fill_missing_heights(Workspace& workspace, StationColumn column) {
    const bool read =
        column == column_sensor ? workspace.definition.z_column > 0 : workspace.definition.dtm_column > 0;
    if (read) fill_column(workspace, column);
}

}  // namespace anomalis::intake
