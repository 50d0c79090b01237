#pragma once

#include <optional>
#include <string>

#include "chart/drawing_types.h"
#include "intake/coordinates/coordinate_system.h"

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
    std::string y_unit = {};  ///< of `y`; blank with it
    std::string geographic =
        {};  ///< "140.54431 E, 22.10490 S"; blank too where no coordinate system is known
};

/// Longitude and latitude of places on the map. The way there is found once, not at every move of the
/// pointer.
class GeographicPlaces {
  public:
    /// Of a place in a coordinate system; "" for a system that is not known and a place that has none.
    std::string text(const std::string& coordinate_system, double east, double north);
    /// How often a way was looked for.
    int ways_found() const { return ways_found_; }

  private:
    std::optional<std::string> system_;
    std::optional<intake::CoordinateChange> change_;  ///< none where there is no way
    int ways_found_ = 0;
};

/// Over one of the five charts of the line. `user` is the place in the chart; null outside its plot. The
/// place on the map is that of the nearest station.
PointerPanels profile_pointer(const Workspace& workspace, int chart, const chart::AX_Grapher& grapher,
                              const chart::Point* user, GeographicPlaces& places);
/// Over the plan.
PointerPanels plan_pointer(const Workspace& workspace, const chart::Point* user, GeographicPlaces& places);

/// The place under a pointer at `x`, `y` (surface units from the chart's left and top edge); none outside the
/// plot.
std::optional<chart::Point> place_under(const chart::AX_Grapher& grapher, float x, float y);

/// How much taller the section is drawn than it is wide: vertical over horizontal scale.
double vertical_stretch(const chart::AX_Grapher& section);

}  // namespace anomalis::show
