#include <algorithm>
#include <charconv>
#include <cmath>

#include "core/decimal_scan.h"
#include "core/failure.h"
#include "core/numbers.h"

namespace anomalis {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// The length of the number that starts the text: sign, digits with one point, exponent; 0 if none.
std::size_t number_length(std::string_view text) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    std::size_t digits = 0;
    bool point = false;
    for (; i < text.size(); ++i) {
        if (is_decimal_digit(text[i])) {
            ++digits;
        } else if (text[i] == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (digits == 0) return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
        if (j < text.size() && is_decimal_digit(text[j])) {
            while (j < text.size() && is_decimal_digit(text[j])) ++j;
            i = j;
        }
    }
    return i;
}

/// Whether a number that does not fit a double is too small, not too large: its first digit above 0 stands
/// behind the point once the exponent has moved it.
bool too_small(std::string_view number) {
    const auto mark = std::min(number.find_first_of("eE"), number.size());
    const std::string_view digits = number.substr(0, mark);
    const auto point = std::min(digits.find('.'), digits.size());
    const auto first = digits.find_first_of("123456789");
    std::string_view exponent = number.substr(std::min(mark + 1, number.size()));
    if (!exponent.empty() && exponent.front() == '+') exponent.remove_prefix(1);
    long long shift = 0;
    const auto error = std::from_chars(exponent.data(), exponent.data() + exponent.size(), shift).ec;
    if (error == std::errc::result_out_of_range) return exponent.front() == '-';
    return static_cast<double>(point) - static_cast<double>(first) + static_cast<double>(shift) <= 0;
}

/// The whole text as a number without a plus sign in front. The system's conversion takes "inf" and "nan"
/// too, so what follows the sign must be a digit or the point.
bool convert(std::string_view number, double& value) {
    const std::size_t first = !number.empty() && number.front() == '-' ? 1 : 0;
    if (first == number.size() || !(is_decimal_digit(number[first]) || number[first] == '.')) return false;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (end != number.data() + number.size()) return false;
    if (error == std::errc()) return true;
    // An underflow is a number, an overflow is none.
    value = 0;
    return error == std::errc::result_out_of_range && too_small(number);
}

std::string_view without_plus(std::string_view number) {
    if (number.size() > 1 && number[0] == '+' && number[1] != '-') number.remove_prefix(1);
    return number;
}

}  // namespace

bool parse_number(std::string_view text, double& value) {
    while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
    const char* const end = text.data() + text.size();
    return (!text.empty() && scan_decimal(text.data(), end, value) == end) ||
           convert(without_plus(text), value);
}

bool is_numeric(std::string_view text) {
    double value = 0;
    return parse_number(text, value);
}

std::optional<float> parse_single(std::string_view text) {
    double value = 0;
    if (!parse_number(text, value)) return {};
    const auto single = static_cast<float>(value);
    return std::isfinite(single) ? std::optional(single) : std::nullopt;
}

double prefix_number(std::string_view text) {
    std::string packed;
    for (const char c : text) {
        if (is_blank(c)) continue;
        if (!is_decimal_digit(c) && std::string_view("+-.eE").find(c) == std::string_view::npos) break;
        packed += c;
    }
    const std::string_view number(packed.data(), number_length(packed));
    double value = 0;
    if (!number.empty() && !convert(without_plus(number), value)) throw Fault(FaultKind::overflow);
    return value;
}

}  // namespace anomalis
