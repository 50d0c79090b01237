#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "chart/drawing_types.h"

// What all maps have in common.
namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart

namespace anomalis::show {

/// How far from a track a press is still meant for it, surface units.
inline constexpr double track_reach = 180;
inline constexpr chart::Colour chosen_red = 0x2827D6;  ///< of the chosen line; no colour of the ramp

/// The value below which so large a part of all values lies, 0 to 1. The values are put into another order;
/// there is one at least.
double part_of(std::vector<double>& values, double part);

/// Looks of a map with its axes in metres.
void take_map_look(chart::AX_Grapher& map);
/// Limits about all that is to be seen (m), a margin, and ticks; the layout of the next display stands then.
void frame_map(chart::AX_Grapher& map, const chart::Rect& extent);
/// Screen pixels between neighbours, of lines that cover an extent with so many metres; 100 for few lines.
double track_spacing(const chart::AX_Grapher& map, const chart::Rect& extent, double length_m,
                     std::size_t lines);
/// Records a track in red on white, on top of the map.
void draw_chosen_track(chart::AX_Grapher& map, std::span<const chart::Point> track);
/// From a place to the piece of a track between a and b, squared.
double squared_distance(chart::Point at, chart::Point a, chart::Point b);

/// Where a straight piece from `from` to `to` first is within a view; none where it passes by.
std::optional<chart::Point> entry_into(const chart::Rect& view, chart::Point from, chart::Point to);

/// Names beside the beginnings of lines, where there is room.
class MapNames {
  public:
    explicit MapNames(chart::AX_Grapher& map) : map_(map) {}
    /// Records a name on the side that the line leaves free; false without room. `begin` and a place `ahead`
    /// on the line, m.
    bool place(const std::string& name, chart::Point begin, chart::Point ahead);
    bool full() const;

  private:
    chart::AX_Grapher& map_;
    std::vector<chart::Rect> taken_;
};

}  // namespace anomalis::show
