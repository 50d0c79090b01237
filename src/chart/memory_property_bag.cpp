#include "chart/memory_property_bag.h"

#include <cmath>
#include <limits>

#include "chart/detail/flat_json.h"

namespace anomalis::chart {

namespace {

char small_letter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// A number of one type as another, where it fits.
template <class Wanted>
PropertyValue converted(double number, Wanted fallback) {
    if (!(std::abs(number) <= static_cast<double>(std::numeric_limits<Wanted>::max()))) return fallback;
    if (std::is_same_v<Wanted, std::int32_t> && number != std::round(number)) return fallback;
    return static_cast<Wanted>(number);
}

/// An entry as the type of the fallback: JSON knows one kind of number.
PropertyValue as_type(const PropertyValue& held, const PropertyValue& fallback) {
    if (held.index() == fallback.index()) return held;
    double number = 0.0;
    if (const auto* whole = std::get_if<std::int32_t>(&held))
        number = *whole;
    else if (const auto* single = std::get_if<float>(&held))
        number = *single;
    else if (const auto* wide = std::get_if<double>(&held))
        number = *wide;
    else
        return fallback;
    if (const auto* usual = std::get_if<std::int32_t>(&fallback)) return converted(number, *usual);
    if (const auto* usual = std::get_if<float>(&fallback)) return converted(number, *usual);
    if (const auto* usual = std::get_if<double>(&fallback)) return converted(number, *usual);
    return fallback;
}

}  // namespace

std::string MemoryPropertyBag::folded(std::string_view key) {
    std::string small(key);
    for (char& c : small) c = small_letter(c);
    return small;
}

PropertyValue MemoryPropertyBag::read_property(std::string_view key, const PropertyValue& fallback) const {
    const auto found = entries_.find(folded(key));
    return found == entries_.end() ? fallback : as_type(found->second.value, fallback);
}

void MemoryPropertyBag::write_property(std::string_view key, const PropertyValue& value,
                                       const PropertyValue* default_value) {
    changes_.erase(folded(key));
    if (default_value != nullptr && value == *default_value)
        entries_.erase(folded(key));
    else
        entries_.insert_or_assign(folded(key), Entry{std::string(key), value});
}

void MemoryPropertyBag::property_changed(std::string_view key) {
    ++changes_[folded(key)];
}

bool MemoryPropertyBag::has(std::string_view key) const {
    return entries_.contains(folded(key));
}

int MemoryPropertyBag::changes(std::string_view key) const {
    const auto found = changes_.find(folded(key));
    return found == changes_.end() ? 0 : found->second;
}

std::string MemoryPropertyBag::to_json() const {
    JsonEntries entries;
    for (const auto& [folded_key, entry] : entries_) entries.emplace_back(entry.key, entry.value);
    return write_flat_json(entries);
}

int MemoryPropertyBag::from_json(std::string_view json) {
    const auto entries = read_flat_json(json);
    if (!entries) return -1;
    entries_.clear();
    for (const auto& [key, value] : *entries) entries_.insert_or_assign(folded(key), Entry{key, value});
    return 0;
}

}  // namespace anomalis::chart
