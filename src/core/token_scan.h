#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "core/decimal_scan.h"
#include "core/numbers.h"
#include "core/text.h"

// What is asked for every field of a data file, so as inline functions.
namespace anomalis {

inline constexpr auto token_ends = [] {
    std::array<bool, 256> ends{};
    for (const unsigned char c : {' ', '\t', ',', ';', '\''}) ends[c] = true;
    return ends;
}();

inline bool ends_token(char c) {
    return token_ends[static_cast<unsigned char>(c)];
}

inline const char* behind_blanks(const char* at, const char* end) {
    while (at != end && (*at == ' ' || *at == '\t')) ++at;
    return at;
}

/// `next_number` of core/text.h.
inline bool scan_number(std::string_view& line, double& value) {
    const char* const end = line.data() + line.size();
    const char* const at = behind_blanks(line.data(), end);
    const char* const stop = at == end ? nullptr : scan_decimal(at, end, value);
    if (!stop || (stop != end && !ends_token(*stop))) return parse_number(next_token(line), value);
    const char* behind = behind_blanks(stop, end);
    if (behind != end && ends_token(*behind)) ++behind;
    line = {behind, static_cast<std::size_t>(end - behind)};
    return true;
}

}  // namespace anomalis
