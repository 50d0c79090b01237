#pragma once

#include <string>

#include "chart/property_bag.h"

namespace anomalis {
class Settings;
}  // namespace anomalis

namespace anomalis::show {

/// A chart's properties as one section of the settings file, a line each. A key is found in whatever letters
/// the file spells it. Only what differs from the file is written; a value at its default is left out while
/// the file has no entry for it, since the settings cannot forget one.
class ChartPropertyBag : public chart::PropertyBag {
  public:
    /// `settings` must outlive the bag. Each chart needs a section of its own.
    ChartPropertyBag(Settings& settings, std::string section);

    chart::PropertyValue read_property(std::string_view key,
                                       const chart::PropertyValue& fallback) const override;
    void write_property(std::string_view key, const chart::PropertyValue& value,
                        const chart::PropertyValue* default_value) override;

    /// 0, or -1 when a write since the bag was made did not reach the file.
    int status() const { return status_; }

  private:
    std::string spelled(std::string_view key) const;

    Settings& settings_;
    std::string section_;
    int status_ = 0;
};

}  // namespace anomalis::show
