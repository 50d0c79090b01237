#pragma once

#include <vector>

#include "survey/map/results_map_scales.h"
#include "survey/map/results_map_tops.h"
#include "survey/results/line_flags.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart

namespace anomalis::survey {

/// What there is to explain of a map.
struct ResultsKey {
    const MapTops& tops;
    const DepthScale& depths;
    const SizeScale& sizes;
    double greatest = 0;  ///< radius of the largest dot, surface units
    bool strikes = false;
    std::vector<LineFlag> flags = {};  ///< those that occur
};

/// Screen pixels that a key needs.
inline constexpr int results_key_width = 190;

/// Draws the key from the top of its chart down; what has no room is left out, the last first.
void draw_results_key(chart::AX_Grapher& chart, const ResultsKey& key);

/// "Depth below ground (m)"
const char* depth_title(const MapTops& tops);

}  // namespace anomalis::survey
