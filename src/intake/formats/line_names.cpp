#include "intake/formats/line_names.h"

#include <cmath>

#include "core/numbers.h"
#include "intake/formats/byte_source.h"

namespace anomalis::intake {

std::string line_name_of(std::string_view field, Encoding encoding) {
    constexpr double most_digits = 1e15;
    double value = 0;
    // A number of a record such as F10.1 has decimals that no line has.
    const bool decimals = field.find_first_of(".eE") != std::string_view::npos;
    if (decimals && parse_number(field, value) && value == std::trunc(value) && std::abs(value) < most_digits)
        return std::to_string(static_cast<long long>(value));
    return text_of_bytes(field, encoding);
}

std::int32_t LineNames::look_up(std::string_view field, bool tie) {
    last_field_ = field;
    const auto [found, is_new] =
        indices_.try_emplace(line_name_of(field, encoding_), static_cast<std::int32_t>(names_.size()));
    if (is_new) {
        names_.push_back(found->first);
        ties_.push_back(tie);
    }
    return last_ = found->second;
}

}  // namespace anomalis::intake
