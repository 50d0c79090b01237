#pragma once

#include <optional>

#include "chart/detail/grapher_state.h"

namespace anomalis::chart {

/// AX_Grapher::DrawTo.
int draw_to(GrapherState& state, DrawingDevice& target, OutputTarget kind, const SurfaceMapping& mapping,
            std::optional<SurfaceSize> size);
/// AX_Grapher::GraphicsStream; no value after a failure.
std::optional<std::vector<GraphicItem>> capture_chart(GrapherState& state);
/// Plays captured items on a device by the low-level primitives.
void play_items(const GrapherState& state, const std::vector<GraphicItem>& items, DrawingDevice& device,
                const SurfaceMapping& mapping, FailureNotes& notes);

}  // namespace anomalis::chart
