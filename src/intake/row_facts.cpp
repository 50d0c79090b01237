#include "intake/row_facts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

#include "core/gaps.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "intake/formats/column_values.h"
#include "intake/survey/line_pieces.h"
#include "intake/survey/survey_tracks.h"

namespace anomalis::intake {

namespace {

/// So many points tell where a track turns.
constexpr std::size_t track_points = 20'000;
/// So many values tell what is far from them.
constexpr std::size_t looked_at = 200'000;
/// A survey with stations closer than this is none; in degrees it is 10 km.
constexpr double least_step_of_metres = 0.1;
/// So many rows of one value are no chance where they are so many times the usual run of the channel, and its
/// long ones: readings in whole nT have many over quiet ground, an instrument hangs a few times.
constexpr long least_stuck_rows = 10;
constexpr double stuck_runs = 5, stuck_long_runs = 2.5;
constexpr std::size_t hangs = 5;

/// The rows as they stand in the arrays of stations.
struct Rows {
    std::span<const double> east, north;
    std::size_t count() const { return east.size(); }
    Place place(std::size_t i) const { return {east[i], north[i]}; }
    double step(std::size_t i) const { return std::hypot(east[i] - east[i - 1], north[i] - north[i - 1]); }
};

Rows rows_of(const Workspace& w) {
    const auto count = static_cast<std::size_t>(std::max(w.station_count, 0));
    return {w.stations.column(column_east).first(count), w.stations.column(column_north).first(count)};
}

void look_at_steps(const Rows& rows, RowFacts& facts) {
    for (std::size_t i = 1; i < rows.count(); ++i) {
        const double step = rows.step(i);
        if (step == 0) ++facts.duplicates;
        if (!(step > facts.largest_step)) continue;
        facts.largest_step = step;
        facts.before_largest_step = rows.place(i - 1);
        facts.after_largest_step = rows.place(i);
    }
}

void look_off_line(const Rows& rows, RowFacts& facts) {
    const double dx = rows.east.back() - rows.east.front(), dy = rows.north.back() - rows.north.front();
    const double length = std::hypot(dx, dy);
    for (std::size_t i = 0; i < rows.count(); ++i) {
        const double east = rows.east[i] - rows.east.front(), north = rows.north[i] - rows.north.front();
        const double off = length > 0 ? std::abs(east * dy - north * dx) / length : std::hypot(east, north);
        facts.off_line = std::max(facts.off_line, off);
    }
}

void look_at_track(const Rows& rows, RowFacts& facts) {
    std::vector<MapPoint> whole(rows.count());
    for (std::size_t i = 0; i < rows.count(); ++i)
        whole[i] = {static_cast<float>(rows.east[i] - rows.east.front()),
                    static_cast<float>(rows.north[i] - rows.north.front()), 0};
    facts.typical_step = typical_step(whole);
    const std::vector<MapPoint> track = thinned_track(whole, track_points);
    const auto stretches = unfolded_stretches(track);
    facts.stretches = static_cast<long>(stretches.size());
    facts.stretches_length = length_of_pieces(track, stretches);
    facts.bends = straight_pieces(track).size() > stretches.size();
}

bool within(std::span<const double> values, double limit) {
    return std::ranges::all_of(values, [limit](double v) { return std::abs(v) <= limit; });
}

/// As a file would have it: -99999.99 and not the single nearest to it.
double as_written(float value) {
    double written = 0;
    return parse_number(shortest_text(value), written) ? written : static_cast<double>(value);
}

bool is_one_of(const std::vector<double>& dummies, float value) {
    return std::ranges::any_of(dummies, [value](double d) { return static_cast<float>(d) == value; });
}

/// How often a dummy stands in a row, and between what the other readings lie.
template <class Real>
SuspectValue suspect_of(std::string_view channel, double dummy, const std::vector<double>& dummies,
                        std::span<const Real> row) {
    constexpr double beyond = std::numeric_limits<double>::infinity();
    SuspectValue suspect{channel, dummy, 0, beyond, -beyond};
    for (const Real value : row) {
        const auto single = static_cast<float>(value);
        const auto number = static_cast<double>(value);
        if (single == static_cast<float>(dummy)) {
            ++suspect.rows;
        } else if (is_reading(number) && !is_one_of(dummies, single)) {
            suspect.least = std::min(suspect.least, number);
            suspect.greatest = std::max(suspect.greatest, number);
        }
    }
    return suspect;
}

template <class Real>
void look_for_dummies(std::string_view channel, std::span<const Real> row, RowFacts& facts) {
    Real low = std::numeric_limits<Real>::max(), high = std::numeric_limits<Real>::lowest();
    for (const Real value : row) {
        if (!is_reading(static_cast<double>(value))) continue;
        low = std::min(low, value);
        high = std::max(high, value);
    }
    if (low > high) return;
    ColumnValues column;
    const std::size_t every = row.size() / looked_at + 1;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool extreme = row[i] == low || row[i] == high;
        if (!is_reading(static_cast<double>(row[i])) || (i % every != 0 && !extreme)) continue;
        column.values.push_back(extreme ? as_written(static_cast<float>(row[i]))
                                        : static_cast<double>(row[i]));
    }
    const std::vector<double> found = repeated_extremes(column);
    for (const double dummy : found) {
        const SuspectValue suspect = suspect_of(channel, dummy, found, row);
        if (suspect.rows > 0 && suspect.least <= suspect.greatest) facts.suspects.push_back(suspect);
    }
}

/// Rows of one value.
struct Run {
    std::size_t first = 0;
    long rows = 0;
};

std::vector<Run> runs_of(std::span<const float> row) {
    std::vector<Run> runs;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool goes_on = i > 0 && row[i] == row[i - 1] && is_reading(static_cast<double>(row[i]));
        if (!goes_on) runs.push_back({i});
        ++runs.back().rows;
    }
    return runs;
}

