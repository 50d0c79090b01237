#include "intake/row_facts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <span>

#include "core/gaps.h"
#include "core/numbers.h"
#include "core/pacer.h"
#include "core/shared_pieces.h"
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
};

Rows rows_of(const Workspace& w) {
    const auto count = static_cast<std::size_t>(std::max(w.station_count, 0));
    return {w.stations.column(column_east).first(count), w.stations.column(column_north).first(count)};
}

void look_at_steps(const Rows& rows, RowFacts& facts) {
    // The square tells cheaply that a step is no longer than the longest so far.
    constexpr double rounding = 1 - 1e-9, least_squared = 1e-140;
    double longest_square = 0;
    for (std::size_t i = 1; i < rows.count(); ++i) {
        const double east = rows.east[i] - rows.east[i - 1], north = rows.north[i] - rows.north[i - 1];
        if (east == 0 && north == 0) ++facts.duplicates;
        if (east * east + north * north < longest_square) continue;
        const double step = std::hypot(east, north);
        if (!(step > facts.largest_step)) continue;
        facts.largest_step = step;
        longest_square = step > least_squared ? step * step * rounding : 0;
        facts.before_largest_step = rows.place(i - 1);
        facts.after_largest_step = rows.place(i);
    }
}

void look_off_line(const Rows& rows, RowFacts& facts) {
    const double dx = rows.east.back() - rows.east.front(), dy = rows.north.back() - rows.north.front();
    const double length = std::hypot(dx, dy);
    double most = 0;  // off the line, times its length where it has one
    for (std::size_t i = 0; i < rows.count(); ++i) {
        const double east = rows.east[i] - rows.east.front(), north = rows.north[i] - rows.north.front();
        const double off = length > 0 ? std::abs(east * dy - north * dx) : std::hypot(east, north);
        most = off > most ? off : most;
    }
    const double off = length > 0 ? most / length : most;
    if (off > 0) facts.off_line = off;
}

void look_at_track(const Rows& rows, RowFacts& facts) {
    const auto point_at = [&rows](std::size_t i) {
        return MapPoint{static_cast<float>(rows.east[i] - rows.east.front()),
                        static_cast<float>(rows.north[i] - rows.north.front()), 0};
    };
    facts.typical_step = typical_step(rows.count(), point_at);
    const std::vector<MapPoint> track = thinned_track(rows.count(), point_at, track_points);
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
        if (!(static_cast<double>(value) > missing_limit)) continue;
        low = value < low ? value : low;
        high = high < value ? value : high;
    }
    if (low > high) return;
    const double written_low = as_written(static_cast<float>(low));
    const double written_high = as_written(static_cast<float>(high));
    ColumnValues column;
    const std::size_t every = row.size() / looked_at + 1;
    column.values.reserve(row.size() / every + 1);
    std::size_t next = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const Real value = row[i];
        const bool extreme = value == low || value == high;
        const bool looked_at_now = i == next;
        if (looked_at_now) next += every;
        if (!(looked_at_now || extreme) || !(static_cast<double>(value) > missing_limit)) continue;
        column.values.push_back(value == low    ? written_low
                                : value == high ? written_high
                                                : static_cast<double>(value));
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

/// The runs of one value that a row falls into.
struct Runs {
    std::size_t count = 0;
    std::vector<Run> longest;  ///< at most `hangs` of them, the longest first, of equal ones the earlier

    void add(const Run& run) {
        ++count;
        if (longest.size() == hangs && run.rows <= longest.back().rows) return;
        const auto place = std::ranges::upper_bound(longest, run.rows, std::ranges::greater(),
                                                    [](const Run& r) { return r.rows; });
        longest.insert(place, run);
        if (longest.size() > hangs) longest.pop_back();
    }
};

Runs runs_of(std::span<const float> row) {
    Runs runs;
    Run run;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const bool goes_on = i > 0 && row[i] == row[i - 1] && static_cast<double>(row[i]) > missing_limit;
        if (!goes_on) {
            if (i > 0) runs.add(run);
            run = {i, 0};
        }
        ++run.rows;
    }
    if (run.rows > 0) runs.add(run);
    return runs;
}

bool is_stuck(const Runs& runs, std::size_t rows) {
    const long most = runs.longest.front().rows;
    const auto longest = static_cast<double>(most);
    if (most < least_stuck_rows) return false;
    if (runs.count == 1) return true;
    if (longest < stuck_runs * static_cast<double>(rows) / static_cast<double>(runs.count)) return false;
    return runs.count < hangs ||
           longest > stuck_long_runs * static_cast<double>(runs.longest[hangs - 1].rows);
}

