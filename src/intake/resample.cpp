#include "intake/resample.h"

#include <cmath>
#include <span>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/spline.h"

namespace anomalis::intake {

namespace {

/// Points from 0 to `length`, a tie to the even number; not limited to what an integer can hold.
double points_along(double length, double spacing) {
    if (spacing == 0) throw Fault(FaultKind::division_by_zero);
    const double points = length / spacing + 1;
    return std::isfinite(points) ? points - std::remainder(points, 1.0) : points;
}

/// The count of the new stations; widens the spacing when there were too many.
int limit_points(Workspace& w) {
    const double length = w.distances.last();
    double points = points_along(length, w.station_spacing);
    if (points > most_intervals) {
        w.station_spacing = to_single(length / most_intervals);
        points = points_along(length, w.station_spacing);
    }
    return round_to_even(points);
}

template <class Real>
void resample(std::span<const double> old_at, std::span<const Real> old, std::span<const double> at,
              std::span<Real> target) {
    const std::vector<double> values(old.begin(), old.end());
    const CubicSpline spline(old_at, values);
    for (std::size_t i = 0; i < at.size(); ++i) {
        const double value = spline(at[i]);
        target[i] = static_cast<Real>(value);
        if (!std::isfinite(target[i])) throw Fault(FaultKind::overflow);
    }
}

}  // namespace

void resample_profile(Workspace& w) {
    const int count = limit_points(w);
    Array1<double> distances(count);
    for (int i = 1; i <= count; ++i) distances[i] = static_cast<double>(w.station_spacing) * (i - 1);

    const DataDefinition& d = w.definition;
    StationTable stations;
    stations.assign(count);
    const std::span<const double> old_at = std::as_const(w.distances).span();
    const std::span<const double> at = std::as_const(distances).span();
    for (const auto& [column, present] :
         {std::pair(column_east, true), std::pair(column_north, true),
          std::pair(column_sensor, d.z_column > 0), std::pair(column_ground, d.dtm_column > 0)}) {
        if (present)
            resample<double>(old_at, std::as_const(w.stations).column(column), at, stations.column(column));
    }
    ChannelTable mag;
    ChannelTable grav;
    mag.assign(count);
    grav.assign(count);
    const auto observed = [&](const ChannelTable& from, ChannelTable& to) {
        resample<float>(old_at, from.row(row_raw, stage_observed), at, to.row(row_raw, stage_observed));
    };
    if (w.has_mag()) observed(w.mag.data, mag);
    if (w.has_grav()) observed(w.grav.data, grav);

    w.stations = std::move(stations);
    w.mag.data = std::move(mag);
    w.grav.data = std::move(grav);
    w.distances = std::move(distances);
    w.station_count = w.allocated_stations = count;
}

}  // namespace anomalis::intake
