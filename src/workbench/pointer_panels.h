#pragma once

#include <optional>
#include <string>

#include "chart/drawing_types.h"

namespace anomalis {

class AX_Grapher;
struct Workspace;

/// What the status bar tells of the pointer: the chart under it, the place in the chart, the place on the
/// map. The four numbers are blank while the pointer is outside the plot.
struct PointerPanels {
    std::string chart, x, y, east, north;
};

/// Over one of the five charts of the line. `user` is the place in the chart; null outside its plot.
PointerPanels profile_pointer(const Workspace& workspace, int chart, const AX_Grapher& grapher,
                              const Point* user);
/// Over the plan.
PointerPanels plan_pointer(const Point* user);

/// The place under a pointer at `x`, `y` (surface units from the chart's left and top edge); none outside the
/// plot.
std::optional<Point> place_under(const AX_Grapher& grapher, float x, float y);

/// How much taller the section is drawn than it is wide: vertical over horizontal scale.
double vertical_stretch(const AX_Grapher& section);

}  // namespace anomalis
