#pragma once

#include "chart/chart_table.h"
#include "chart/colour_contrast.h"
#include "chart/surface_mapping.h"
#include "survey/map/results_map_scales.h"
#include "survey/map/results_map_tops.h"
#include "survey/results/line_flags.h"

// How things look on the map of results and in its key alike. Private to this room.
namespace anomalis::survey {

inline constexpr double map_pixel = chart::units_per_screen_pixel;

inline constexpr chart::Colour line_grey = 0xA0A0A0;
inline constexpr chart::Colour crowded_grey = 0xD4D4D4;  ///< of lines that lie close together
inline constexpr chart::Colour rim_grey = 0x606060;
inline constexpr chart::Colour failed_orange = 0x005ED5;
inline constexpr chart::Colour interval_grey = 0x303030;
inline constexpr chart::Colour strike_black = 0x000000;
inline constexpr chart::Colour sample_grey = 0xB0B0B0;  ///< of dots in the key that speak of no depth
inline constexpr int strike_width = 2, failed_width = 2, line_width = 1;

/// Radius of the largest dot below which a map is crowded: the white in the middle of dots would not be seen.
inline constexpr double least_with_holes = 75;  // surface units

/// Marker styles of the chart.
inline int flag_marker(LineFlag flag) {
    constexpr int square = 2, diagonals = 4, diamond = 7;
    return flag == LineFlag::accept ? square : flag == LineFlag::reject ? diagonals : diamond;
}
inline chart::Colour flag_colour(LineFlag flag) {
    return flag == LineFlag::accept ? 0x739E00 : flag == LineFlag::reject ? 0x2827D6 : 0x009FE6;
}
inline constexpr int flag_size = 75;  ///< surface units
inline constexpr int flag_width = 2;

/// How much is drawn thinner where lines lie close together.
struct StrokeLooks {
    chart::Colour line = line_grey;
    int interval = 3;  ///< width, screen pixels
};
inline StrokeLooks stroke_looks(double greatest_dot) {
    return greatest_dot < least_with_holes ? StrokeLooks{crowded_grey, 1} : StrokeLooks{};
}

inline double hole_of(DepthDoubt doubt) {
    return doubt == DepthDoubt::small ? 0 : doubt == DepthDoubt::middle ? 0.36 : 0.64;
}

/// A dot with an edge in a darker shade of its own: bright ones are seen on white, and the colour is told at
/// any size.
inline chart::ChartDot edged_dot(double radius, chart::Colour fill, double hole = 0) {
    return {.radius = radius, .fill = fill, .edge = chart::mixed(fill, chart::black, 0.5), .hole = hole};
}

}  // namespace anomalis::survey
