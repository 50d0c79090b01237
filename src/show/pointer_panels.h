#pragma once

#include <optional>
#include <string>

#include "chart/drawing_types.h"

namespace anomalis::chart {
class AX_Grapher;
}  // namespace anomalis::chart
namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// What the status bar tells of the pointer: the chart under it, the place in the chart, the place on the
/// map. The four numbers are blank while the pointer is outside the plot. Over a station without a reading of
/// the chart's channel the name of the chart says so.
struct PointerPanels {
    std::string chart, x, y, east, north;
};

/// Over one of the five charts of the line. `user` is the place in the chart; null outside its plot.
PointerPanels profile_pointer(const Workspace& workspace, int chart, const chart::AX_Grapher& grapher,
                              const chart::Point* user);
/// Over the plan.
PointerPanels plan_pointer(const chart::Point* user);

/// The place under a pointer at `x`, `y` (surface units from the chart's left and top edge); none outside the
/// plot.
std::optional<chart::Point> place_under(const chart::AX_Grapher& grapher, float x, float y);

/// How much taller the section is drawn than it is wide: vertical over horizontal scale.
double vertical_stretch(const chart::AX_Grapher& section);

}  // namespace anomalis::show
