#pragma once

#include <map>
#include <string>

#include "chart/property_bag.h"

namespace anomalis::chart {

/// A property bag in memory.
class MemoryPropertyBag : public PropertyBag {
  public:
    PropertyValue read_property(std::string_view key, const PropertyValue& fallback) const override {
        const auto found = entries_.find(folded(key));
        const bool fits = found != entries_.end() && found->second.index() == fallback.index();
        return fits ? found->second : fallback;
    }
    void write_property(std::string_view key, const PropertyValue& value,
                        const PropertyValue* default_value) override {
        changes_.erase(folded(key));
        if (default_value != nullptr && value == *default_value)
            entries_.erase(folded(key));
        else
            entries_.insert_or_assign(folded(key), value);
    }
    void property_changed(std::string_view key) override { ++changes_[folded(key)]; }

    bool has(std::string_view key) const { return entries_.contains(folded(key)); }
    /// How often properties were set since the bag was last written, by key.
    int changes(std::string_view key) const {
        const auto found = changes_.find(folded(key));
        return found == changes_.end() ? 0 : found->second;
    }
    const std::map<std::string, PropertyValue>& entries() const { return entries_; }

  private:
    static std::string folded(std::string_view key) {
        std::string small(key);
        for (char& c : small)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        return small;
    }

    std::map<std::string, PropertyValue> entries_;  ///< by the key in small letters
    std::map<std::string, int> changes_;
};

}  // namespace anomalis::chart
