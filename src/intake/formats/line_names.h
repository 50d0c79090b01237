#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "intake/formats/survey_layout.h"

namespace anomalis::intake {

/// The lines of a survey by their names, in the order in which they come.
class LineNames {
  public:
    explicit LineNames(Encoding encoding) : encoding_(encoding) {}

    /// The index of the line that a field names. Whole numbers count by their value: "690.0" is "690".
    std::int32_t index_of(std::string_view field) { return is_last(field) ? last_ : look_up(field, false); }
    /// Whether it is spelled as the field before, whose line is `last`.
    bool is_last(std::string_view field) const { return !names_.empty() && field == last_field_; }
    std::int32_t last() const { return last_; }
    /// The same for a header, which says whether the line is a tie.
    std::int32_t index_of_header(std::string_view name, bool tie) { return look_up(name, tie); }
    std::span<const std::string> list() const { return names_; }
    bool is_tie(std::int32_t line) const { return ties_.at(static_cast<std::size_t>(line)); }

  private:
    std::int32_t look_up(std::string_view field, bool tie);

    Encoding encoding_;
    std::string last_field_;  ///< rows of one line follow each other
    std::int32_t last_ = 0;
    std::unordered_map<std::string, std::int32_t> indices_;
    std::vector<std::string> names_;
    std::vector<bool> ties_;
};

/// What a field that names a line is called.
std::string line_name_of(std::string_view field, Encoding encoding);

}  // namespace anomalis::intake
