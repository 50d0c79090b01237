#pragma once

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "core/shown_text.h"
#include "core/utf8.h"

namespace anomalis {

/// Whether a text holds a character that steers a terminal or turns the order of reading round; line breaks
/// are none.
inline bool has_hidden_control(std::string_view text) {
    while (!text.empty()) {
        const Utf8Character found = first_character(text);
        if (found.length > 0 && is_hidden_control(found.code) && text.front() != '\n' && text.front() != '\r')
            return true;
        text.remove_prefix(std::max<std::size_t>(found.length, 1));
    }
    return false;
}

/// Whether "inf" or "nan" stands in a text as a word, in whatever letters.
inline bool has_no_number_word(std::string_view text) {
    std::string word;
    const auto is_bad = [&] { return word == "inf" || word == "nan" || word == "infinity"; };
    for (const char letter : text) {
        if (std::isalpha(static_cast<unsigned char>(letter)) != 0) {
            word += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
            continue;
        }
        if (is_bad()) return true;
        word.clear();
    }
    return is_bad();
}

}  // namespace anomalis
