#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "chart/drawing_types.h"

namespace anomalis::chart {

using PropertyValue = std::variant<bool, std::int32_t, float, double, std::string, Font>;

/// Where a chart keeps its properties between sessions. Keys are compared without regard to case: the chart
/// asks for "xAxisType" and stores "XAxisType".
class PropertyBag {
  public:
    virtual ~PropertyBag() = default;

    /// The entry as the type of `fallback`; `fallback` when there is none or it cannot be read as that type.
    virtual PropertyValue read_property(std::string_view key, const PropertyValue& fallback) const = 0;
    /// Stores an entry. A value equal to `*default_value` may be left out (and an older entry removed);
    /// a null default means that the value is always stored.
    virtual void write_property(std::string_view key, const PropertyValue& value,
                                const PropertyValue* default_value) = 0;
    /// A property was set since the bag was last written.
    virtual void property_changed(std::string_view /*key*/) {}
};

}  // namespace anomalis::chart
