#include "intake/formats/field_value.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "core/decimal_scan.h"
#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::intake {

namespace {

constexpr double beyond_any_reading = 1e30;

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// -9999, -99999, ...: four nines at least, a whole number.
bool is_of_nines(double null) {
    const double size = std::abs(null) + 1;
    for (double power = 1e4; power <= 1e12; power *= 10)
        if (size == power) return true;
    return false;
}

/// Takes a letter of a hemisphere off one end.
void take_hemisphere(std::string_view& text, double& sign) {
    bool taken = false;
    const auto take = [&](char letter) {
        const char upper = static_cast<char>(letter & ~0x20);
        if (upper != 'N' && upper != 'S' && upper != 'E' && upper != 'W') return false;
        if (upper == 'S' || upper == 'W') sign = -sign;
        return taken = true;
    };
    if (!text.empty() && take(text.front())) text.remove_prefix(1);
    text = trim_field(text);
    // In 140d49m59.8s the last letter means seconds.
    const bool seconds = text.ends_with('s') && text.find_first_of("dm") != std::string_view::npos;
    if (!text.empty() && !taken && !seconds && take(text.back())) text.remove_suffix(1);
    text = trim_field(text);
}

/// The length of a mark between degrees, minutes and seconds at the start of the text, 0 for none.
std::size_t mark_length(std::string_view text) {
    constexpr std::array<std::string_view, 12> marks{
        "\xC2\xB0", "\xB0", "\xE2\x80\xB2", "\xE2\x80\xB3", "'", "\"", ":", " ", "\t", "d", "m", "s"};
    for (const std::string_view mark : marks)
        if (text.starts_with(mark)) return mark.size();
    return 0;
}

/// Up to three numbers with marks between and behind them; false for anything else.
bool take_parts(std::string_view text, bool decimal_comma, std::array<double, 3>& parts, std::size_t& count) {
    const char point = decimal_comma ? ',' : '.';
    while (!text.empty()) {
        std::size_t length = 0;
        while (length < text.size() && (is_decimal_digit(text[length]) || text[length] == point)) ++length;
        if (length == 0 || count == parts.size() ||
            !read_number(text.substr(0, length), decimal_comma, parts[count++]))
            return false;
        text.remove_prefix(length);
        while (const std::size_t mark = mark_length(text)) text.remove_prefix(mark);
    }
    return count > 0;
}

/// A size and sign without hemisphere or minus sign.
double take_sign(std::string_view& text) {
    double sign = 1;
    text = trim_field(text);
    take_hemisphere(text, sign);
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        if (text.front() == '-') sign = -sign;
        text.remove_prefix(1);
    }
    text = trim_field(text);
    return sign;
}

}  // namespace

std::string_view trim_field(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    return text;
}

bool is_null_text(std::string_view text) {
    if (!text.empty() && is_decimal_digit(text.front()) && text.find('#') == std::string_view::npos)
        return false;
    if (text.find_first_not_of('*') == std::string_view::npos) return true;
    if (text.find_first_not_of('-') == std::string_view::npos) return true;
    constexpr std::array<std::string_view, 16> words{
        "nan",  "na",   "n/a", "#n/a", "null",   "none",    "nil",      "dummy",
        "void", "-nan", "inf", "-inf", "1.#inf", "1.#qnan", "-1.#qnan", "-1.#ind"};
    if (text.size() > 8) return false;
    return std::any_of(words.begin(), words.end(),
                       [text](std::string_view word) { return equal_ignoring_case(text, word); }) ||
           text == "?";
}

bool read_number(std::string_view text, bool decimal_comma, double& value) {
    if (parse_number(text, value)) return true;
    if (text.size() > 64 || text.empty()) return false;
    std::array<char, 64> copy{};
    std::copy(text.begin(), text.end(), copy.begin());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char& c = copy[i];
        if (c == ',' && decimal_comma) {
            // A comma with nothing behind it ends a list; it is no decimal comma.
            if (i + 1 == text.size() || !is_decimal_digit(copy[i + 1])) return false;
            c = '.';
        } else if (c == 'D' || c == 'd') {
            c = 'E';
        }
    }
    return parse_number(std::string_view(copy.data(), text.size()), value);
}

bool is_degree_minutes(std::string_view text) {
    double value = 0;
    std::array<double, 3> parts{};
    std::size_t count = 0;
    take_sign(text);
    return !read_number(text, false, value) && take_parts(text, false, parts, count) && count >= 2 &&
           parts[1] < 60 && parts[2] < 60;
}

bool read_degree_minutes(std::string_view text, bool decimal_comma, double& degrees) {
    const double sign = take_sign(text);
    std::array<double, 3> parts{};
    std::size_t count = 0;
    if (!take_parts(text, decimal_comma, parts, count)) return false;
    if (count == 1) {
        // DDMM.mmm
        const double whole = std::floor(parts[0] / 100);
        parts = {whole, parts[0] - 100 * whole, 0};
    }
    if (!(parts[1] < 60) || !(parts[2] < 60)) return false;
    degrees = sign * (parts[0] + parts[1] / 60 + parts[2] / 3600);
    return true;
}

bool read_degrees(std::string_view text, bool decimal_comma, double& degrees) {
    if (is_degree_minutes(text)) return read_degree_minutes(text, decimal_comma, degrees);
    const double sign = take_sign(text);
    if (!read_number(text, decimal_comma, degrees)) return false;
    degrees *= sign;
    return true;
}

NullValues::NullValues(const std::vector<double>& nulls)
    : below_(-beyond_any_reading), above_(beyond_any_reading) {
    constexpr double digits_of_files = 1e-7;  // of single precision, in which nulls are often written
    for (const double null : nulls) {
        if (!(std::abs(null) < beyond_any_reading)) continue;
        const double around = digits_of_files * std::abs(null);
        Range range{null - around, null + around};
        if (is_of_nines(null)) {
            const double last = std::nextafter(null + (null < 0 ? -1 : 1), null);
            range = {std::min(range.least, last), std::max(range.greatest, last)};
        }
        ranges_.push_back(range);
        if (range.greatest < 0) below_ = std::max(below_, range.greatest);
        if (range.greatest >= 0) above_ = std::min(above_, range.least);
    }
}

bool NullValues::look_up(double value) const {
    if (!(std::abs(value) < beyond_any_reading)) return true;
    return std::any_of(ranges_.begin(), ranges_.end(), [value](const Range& range) {
        return value >= range.least && value <= range.greatest;
    });
}

bool is_null_value(double value, const std::vector<double>& nulls) {
    return NullValues(nulls).hold(value);
}

}  // namespace anomalis::intake
