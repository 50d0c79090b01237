#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "chart/colour_key.h"
#include "chart/detail/graphic_item.h"
#include "chart/detail/series_table.h"

namespace anomalis::chart {

struct GrapherState;

/// What the picture on screen was drawn from, above its lower picture: the other series, the overlay, and
/// what stands in its corners. A chart whose curves and bodies have stayed while others changed is so left
/// alone.
class ShownPicture {
  public:
    /// True when surface and top would be drawn again as they are.
    bool is_of(const GrapherState& state) const;
    /// The surface is that of this state and complete. One that met with failures is not kept.
    void keep(const GrapherState& state);
    void forget() { kept_ = false; }

  private:
    bool kept_ = false;
    bool suspended_ = false;  ///< the overlay was
    std::vector<std::uint64_t> revisions_;
    std::vector<SeriesOptions> options_;
    std::vector<GraphicItem> overlay_;
    std::optional<ColourKey> colour_key_;
};

}  // namespace anomalis::chart
