#include "core/utf8.h"

namespace anomalis {

namespace {

unsigned byte_at(std::string_view text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

bool continues(unsigned byte) {
    return (byte & 0xC0U) == 0x80U;
}

/// By the first byte; 0 of one that starts no character.
std::size_t announced_length(unsigned first) {
    if (first < 0x80) return 1;
    if (first < 0xC2 || first > 0xF4) return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

bool is_valid(char32_t code, std::size_t length) {
    if (code >= 0xD800 && code < 0xE000) return false;
    return code <= 0x10FFFF && (length < 3 || code >= (length == 3 ? 0x800U : 0x10000U));
}

}  // namespace

Utf8Character first_character(std::string_view text) {
    if (text.empty()) return {};
    const unsigned first = byte_at(text, 0);
    const std::size_t length = announced_length(first);
    if (length == 0 || length > text.size()) return {};
    char32_t code = length == 1 ? first : first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!continues(byte_at(text, i))) return {};
        code = code << 6 | (byte_at(text, i) & 0x3FU);
    }
    return is_valid(code, length) ? Utf8Character{code, length} : Utf8Character{};
}

void append_utf8(std::string& text, char32_t code) {
    const auto put = [&](char32_t byte) { text += static_cast<char>(byte); };
    const auto put_rest = [&](unsigned shift) { put(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
        put(code);
        return;
    }
    if (code < 0x800) {
        put(0xC0 | code >> 6);
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put_rest(6);
    } else {
        put(0xF0 | code >> 18);
        put_rest(12);
        put_rest(6);
    }
    put_rest(0);
}

void append_utf16(std::u16string& text, char32_t code) {
    if (code < 0x10000) {
        text += static_cast<char16_t>(code);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
}

}  // namespace anomalis
