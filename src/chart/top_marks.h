#pragma once

#include <optional>
#include <string>
#include <vector>

#include "chart/drawing_types.h"

// What a host shows above the picture of a chart, on screen alone: handles, levers, a note at the pointer. It
// is painted anew with each frame and costs no redraw; no copy, file or sheet has it.
namespace anomalis::chart {

/// A place that keeps its distance on screen: user units, then surface units from there.
struct TopPlace {
    Point user;
    Point shift;
    bool operator==(const TopPlace&) const = default;
};

enum class MarkShape { square, circle, diamond };

/// Drawn whole where its middle stands in the plot, else not at all.
struct TopMark {
    TopPlace at;
    MarkShape shape = MarkShape::square;
    double radius = 0;  ///< surface units; of a square half its side
    Colour pen = black;
    Colour fill = white;
    double width = 1;  ///< of the outline, screen pixels
    bool operator==(const TopMark&) const = default;
};

struct TopLine {
    TopPlace from, to;
    Pen pen;
    bool operator==(const TopLine&) const = default;
};

/// Lines of text in a box beside a place, on the side where the plot has room.
struct TopNote {
    TopPlace at;
    double gap = 0;  ///< surface units between place and box
    std::vector<std::string> lines;
    Colour pen = black, ground = white, ink = black;
    bool operator==(const TopNote&) const = default;
};

struct TopMarks {
    std::vector<TopLine> lines;
    std::vector<TopMark> marks;
    std::optional<TopNote> note;
    bool operator==(const TopMarks&) const = default;
};

/// What the pointer says that a press would do here.
enum class PointerShape {
    usual,
    choose,   ///< select what is under it
    move,     ///< move in both directions
    across,   ///< to the left and right
    upright,  ///< up and down
    falling,  ///< along a line that falls to the right
    rising,   ///< along a line that rises to the right
    turn      ///< about a place
};

}  // namespace anomalis::chart
