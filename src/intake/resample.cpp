#include "intake/resample.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "core/gaps.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/spline.h"

namespace anomalis::intake {

double points_along(double length, double spacing) {
    if (spacing == 0) throw Fault(FaultKind::division_by_zero);
    const double points = length / spacing + 1;
    return std::isfinite(points) ? points - std::remainder(points, 1.0) : points;
}

namespace {

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

using Stretches = std::span<const Stretch>;

template <class Real>
Real fitting(double value) {
    const auto fit = static_cast<Real>(value);
    if (!std::isfinite(fit)) throw Fault(FaultKind::overflow);
    return fit;
}

/// One spline over the whole line.
template <class Real>
void resample_whole(std::span<const double> old_at, std::span<const Real> old, std::span<const double> at,
                    std::span<Real> target) {
    const std::vector<double> values(old.begin(), old.end());
    const CubicSpline spline(old_at, values);
    for (std::size_t i = 0; i < at.size(); ++i) target[i] = fitting<Real>(spline(at[i]));
}

/// The readings of a stretch, and where they stand.
struct StretchReadings {
    std::vector<double> at, values;

    template <class Real>
    StretchReadings(const Stretch& stretch, std::span<const double> old_at, std::span<const Real> old) {
        for (auto i = static_cast<std::size_t>(stretch.first - 1); i < static_cast<std::size_t>(stretch.last);
             ++i) {
            if (!is_reading(static_cast<double>(old[i]))) continue;
            at.push_back(old_at[i]);
            values.push_back(static_cast<double>(old[i]));
        }
    }
};

/// New stations a rounding beyond the end of a stretch stand at it; the last one of the line may lie half a
/// spacing beyond its end.
struct Reach {
    double from, to;
};
Reach reach_of(const Stretch& stretch, std::span<const double> old_at, std::span<const double> at) {
    const double spacing = at.size() > 1 ? at[1] - at[0] : 0;
    constexpr double rounding = 1e-3;  // spacings
    const bool to_the_end = stretch.last == static_cast<int>(old_at.size());
    return {old_at[static_cast<std::size_t>(stretch.first - 1)] - rounding * spacing,
            to_the_end ? std::numeric_limits<double>::infinity()
                       : old_at[static_cast<std::size_t>(stretch.last - 1)] + rounding * spacing};
}

/// A stretch between two new stations goes to the nearer one, when it is near.
template <class Real>
void keep_short_stretch(const StretchReadings& readings, std::span<const double> at, std::span<Real> target) {
    const double middle = (readings.at.front() + readings.at.back()) / 2;
    const auto nearest =
        std::ranges::min_element(at, {}, [middle](double place) { return std::abs(place - middle); });
    Real& value = target[static_cast<std::size_t>(nearest - at.begin())];
    const double spacing = at.size() > 1 ? at[1] - at[0] : 0;
    if (is_reading(static_cast<double>(value)) || std::abs(*nearest - middle) > spacing / 2) return;
    double sum = 0;
    for (const double reading : readings.values) sum += reading;
    value = fitting<Real>(sum / static_cast<double>(readings.values.size()));
}

/// A spline in each stretch; missing between them.
template <class Real>
void resample_stretches(Stretches stretches, std::span<const double> old_at, std::span<const Real> old,
                        std::span<const double> at, std::span<Real> target) {
    std::ranges::fill(target, static_cast<Real>(empty_high));
    for (const Stretch& stretch : stretches) {
        const StretchReadings readings(stretch, old_at, old);
        const Reach reach = reach_of(stretch, old_at, at);
        const auto first = std::ranges::lower_bound(at, reach.from);
        const auto behind = std::ranges::upper_bound(first, at.end(), reach.to);
        if (readings.at.size() < 2 || first == behind) {
            keep_short_stretch(readings, at, target);
            continue;
        }
        const CubicSpline spline(readings.at, readings.values);
        for (auto place = first; place != behind; ++place)
            target[static_cast<std::size_t>(place - at.begin())] = fitting<Real>(spline(*place));
    }
}

/// Places and heights are wanted everywhere: a gap is bridged by a straight line.
void bridge_gaps(Stretches stretches, std::span<const double> old_at, std::span<const double> old,
                 std::span<const double> at, std::span<double> target) {
    for (std::size_t k = 1; k < stretches.size(); ++k) {
        const auto before = static_cast<std::size_t>(stretches[k - 1].last - 1);
        const auto behind = static_cast<std::size_t>(stretches[k].first - 1);
        for (auto i = static_cast<std::size_t>(std::ranges::upper_bound(at, old_at[before]) - at.begin());
             i < at.size() && at[i] < old_at[behind]; ++i) {
            if (is_reading(target[i])) continue;
            const double t = (at[i] - old_at[before]) / (old_at[behind] - old_at[before]);
            target[i] = old[before] + t * (old[behind] - old[before]);
        }
    }
    for (std::size_t i = 1; i < target.size(); ++i)
        if (!is_reading(target[i])) target[i] = target[i - 1];
}

bool is_whole(Stretches stretches, std::size_t stations) {
    return stretches.size() == 1 && stretches.front() == Stretch{1, static_cast<int>(stations)};
}

void resample_places(Stretches stretches, std::span<const double> old_at, std::span<const double> old,
                     std::span<const double> at, std::span<double> target) {
    if (is_whole(stretches, old_at.size())) return resample_whole<double>(old_at, old, at, target);
    resample_stretches<double>(stretches, old_at, old, at, target);
    bridge_gaps(stretches, old_at, old, at, target);
}

void resample_readings(const GapRule& rule, std::span<const double> old_at, std::span<const float> old,
                       std::span<const double> at, std::span<float> target) {
    const std::vector<Stretch> stretches = find_stretches(old_at, old, rule);
    const bool all_there =
        std::ranges::all_of(old, [](float value) { return is_reading(static_cast<double>(value)); });
    if (all_there && is_whole(stretches, old.size())) return resample_whole<float>(old_at, old, at, target);
    resample_stretches<float>(stretches, old_at, old, at, target);
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
    const GapRule rule = gap_rule_as_read(w);
    const std::vector<Stretch> stretches = find_stretches(old_at, {}, rule);
    for (const auto& [column, present] :
         {std::pair(column_east, true), std::pair(column_north, true),
          std::pair(column_sensor, d.z_column > 0), std::pair(column_ground, d.dtm_column > 0)}) {
        if (present)
            resample_places(stretches, old_at, std::as_const(w.stations).column(column), at,
                            stations.column(column));
    }
    ChannelTable mag;
    ChannelTable grav;
    mag.assign(count);
    grav.assign(count);
    const auto observed = [&](const ChannelTable& from, ChannelTable& to) {
        resample_readings(rule, old_at, from.row(row_raw, stage_observed), at,
                          to.row(row_raw, stage_observed));
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
