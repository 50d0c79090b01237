#include "output/csv_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/text.h"
#include "core/workspace.h"

namespace anomalis::output {

namespace {

template <class Number>
void append_shortest(std::string& text, Number value) {
    if (!std::isfinite(value) || value <= static_cast<Number>(missing_limit)) return;
    char buffer[64];
    const std::string_view digits(
        buffer, static_cast<std::size_t>(std::to_chars(buffer, buffer + sizeof buffer, value).ptr - buffer));
    text += digits;
    // Libraries that guess a column's kind from its first rows must not take a fraction for a whole number.
    if (digits.find_first_of(".e") == std::string_view::npos) text += ".0";
}

/// The number of bytes of the UTF-8 character at the start of the text; 0 when there is none.
std::size_t character_length(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (length == 0 || length > text.size() || first > 0xF4) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    // Longer than needed, half of a surrogate pair, beyond the last character.
    const bool wrong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
                       (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F);
    return wrong ? 0 : length;
}

std::string utf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const std::size_t length = character_length(text);
        if (byte < 0x20 || byte == 0x7F) {
            result += ' ';
        } else if (length > 0) {
            result += text.substr(0, length);
        } else {
            result += static_cast<char>(0xC0 | byte >> 6);
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

}  // namespace

std::string& CsvText::next() {
    if (!first_) text_ += ',';
    first_ = false;
    return text_;
}

void CsvText::number(double value) {
    append_shortest(next(), value);
}

void CsvText::number(float value) {
    append_shortest(next(), value);
}

void CsvText::whole(int value) {
    next() += std::to_string(value);
}

void CsvText::words(std::string_view value) {
    const std::string one_line = utf8(single_line(value));
    const std::string_view field = trim_blanks(one_line);
    next();
    if (field.find_first_of(",\"") == std::string_view::npos) {
        text_ += field;
        return;
    }
    text_ += '"';
    for (const char c : field) text_.append(c == '"' ? 2 : 1, c);
    text_ += '"';
}

void CsvText::end_row() {
    text_ += '\n';
    first_ = true;
}

}  // namespace anomalis::output
