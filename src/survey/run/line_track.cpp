#include "survey/run/line_track.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/workspace.h"

namespace anomalis::survey {

namespace {

double distance_to_piece(const TrackPoint& point, const TrackPoint& from, const TrackPoint& to) {
    const double east = to.east - from.east, north = to.north - from.north;
    const double square = east * east + north * north;
    double part = 0;
    if (square > 0)
        part = std::clamp(((point.east - from.east) * east + (point.north - from.north) * north) / square,
                          0.0, 1.0);
    return std::hypot(point.east - from.east - part * east, point.north - from.north - part * north);
}

/// The place between two points that is farthest from the straight piece, when it is beyond `tolerance`; else
/// `first`.
std::size_t farthest(const std::vector<TrackPoint>& track, std::size_t first, std::size_t last,
                     double tolerance) {
    std::size_t found = first;
    double most = tolerance;
    for (std::size_t i = first + 1; i < last; ++i)
        if (const double apart = distance_to_piece(track[i], track[first], track[last]); apart > most) {
            most = apart;
            found = i;
        }
    return found;
}

}  // namespace

std::vector<TrackPoint> line_track(const Workspace& workspace) {
    std::vector<TrackPoint> track;
    for (int i = 1; i <= workspace.station_count; ++i)
        track.push_back({workspace.stations(i, column_east), workspace.stations(i, column_north)});
    if (track.size() < 3) return track;
    const double length =
        std::hypot(track.back().east - track.front().east, track.back().north - track.front().north);
    const double tolerance = std::max(1.0, length / 1000);
    std::vector<char> kept(track.size(), 0);
    kept.front() = kept.back() = 1;
    std::vector<std::pair<std::size_t, std::size_t>> pieces{{0, track.size() - 1}};
    while (!pieces.empty()) {
        const auto [first, last] = pieces.back();
        pieces.pop_back();
        const std::size_t bend = farthest(track, first, last, tolerance);
        if (bend == first) continue;
        kept[bend] = 1;
        pieces.emplace_back(first, bend);
        pieces.emplace_back(bend, last);
    }
    std::size_t next = 0;
    std::erase_if(track, [&](const TrackPoint&) { return kept[next++] == 0; });
    return track;
}

}  // namespace anomalis::survey
