#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "intake/survey/survey_index.h"

namespace anomalis::intake {

/// The tracks of all lines of a survey in bounded memory: where their points grow too many, every other one
/// goes, on all lines alike.
class SurveyTracks {
  public:
    explicit SurveyTracks(std::size_t most_points = usual_most) : most_points_(most_points) {}

    /// 25 MB.
    static constexpr std::size_t usual_most = std::size_t{1} << 21;

    void make_room(std::size_t lines) {
        if (tracks_.size() < lines) tracks_.resize(lines);
    }
    /// The next stations of a line, which there is room for.
    void add(std::size_t line, std::span<const MapPoint> points);

    /// The points that are kept of a line, from its first to its last station.
    std::vector<MapPoint> take(std::size_t line);
    long stations(std::size_t line) const { return tracks_[line].stations; }
    /// Which station of a line the point `number` of `take` is, both from 0.
    long station_of(std::size_t line, std::size_t number) const;

  private:
    struct Track {
        std::vector<MapPoint> points;  ///< station 0, every_, 2 every_, ...
        MapPoint last;
        long stations = 0;
    };
    void thin();

    std::size_t most_points_;
    std::vector<Track> tracks_;
    std::size_t points_ = 0;
    long every_ = 1;
};

/// At most about `most` points of a track, first and last among them.
std::vector<MapPoint> thinned_track(std::span<const MapPoint> track, std::size_t most);
/// The same of points that stand elsewhere.
std::vector<MapPoint> thinned_track(std::size_t points, const PointAt& point_at, std::size_t most);

}  // namespace anomalis::intake
