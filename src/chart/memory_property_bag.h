#pragma once

#include <map>
#include <string>

#include "chart/property_bag.h"

namespace anomalis::chart {

/// A property bag in memory that can be saved as, and restored from, one flat JSON object: texts, numbers,
/// true and false, and fonts as objects with "name", "size", "bold" and "italic".
class MemoryPropertyBag : public PropertyBag {
  public:
    PropertyValue read_property(std::string_view key, const PropertyValue& fallback) const override;
    void write_property(std::string_view key, const PropertyValue& value,
                        const PropertyValue* default_value) override;
    void property_changed(std::string_view key) override;

    bool has(std::string_view key) const;
    /// How often properties were set since the bag was last written, by key.
    int changes(std::string_view key) const;

    std::string to_json() const;
    /// Replaces the entries. Text that is not such an object gives -1 and changes nothing.
    int from_json(std::string_view json);

  private:
    struct Entry {
        std::string key;  ///< as it was written
        PropertyValue value;
    };
    static std::string folded(std::string_view key);

    std::map<std::string, Entry> entries_;  ///< by the key in small letters
    std::map<std::string, int> changes_;
};

}  // namespace anomalis::chart
