#include "core/faults.h"

namespace anomalis {

void Faults::add(const std::string& text, long count) {
    const auto [place, is_new] = places_.try_emplace(text, entries_.size());
    if (is_new) {
        entries_.push_back({text, count});
    } else {
        entries_[place->second].count += count;
    }
}

void Faults::clear() {
    entries_.clear();
    places_.clear();
}

}  // namespace anomalis
