#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace anomalis {

/// What a text for the person is about.
enum class Severity {
    remark,  ///< all is well: what was done, or which of two was taken
    doubt,   ///< a number or a row was read as the format says, which can hardly be what was meant
    failure  ///< something was not done or not calculated
};

/// What went wrong in a calculation, in the order of first occurrence; a text that repeats is counted.
class Faults {
  public:
    struct Entry {
        std::string text;
        long count = 1;
        Severity severity = Severity::failure;
    };

    /// A text that is there already keeps the graver of its severities.
    void add(const std::string& text, long count = 1, Severity severity = Severity::failure);
    void clear();
    bool empty() const { return entries_.empty(); }
    std::span<const Entry> entries() const { return entries_; }

  private:
    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t> places_;  ///< where in `entries_` a text stands
};

/// The text of an entry; a repeated one as "text (n times)".
std::string counted_text(const Faults::Entry& entry);

}  // namespace anomalis
