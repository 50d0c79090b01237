#include "survey/map/results_map_tops.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "core/angles.h"

namespace anomalis::survey {

namespace {

bool has_drawable_track(const LineResult& line) {
    return !line.track.empty() && std::ranges::all_of(line.track, [](const TrackPoint& point) {
        return std::isfinite(point.east) && std::isfinite(point.north);
    });
}

/// The first of those that most lines are in.
std::string map_system(const SurveyResults& results) {
    std::map<std::string, std::size_t> counts;
    for (const LineResult& line : results.lines)
        if (has_drawable_track(line)) ++counts[line.coordinate_system];
    std::string system;
    std::size_t most = 0;
    for (const LineResult& line : results.lines)
        if (has_drawable_track(line) && counts[line.coordinate_system] > most) {
            system = line.coordinate_system;
            most = counts[system];
        }
    return system;
}

DepthDoubt doubt_of(const IntervalValue& depth) {
    const double side = (depth.upper - depth.lower) / 2;
    if (!(depth.value > 0) || !std::isfinite(side)) return DepthDoubt::large;
    const double part = side / depth.value;
    return part <= small_doubt    ? DepthDoubt::small
           : part <= middle_doubt ? DepthDoubt::middle
                                  : DepthDoubt::large;
}

/// Of a line, from a place along a direction (m): what of it lies between its ends.
struct Reach {
    double back = 0, ahead = 0;
};
Reach reach_of_track(const std::vector<TrackPoint>& track, chart::Point from, chart::Point direction) {
    Reach reach;
    for (const TrackPoint& point : track) {
        const double along = (point.east - from.x) * direction.x + (point.north - from.y) * direction.y;
        reach.back = std::min(reach.back, along);
        reach.ahead = std::max(reach.ahead, along);
    }
    return reach;
}

/// Cut at the ends of the line: beyond them nobody has looked.
std::optional<std::array<chart::Point, 2>> place_interval(const BodyResult& body, const LineResult& line) {
    const double lower = body.distance.lower - body.distance.value;
    const double upper = body.distance.upper - body.distance.value;
    if (!std::isfinite(lower) || !std::isfinite(upper) || !std::isfinite(body.profile_azimuth)) return {};
    const double azimuth = body.profile_azimuth * radians_per_degree;
    const chart::Point direction{std::sin(azimuth), std::cos(azimuth)};
    const Reach reach = reach_of_track(line.track, {body.east, body.north}, direction);
    const auto at = [&](double along) {
        return chart::Point{body.east + along * direction.x, body.north + along * direction.y};
    };
    return std::array{at(std::max(lower, reach.back)), at(std::min(upper, reach.ahead))};
}

MapTop map_top(const BodyResult& body, const LineResult& line, MapAmount amount) {
    MapTop top;
    top.place = {body.east, body.north};
    const auto [depth, below_sensor] = told_depth(body);
    top.below_sensor = below_sensor;
    top.depth = depth.value;
    top.doubt = doubt_of(depth);
    top.amount =
        std::abs(amount == MapAmount::density ? body.density_contrast.value : body.susceptibility.value);
    top.interval = place_interval(body, line);
    return top;
}

void count_top(MapTops& map, const MapTop& top) {
    if (!std::isfinite(top.depth))
        ++map.without_depth;
    else
        ++(top.below_sensor ? map.below_sensor : map.below_ground);
    if (!std::isfinite(top.amount)) ++map.without_amount;
}

MapAmount amount_of(const SurveyResults& results) {
    MapAmount amount = MapAmount::none;
    for (const LineResult& line : results.lines)
        for (const BodyResult& body : line.bodies) {
            if (std::isfinite(body.susceptibility.value)) return MapAmount::susceptibility;
            if (std::isfinite(body.density_contrast.value)) amount = MapAmount::density;
        }
    return amount;
}

class MapExtent {
  public:
    void take(chart::Point at) {
        if (first_) box_ = {at.x, at.x, at.y, at.y};
        first_ = false;
        box_ = {std::min(box_.x_low, at.x), std::max(box_.x_high, at.x), std::min(box_.y_low, at.y),
                std::max(box_.y_high, at.y)};
    }
    const chart::Rect& box() const { return box_; }

  private:
    bool first_ = true;
    chart::Rect box_;
};

}  // namespace

MapTops map_tops(const SurveyResults& results) {
    MapTops map;
    map.system = map_system(results);
    map.amount = amount_of(results);
    MapExtent extent;
    for (std::size_t i = 0; i < results.lines.size(); ++i) {
        const LineResult& line = results.lines[i];
        if (!has_drawable_track(line)) {
            ++map.without_track;
            continue;
        }
        if (line.coordinate_system != map.system) {
            ++map.in_other_systems;
            continue;
        }
        map.lines.push_back(i);
        if (line.status == LineStatus::failed) ++map.failed;
        for (std::size_t p = 0; p < line.track.size(); ++p) {
            const TrackPoint& to = line.track[p];
            extent.take({to.east, to.north});
            if (p > 0)
                map.length_m +=
                    std::hypot(to.east - line.track[p - 1].east, to.north - line.track[p - 1].north);
        }
        for (std::size_t b = 0; b < line.bodies.size(); ++b) {
            if (!std::isfinite(line.bodies[b].east) || !std::isfinite(line.bodies[b].north)) {
                ++map.without_place;
                continue;
            }
            MapTop top = map_top(line.bodies[b], line, map.amount);
            top.line = i;
            top.body = b;
            extent.take(top.place);
            count_top(map, top);
            map.tops.push_back(top);
        }
    }
    map.extent = extent.box();
    return map;
}

}  // namespace anomalis::survey
