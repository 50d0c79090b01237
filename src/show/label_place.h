#pragma once

#include <optional>
#include <vector>

#include "chart/drawing_types.h"

// Where a label stands beside its body: pure geometry, surface units of a chart.
namespace anomalis::show {

using Outline = std::vector<chart::Point>;

struct WantedLabel {
    chart::Rect window;      ///< that the label does not leave
    double width = 0;        ///< of the label
    double height = 0;       ///< of the label
    double gap = 0;          ///< between label and body
    chart::Rect body;        ///< what of the body is in the window
    double bottom = 0;       ///< the lower edge it would have
    bool left_side = false;  ///< the side it would stand on
};

struct LabelPlace {
    chart::Rect box;
    /// From the label to its body, when it does not stand right beside it.
    std::optional<chart::Point> leader_from;
};

/// The nearest place to the wanted one where the label covers none of the outlines: beside the body, else
/// further up, down or away, else on the other side. Where there is none the wanted place, inside the window.
LabelPlace place_label(const WantedLabel& wanted, const std::vector<Outline>& outlines);

/// True when a closed outline and a box have a point in common.
bool covers(const chart::Rect& box, const Outline& outline);

/// The point of a closed outline that is nearest to a place.
chart::Point nearest_point(const Outline& outline, chart::Point place);

}  // namespace anomalis::show
