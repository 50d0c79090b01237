#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "chart/drawing_types.h"
#include "survey/results/survey_results.h"

// What of the results of a survey stands on its map.
namespace anomalis::survey {

/// How much of its depth the 90 % interval of a top is to each side: up to a fifth, up to a half, more. More
/// as well where a side is open or nobody knows.
enum class DepthDoubt { small, middle, large };
inline constexpr double small_doubt = 0.2, middle_doubt = 0.5;

/// The middle of the top of a body.
struct MapTop {
    std::size_t line = 0, body = 0;  ///< in the results
    chart::Point place;              ///< east, north; m
    double depth = unknown;          ///< m below ground, or below the sensor where the ground is not known
    bool below_sensor = false;
    DepthDoubt doubt = DepthDoubt::large;
    double amount = unknown;  ///< magnitude of susceptibility or density contrast, see `MapTops::amount`
    /// The 90 % interval of its place along the profile, as far as the line goes.
    std::optional<std::array<chart::Point, 2>> interval;
};

enum class MapAmount { none, susceptibility, density };

struct MapTops {
    std::string system;              ///< that of most lines: a map has one
    std::vector<std::size_t> lines;  ///< that have a track in it
    std::vector<MapTop> tops;        ///< of these lines, in their order
    /// Density contrast where no body has a susceptibility.
    MapAmount amount = MapAmount::none;
    std::size_t below_ground = 0, below_sensor = 0, without_depth = 0;  ///< tops
    std::size_t without_amount = 0, without_place = 0;                  ///< bodies
    std::size_t in_other_systems = 0, without_track = 0;                ///< lines
    std::size_t failed = 0;                                             ///< of its lines
    chart::Rect extent;                                                 ///< of tracks and tops, m
    double length_m = 0;                                                ///< of all tracks
};

MapTops map_tops(const SurveyResults& results);

}  // namespace anomalis::survey
