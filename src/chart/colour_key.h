#pragma once

#include <string>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis::chart {

/// A scale of colours that a chart shows in a corner: what it tells with its unit, the texts at its two ends,
/// and the colours from the low end to the high one.
struct ColourKey {
    std::string title, low, high;
    std::vector<Colour> colours;
    bool operator==(const ColourKey&) const = default;
};

}  // namespace anomalis::chart
