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

std::vector<MapPoint> thinned_track(std::span<const MapPoint> track, std::size_t most) {
    const std::size_t every = most < 2 ? track.size() : (track.size() + most - 3) / (most - 1);
    std::vector<MapPoint> points;
    for (std::size_t i = 0; i < track.size(); i += std::max<std::size_t>(every, 1))
        points.push_back(track[i]);
    if (track.size() > 1 && (track.size() - 1) % std::max<std::size_t>(every, 1) != 0)
        points.push_back(track.back());
    return points;
}

}  // namespace anomalis::intake
