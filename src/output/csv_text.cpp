#include "output/csv_text.h"

#include <algorithm>
#include <cmath>

#include "core/append_number.h"
#include "core/text.h"
#include "core/utf8.h"
#include "core/workspace.h"

namespace anomalis::output {

namespace {

/// A spreadsheet reckons with a cell that begins so, and runs what it names.
constexpr std::string_view formula_starts = "=+-@";

template <class Number>
void append_number(std::string& text, Number value) {
    if (!std::isfinite(value) || value <= static_cast<Number>(missing_limit)) return;
    const std::size_t start = text.size();
    append_round_trip(text, value);
    // Libraries that guess a column's kind from its first rows must not take a fraction for a whole number.
    if (text.find_first_of(".e", start) == std::string::npos) text += ".0";
}

std::string utf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto byte = static_cast<unsigned char>(text.front());
        const Utf8Character found = first_character(text);
        const bool control = byte < 0x20 || byte == 0x7F;
        append_utf8(result, control ? U' ' : found.length > 0 ? found.code : char32_t{byte});
        text.remove_prefix(std::max<std::size_t>(found.length, 1));
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
    append_number(next(), value);
}

void CsvText::number(float value) {
    append_number(next(), value);
}

void CsvText::whole(int value) {
    next() += std::to_string(value);
}

void CsvText::words(std::string_view value) {
    const std::string one_line = utf8(single_line(value));
    const std::string_view field = trim_blanks(one_line);
    next();
    const bool formula = !field.empty() && formula_starts.find(field.front()) != std::string_view::npos;
    if (!formula && field.find_first_of(",\"") == std::string_view::npos) {
        text_ += field;
        return;
    }
    text_ += formula ? "\"'" : "\"";
    for (const char c : field) text_.append(c == '"' ? 2 : 1, c);
    text_ += '"';
}

void CsvText::end_row() {
    text_ += '\n';
    first_ = true;
}

}  // namespace anomalis::output
