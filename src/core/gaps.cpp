#include "core/gaps.h"

#include <algorithm>

#include "core/workspace.h"

namespace anomalis {

namespace {

constexpr double spacings_of_a_gap = 3;

bool all_there(std::span<const float> readings) {
    std::size_t missing = 0;
    for (const float value : readings) missing += value > static_cast<float>(missing_limit) ? 0 : 1;
    return missing == 0;
}

/// Median distance from one station of a list to the next; 0 for fewer than two.
double typical_spacing(std::span<const double> distances, const std::vector<int>& stations) {
    std::vector<double> spacings;
    for (std::size_t k = 1; k < stations.size(); ++k)
        spacings.push_back(distances[static_cast<std::size_t>(stations[k] - 1)] -
                           distances[static_cast<std::size_t>(stations[k - 1] - 1)]);
    if (spacings.empty()) return 0;
    const auto middle = spacings.begin() + static_cast<std::ptrdiff_t>((spacings.size() - 1) / 2);
    std::ranges::nth_element(spacings, middle);
    return *middle;
}

std::vector<Stretch> stretches_between_stations(std::span<const double> distances, double widest) {
    std::vector<Stretch> stretches;
    const auto count = static_cast<int>(distances.size());
    if (count > 0) stretches.push_back({1, count});
    for (int i = 1; widest > 0 && i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (!(distances[at] - distances[at - 1] > widest)) continue;
        stretches.back().last = i;
        stretches.push_back({i + 1, count});
    }
    return stretches;
}

std::vector<Stretch> runs_of(const std::vector<int>& stations) {
    std::vector<Stretch> runs;
    for (const int station : stations) {
        if (runs.empty() || runs.back().last != station - 1) runs.push_back({station, station});
        runs.back().last = station;
    }
    return runs;
}

std::vector<int> stations_with(std::span<const float> readings, int first, int last) {
    std::vector<int> stations;
    last = std::min(last, static_cast<int>(readings.size()));
    for (int station = std::max(first, 1); station <= last; ++station)
        if (is_reading(static_cast<double>(readings[static_cast<std::size_t>(station - 1)])))
            stations.push_back(station);
    return stations;
}

/// By as much as a channel is read more rarely than there are stations, its gap is wider.
double widest_step(std::span<const double> distances, const std::vector<int>& stations, double distance) {
    const double own = typical_spacing(distances, stations);
    if (!(distance > 0)) return spacings_of_a_gap * own;
    std::vector<int> all(distances.size());
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<int>(i) + 1;
    const double every = typical_spacing(distances, all);
    return every > 0 && own > every ? distance * own / every : distance;
}

std::span<const float> readings_of(const Workspace& workspace, int channel) {
    const bool there = channel == 0 ? workspace.has_mag() : workspace.has_grav();
    const ChannelTable& data = workspace.channel(channel).data;
    if (!there || workspace.station_count <= 0 || data.stations() < workspace.station_count) return {};
    return data.row(workspace.raw_row, stage_observed)
        .first(static_cast<std::size_t>(workspace.station_count));
}

}  // namespace

bool is_reading(double value) {
    return value > missing_limit;
}

GapRule gap_rule_as_read(const Workspace& workspace) {
    if (!(workspace.gap_distance > 0)) return {};
    return {std::max(static_cast<double>(workspace.gap_distance),
                     spacings_of_a_gap * static_cast<double>(workspace.min_station_spacing))};
}

GapRule gap_rule(const Workspace& workspace) {
    if (workspace.station_spacing > 0) return {.distance = 0, .every_null = true};
    return gap_rule_as_read(workspace);
}

std::vector<Stretch> find_stretches(std::span<const double> distances, std::span<const float> readings,
                                    const GapRule& rule) {
    if (all_there(readings)) return stretches_between_stations(distances, rule.distance);
    const std::vector<int> stations = stations_with(readings, 1, static_cast<int>(readings.size()));
    if (rule.every_null || distances.size() < readings.size()) return runs_of(stations);
    const double widest = widest_step(distances, stations, rule.distance);
    std::vector<Stretch> stretches;
    for (const int station : stations) {
        const auto at = [&](int number) { return distances[static_cast<std::size_t>(number - 1)]; };
        if (stretches.empty() || at(station) - at(stretches.back().last) > widest)
            stretches.push_back({station, station});
        stretches.back().last = station;
    }
    return stretches;
}

ChannelGaps gaps_of_row(const Workspace& workspace, std::span<const float> readings) {
    const GapRule rule = gap_rule(workspace);
    const bool whole = all_there(readings);
    const auto distances =
        workspace.distances.span().first(std::min(workspace.distances.span().size(), readings.size()));
    ChannelGaps gaps;
    if (whole && (!(rule.distance > 0) || distances.size() < readings.size())) {
        if (!readings.empty()) gaps.stretches.push_back({1, static_cast<int>(readings.size())});
        return gaps;
    }
    gaps.stretches = find_stretches(distances, readings, rule);
    gaps.none = whole && gaps.stretches.size() == 1;
    return gaps;
}

ChannelGaps channel_gaps(const Workspace& workspace, int channel) {
    return gaps_of_row(workspace, readings_of(workspace, channel));
}

std::vector<Stretch> channel_stretches(const Workspace& workspace, int channel) {
    return channel_gaps(workspace, channel).stretches;
}

std::vector<Stretch> station_stretches(const Workspace& workspace) {
    const auto count = static_cast<std::size_t>(std::max(workspace.station_count, 0));
    const auto distances = workspace.distances.span();
    return find_stretches(distances.first(std::min(count, distances.size())), {}, gap_rule(workspace));
}

std::vector<int> reading_stations(const Workspace& workspace, int channel, int first, int last) {
    return stations_with(readings_of(workspace, channel), first, last);
}

int count_missing(const Workspace& workspace, int channel) {
    const auto readings = readings_of(workspace, channel);
    return static_cast<int>(
        std::ranges::count_if(readings, [](float value) { return !is_reading(static_cast<double>(value)); }));
}

}  // namespace anomalis
