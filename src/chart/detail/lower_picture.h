#pragma once

#include <cstdint>
#include <optional>

#include "chart/detail/chart_properties.h"
#include "chart/detail/layout.h"
#include "chart/detail/series_table.h"
#include "chart/detail/view_state.h"
#include "chart/drawing_device.h"
#include "chart/screen_palette.h"

namespace anomalis::chart {

struct GrapherState;

/// What the device's kept lower picture (background, bands, axes, title and the series below the others) was
/// drawn from.
class LowerPicture {
  public:
    /// True when the picture would be drawn again as it is.
    bool is_of(const GrapherState& state) const;
    /// Has the surface keep its base picture, which is the lower picture of this state. One that met with
    /// failures is not kept: they are told at every redraw.
    void keep(const GrapherState& state);

  private:
    const DrawingDevice* surface_ = nullptr;  ///< null: nothing is kept
    ChartProperties properties_;
    ChartLayout layout_;
    AxisRange x_;
    AxisRange y_;
    SeriesOptions options_;
    std::uint64_t revision_ = 0;
    std::uint64_t bands_ = 0;   ///< their revision
    std::uint64_t tracks_ = 0;  ///< likewise
    std::uint64_t dots_ = 0;    ///< likewise
    std::optional<ScreenPalette> palette_;
    Colour face_ = black;  ///< the desktop's colours
    Colour text_ = black;
};

}  // namespace anomalis::chart
