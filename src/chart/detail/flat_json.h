#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "chart/property_bag.h"

namespace anomalis::chart {

using JsonEntries = std::vector<std::pair<std::string, PropertyValue>>;

/// One JSON object of scalars and fonts, keys in the given order.
std::string write_flat_json(const JsonEntries& entries);
/// The entries of such an object (a null is left out); no value for any other text. Numbers come as double.
std::optional<JsonEntries> read_flat_json(std::string_view text);

}  // namespace anomalis::chart
