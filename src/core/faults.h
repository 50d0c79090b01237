#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace anomalis {

/// What went wrong in a calculation, in the order of first occurrence; a text that repeats is counted.
class Faults {
  public:
    struct Entry {
        std::string text;
        long count = 1;
    };

    void add(const std::string& text, long count = 1);
    void clear();
    bool empty() const { return entries_.empty(); }
    std::span<const Entry> entries() const { return entries_; }

  private:
    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t> places_;  ///< where in `entries_` a text stands
};

}  // namespace anomalis