/// `runs` has the longest first.
bool is_stuck(const std::vector<Run>& runs, std::size_t rows) {
    const auto longest = static_cast<double>(runs.front().rows);
    if (runs.front().rows < least_stuck_rows) return false;
    if (runs.size() == 1) return true;
    if (longest < stuck_runs * static_cast<double>(rows) / static_cast<double>(runs.size())) return false;
    return runs.size() < hangs || longest > stuck_long_runs * static_cast<double>(runs[hangs - 1].rows);
}

void look_for_stuck_values(std::string_view channel, std::span<const float> row, const Rows& rows,
                           RowFacts& facts) {
    std::vector<Run> runs = runs_of(row);
    if (runs.empty()) return;
    const auto longer = [](const Run& a, const Run& b) { return a.rows > b.rows; };
    std::ranges::partial_sort(runs, runs.begin() + static_cast<std::ptrdiff_t>(std::min(hangs, runs.size())),
                              longer);
    if (!is_stuck(runs, row.size())) return;
    const Run longest = runs.front();
    const std::size_t last = longest.first + static_cast<std::size_t>(longest.rows) - 1;
    facts.stuck.push_back(
        {channel, as_written(row[last]), longest.rows, rows.place(longest.first), rows.place(last)});
}

long missing_of(std::span<const float> row) {
    return std::ranges::count_if(row, [](float v) { return !is_reading(static_cast<double>(v)); });
}

}  // namespace

RowFacts facts_of_rows(const Workspace& w) {
    RowFacts facts;
    const Rows rows = rows_of(w);
    facts.rows = static_cast<long>(rows.count());
    if (rows.count() == 0) return facts;
    look_at_steps(rows, facts);
    look_off_line(rows, facts);
    look_at_track(rows, facts);
    facts.looks_like_degrees = within(rows.east, 360) && within(rows.north, 90) && facts.typical_step > 0 &&
                               facts.typical_step < least_step_of_metres;
    const auto channel = [&](std::string_view name, const ChannelTable& data, long& nulls) {
        const auto row = data.row(row_raw, stage_observed).first(rows.count());
        nulls = missing_of(row);
        look_for_dummies(name, row, facts);
        look_for_stuck_values(name, row, rows, facts);
    };
    if (w.has_mag()) channel("magnetics", w.mag.data, facts.mag_nulls);
    if (w.has_grav()) channel("gravity", w.grav.data, facts.grav_nulls);
    const auto height = [&](std::string_view name, StationColumn column) {
        look_for_dummies(name, w.stations.column(column).first(rows.count()), facts);
    };
    if (w.definition.z_column > 0) height("sensor height", column_sensor);
    if (w.definition.dtm_column > 0) height("ground", column_ground);
    return facts;
}

std::string_view unit_of_channel(std::string_view channel) {
    return channel == "magnetics" ? "nT" : channel == "gravity" ? "mGal" : "m";
}

}  // namespace anomalis::intake
