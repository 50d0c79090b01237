#pragma once

#include <optional>
#include <vector>

#include "chart/ax_grapher.h"
#include "chart/detail/graphic_item.h"

namespace anomalis::chart {

/// Captured items as bytes: a mark, a version, the count of items, the length of what follows, the items
/// field by field in little-endian order, and a CRC-32 of everything before it.
GraphicBytes pack_items(const std::vector<GraphicItem>& items);

/// The items again; no value for bytes that are cut, longer than told, of another version, or corrupt. Memory
/// stays bounded by the length of the bytes.
std::optional<std::vector<GraphicItem>> unpack_items(const GraphicBytes& bytes);

}  // namespace anomalis::chart
