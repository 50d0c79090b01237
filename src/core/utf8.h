#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts are UTF-8 throughout. Here is what the places need that take one apart without the window system.
namespace anomalis {

struct Utf8Character {
    char32_t code = 0;
    std::size_t length = 0;  ///< bytes; 0 when no valid character stands there
};

/// The character at the start of the text. Forms longer than needed, halves of surrogate pairs and codes
/// beyond the last character are not valid.
Utf8Character first_character(std::string_view text);

/// Appends a character in UTF-8. REQUIRES: a valid code.
void append_utf8(std::string& text, char32_t code);

/// Appends a character in UTF-16, as one unit or as a pair. REQUIRES: a valid code.
void append_utf16(std::u16string& text, char32_t code);

}  // namespace anomalis
