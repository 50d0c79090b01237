#include "intake/merge.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

#include "core/gaps.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/profile_line.h"
#include "intake/station_pieces.h"

namespace anomalis::intake {

namespace {

constexpr double nanoseconds_of_an_advance = 3, nanoseconds_of_a_mean = 5;  // and station

/// Of the values that are there; none: missing.
class MeanValue {
  public:
    void add(double value) {
        if (!is_reading(value)) return;
        sum_ += value;
        ++count_;
    }
    double value() const { return count_ > 0 ? sum_ / count_ : -1e32; }

  private:
    double sum_ = 0;
    int count_ = 0;
};

/// Sums over neighbouring stations.
class StationGroup {
  public:
    void add(const Workspace& w, int station) {
        ++count_;
        east_ += w.stations(station, column_east);
        north_ += w.stations(station, column_north);
        sensor_.add(w.stations(station, column_sensor));
        ground_.add(w.stations(station, column_ground));
        mag_.add(w.mag.data(station, row_raw, stage_observed));
        grav_.add(w.grav.data(station, row_raw, stage_observed));
    }
    double distance(const Workspace& w) const { return distance_along(w, east_ / count_, north_ / count_); }
    void store(Workspace& w, int row) const {
        w.stations(row, column_east) = east_ / count_;
        w.stations(row, column_north) = north_ / count_;
        w.stations(row, column_sensor) = sensor_.value();
        w.stations(row, column_ground) = ground_.value();
        w.mag.data(row, row_raw, stage_observed) = to_single(mag_.value());
        w.grav.data(row, row_raw, stage_observed) = to_single(grav_.value());
    }

  private:
    int count_ = 0;
    double east_ = 0, north_ = 0;
    MeanValue sensor_, ground_, mag_, grav_;
};

/// Stations that are merged to a coarser spacing are not merged over a gap.
bool begins_behind_gap(const Workspace& w, int station) {
    const double widest = w.min_station_spacing > 0 ? gap_rule_as_read(w).distance : 0;
    if (!(widest > 0)) return false;
    const auto at = [&w](int i) {
        return distance_along(w, w.stations(i, column_east), w.stations(i, column_north));
    };
    return at(station) - at(station - 1) > widest;
}

StationTable rounded_rows(const StationTable& stations, int kept) {
    StationTable rounded;
    rounded.assign(kept);
    for (int c = column_line; c <= column_ground; ++c) {
        const auto from = stations.column(c).first(static_cast<std::size_t>(kept));
        std::transform(from.begin(), from.end(), rounded.column(c).begin(),
                       [](double v) { return to_single(v); });
    }
    return rounded;
}

ChannelTable cut_rows(const ChannelTable& data, int kept) {
    ChannelTable cut;
    cut.assign(kept);
    const auto from = data.row(row_raw, stage_observed).first(static_cast<std::size_t>(kept));
    std::copy(from.begin(), from.end(), cut.row(row_raw, stage_observed).begin());
    return cut;
}

/// As the mean of one value has it: a missing one by its one mark, and no zero below zero.
template <class Real>
void make_means(std::span<Real> values) {
    for (Real& value : values)
        value = static_cast<double>(value) > missing_limit ? value + Real(0) : static_cast<Real>(-1e32);
}

/// How stations are asked whether they are groups of their own: their places and where these lie on the line.
class Advance {
  public:
    Advance(Workspace& w, double spacing)
        : w_(w),
          spacing_(spacing),
          east_(std::as_const(w.stations).column(column_east)),
          north_(std::as_const(w.stations).column(column_north)),
          distances_(w.distances.span()) {}

    /// Sets the distances of all stations but the first; false when one does not advance, or overflows.
    bool of_all() {
        for_station_pieces(distances_.size(), nanoseconds_of_an_advance,
                           [this](std::size_t first, std::size_t count) {
                               if (all_ && !of_piece(std::max<std::size_t>(first, 1), first + count))
                                   all_ = false;
                           });
        return all_;
    }

  private:
    double distance(std::size_t i) const {
        return (east_[i] - w_.origin_east) * w_.direction_y - (north_[i] - w_.origin_north) * w_.direction_x;
    }
    bool of_piece(std::size_t first, std::size_t behind) const {
        double last = first > 1 ? distance(first - 1) : 0;
        for (std::size_t i = first; i < behind; ++i) {
            const double at = distance(i);
            const bool advances = at > last && at - last > spacing_;
            if (!(advances || i + 1 == distances_.size()) || !std::isfinite(at)) return false;
            distances_[i] = last = at;
        }
        return true;
    }

    const Workspace& w_;
    double spacing_;
    std::span<const double> east_, north_;
    std::span<double> distances_;
    std::atomic<bool> all_{true};
};

/// All but the first, which is in no group.
void keep_all(Workspace& w) {
    const std::span<double> east = w.stations.column(column_east), north = w.stations.column(column_north),
                            sensor = w.stations.column(column_sensor),
                            ground = w.stations.column(column_ground);
    const std::span<float> mag = w.mag.data.row(row_raw, stage_observed),
                           grav = w.grav.data.row(row_raw, stage_observed);
    for_station_pieces(east.size(), nanoseconds_of_a_mean, [&](std::size_t first, std::size_t count) {
        const std::size_t skipped = first == 0 ? 1 : 0;
        const auto piece = [&](auto column) { return column.subspan(first + skipped, count - skipped); };
        for (double& place : piece(east)) place += 0.0;
        for (double& place : piece(north)) place += 0.0;
        make_means(piece(sensor));
        make_means(piece(ground));
        make_means(piece(mag));
        make_means(piece(grav));
    });
}

}  // namespace

int merge_close_stations(Workspace& w) {
    const int count = w.station_count;
    const double spacing = std::max(w.min_station_spacing, 0.0F);
    if (Advance(w, spacing).of_all()) {
        keep_all(w);
        return count;
    }
    double last_distance = 0;
    int kept = 1;
    StationGroup group;
    for (int i = 2; i <= count; ++i) {
        if (i == count || begins_behind_gap(w, i)) group = {};
        group.add(w, i);
        const double distance = group.distance(w);
        const bool advances = distance > last_distance && distance - last_distance > spacing;
        if (!advances && i != count) continue;
        last_distance = distance;
        ++kept;
        w.distances[kept] = distance;
        w.stations(kept, column_line) = w.stations(i, column_line);
        group.store(w, kept);
        group = {};
    }
    return kept;
}

bool cut_to_kept_stations(int kept, Workspace& w) {
    StationTable stations = rounded_rows(w.stations, kept);
    const ProfileLine line = profile_line(stations, kept);
    if (!line.long_enough()) return false;
    w.mag.data = cut_rows(w.mag.data, kept);
    w.grav.data = cut_rows(w.grav.data, kept);
    w.stations = std::move(stations);
    w.station_count = w.allocated_stations = kept;
    set_line_geometry(line, w.stations, w);
    w.distances.resize(kept);
    for (int i = 2; i <= kept; ++i)
        w.distances[i] = distance_along(w, w.stations(i, column_east), w.stations(i, column_north));
    return true;
}

}  // namespace anomalis::intake
