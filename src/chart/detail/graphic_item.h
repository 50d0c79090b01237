#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis::chart {

/// The kinds of a retained or captured item.
enum class ItemKind : std::int32_t {
    window = 1,
    line = 10,
    marker = 11,
    polygon = 12,
    rectangle = 13,
    text = 14,
    polyline = 21
};

/// Which of a chart's two fonts: numbers and letters, or titles and axis labels.
enum class FontRole : std::int32_t { chart = 0, title = 1 };

/// A line that always spans the whole chart: one end to the other of Y (a vertical line) or of X.
enum class LineExtent : std::int32_t { ends = 0, full_y = 1, full_x = 2 };

/// One drawing command. Retained items are in user units, captured ones in surface units.
struct GraphicItem {
    ItemKind kind = ItemKind::line;
    double x1 = 0.0;
    double y1 = 0.0;
    double x2 = 0.0;
    double y2 = 0.0;
    Colour colour = black;
    Colour pen_colour = no_colour;
    Colour fill_colour = no_colour;
    std::int32_t width = 1;
    std::int32_t marker = 0;
    std::int32_t reserved = 0;  ///< the line style
    float angle = 0.0F;
    std::string text;
    std::vector<double> xs;
    std::vector<double> ys;

    // Kept from the moment of recording, so that a later setting does not change earlier items.
    std::int32_t marker_size = 0;
    FontRole font = FontRole::chart;
    LineExtent extent = LineExtent::ends;
    Rect bounds;  ///< of xs and ys

    std::size_t count() const { return xs.size(); }
    bool operator==(const GraphicItem&) const = default;
};

}  // namespace anomalis::chart
