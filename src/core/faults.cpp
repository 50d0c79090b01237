#include "core/faults.h"

#include <algorithm>

namespace anomalis {

void Faults::add(const std::string& text, long count, Severity severity) {
    const auto [place, is_new] = places_.try_emplace(text, entries_.size());
    if (is_new) {
        entries_.push_back({text, count, severity});
    } else {
        Entry& entry = entries_[place->second];
        entry.count += count;
        entry.severity = std::max(entry.severity, severity);
    }
}

void Faults::clear() {
    entries_.clear();
    places_.clear();
}

std::string counted_text(const Faults::Entry& entry) {
    return entry.count == 1 ? entry.text : entry.text + " (" + std::to_string(entry.count) + " times)";
}

}  // namespace anomalis
