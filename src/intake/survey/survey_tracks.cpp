#include "intake/survey/survey_tracks.h"

#include <algorithm>

namespace anomalis::intake {

void SurveyTracks::add(std::size_t line, std::span<const MapPoint> points) {
    if (points.empty()) return;
    Track& track = tracks_[line];
    for (const MapPoint& point : points) {
        if (track.stations++ % every_ != 0) continue;
        track.points.push_back(point);
        if (++points_ > most_points_) thin();
    }
    track.last = points.back();
}

void SurveyTracks::thin() {
    points_ = 0;
    for (Track& track : tracks_) {
        std::size_t kept = 0;
        for (std::size_t i = 0; i < track.points.size(); i += 2) track.points[kept++] = track.points[i];
        track.points.resize(kept);
        points_ += kept;
    }
    every_ *= 2;
    // Tracks of one point each cannot be thinned: so many lines have what room they need.
    most_points_ = std::max(most_points_, 2 * points_);
}

std::vector<MapPoint> SurveyTracks::take(std::size_t line) {
    Track& track = tracks_[line];
    std::vector<MapPoint> points = std::move(track.points);
    track.points = {};
    if (track.stations > 0 && (track.stations - 1) % every_ != 0) points.push_back(track.last);
    return points;
}

long SurveyTracks::station_of(std::size_t line, std::size_t number) const {
    return std::min(static_cast<long>(number) * every_, tracks_[line].stations - 1);
}

std::vector<MapPoint> thinned_track(std::size_t count, const PointAt& point_at, std::size_t most) {
    const std::size_t every = std::max<std::size_t>(most < 2 ? count : (count + most - 3) / (most - 1), 1);
    std::vector<MapPoint> points;
    for (std::size_t i = 0; i < count; i += every) points.push_back(point_at(i));
    if (count > 1 && (count - 1) % every != 0) points.push_back(point_at(count - 1));
    return points;
}

std::vector<MapPoint> thinned_track(std::span<const MapPoint> track, std::size_t most) {
    return thinned_track(
        track.size(), [track](std::size_t i) { return track[i]; }, most);
}

}  // namespace anomalis::intake