void look_for_stuck_values(std::string_view channel, std::span<const float> row, const Rows& rows,
                           RowFacts& facts) {
    const Runs runs = runs_of(row);
    if (runs.count == 0 || !is_stuck(runs, row.size())) return;
    const Run longest = runs.longest.front();
    const std::size_t last = longest.first + static_cast<std::size_t>(longest.rows) - 1;
    facts.stuck.push_back(
        {channel, as_written(row[last]), longest.rows, rows.place(longest.first), rows.place(last)});
}

long missing_of(std::span<const float> row) {
    return std::ranges::count_if(row, [](float v) { return !(static_cast<double>(v) > missing_limit); });
}

/// What to look at, each by itself.
using Looks = std::vector<std::function<void(RowFacts&)>>;

Looks looks_at(const Workspace& w, const Rows& rows) {
    Looks looks{[&](RowFacts& facts) { look_at_steps(rows, facts); },
                [&](RowFacts& facts) { look_off_line(rows, facts); },
                [&](RowFacts& facts) { look_at_track(rows, facts); }};
    const auto channel = [&](std::string_view name, const ChannelTable& data, long RowFacts::*nulls) {
        const auto row = data.row(row_raw, stage_observed).first(rows.count());
        looks.emplace_back([=, &rows](RowFacts& facts) {
            facts.*nulls = missing_of(row);
            look_for_stuck_values(name, row, rows, facts);
        });
        looks.emplace_back([=](RowFacts& facts) { look_for_dummies(name, row, facts); });
    };
    if (w.has_mag()) channel("magnetics", w.mag.data, &RowFacts::mag_nulls);
    if (w.has_grav()) channel("gravity", w.grav.data, &RowFacts::grav_nulls);
    const auto height = [&](std::string_view name, StationColumn column) {
        const auto values = w.stations.column(column).first(rows.count());
        looks.emplace_back([=](RowFacts& facts) { look_for_dummies(name, values, facts); });
    };
    if (w.definition.z_column > 0) height("sensor height", column_sensor);
    if (w.definition.dtm_column > 0) height("ground", column_ground);
    return looks;
}

/// Takes over what a look found; no two looks find the same.
void add_facts(const RowFacts& found, RowFacts& facts) {
    const auto take = [&](auto RowFacts::*field) {
        if (found.*field != RowFacts{}.*field) facts.*field = found.*field;
    };
    take(&RowFacts::typical_step);
    take(&RowFacts::off_line);
    take(&RowFacts::duplicates);
    take(&RowFacts::stretches);
    take(&RowFacts::bends);
    take(&RowFacts::stretches_length);
    take(&RowFacts::mag_nulls);
    take(&RowFacts::grav_nulls);
    if (found.largest_step > 0) {
        facts.largest_step = found.largest_step;
        facts.before_largest_step = found.before_largest_step;
        facts.after_largest_step = found.after_largest_step;
    }
    facts.suspects.insert(facts.suspects.end(), found.suspects.begin(), found.suspects.end());
    facts.stuck.insert(facts.stuck.end(), found.stuck.begin(), found.stuck.end());
}

}  // namespace

RowFacts facts_of_rows(const Workspace& w) {
    constexpr double nanoseconds_per_look = 4;  // and row
    RowFacts facts;
    const Rows rows = rows_of(w);
    facts.rows = static_cast<long>(rows.count());
    if (rows.count() == 0) return facts;
    const Looks looks = looks_at(w, rows);
    std::vector<RowFacts> found(looks.size());
    const double work = nanoseconds_per_look * static_cast<double>(rows.count() * looks.size());
    for_each_piece(looks.size(), worker_count(work, looks.size()), no_pace(),
                   [&](PieceWorker&, std::size_t i) { looks[i](found[i]); });
    for (const RowFacts& one : found) add_facts(one, facts);
    facts.looks_like_degrees = within(rows.east, 360) && within(rows.north, 90) && facts.typical_step > 0 &&
                               facts.typical_step < least_step_of_metres;
    return facts;
}

std::string_view unit_of_channel(std::string_view channel) {
    return channel == "magnetics" ? "nT" : channel == "gravity" ? "mGal" : "m";
}

}  // namespace anomalis::intake
