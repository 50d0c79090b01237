#include "core/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "core/decimal_scan.h"
#include "core/failure.h"

namespace anomalis {

namespace {

/// A decimal value: 0.digits times 10 to the `point`.
struct Decimal {
    bool negative = false;
    std::string digits;
    int point = 0;
};

template <class Real>
Decimal to_decimal(Real value, int significant) {
    char buffer[64];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, significant - 1)
            .ptr;
    Decimal result;
    const char* at = buffer;
    if (*at == '-') {
        result.negative = true;
        ++at;
    }
    for (; at != end && *at != 'e'; ++at) {
        if (*at != '.') result.digits += *at;
    }
    int exponent = 0;
    const char* digits = at + 1;
    if (digits < end && *digits == '+') ++digits;
    std::from_chars(digits, end, exponent);
    result.point = exponent + 1;
    const auto last = result.digits.find_last_not_of('0');
    result.digits.erase(last == std::string::npos ? 0 : last + 1);
    return result;
}

std::string fixed_text(const Decimal& value) {
    if (value.point <= 0)
        return "0." + std::string(static_cast<std::size_t>(-value.point), '0') + value.digits;
    const auto point = static_cast<std::size_t>(value.point);
    if (value.digits.size() <= point) return value.digits + std::string(point - value.digits.size(), '0');
    return value.digits.substr(0, point) + "." + value.digits.substr(point);
}

std::string exponent_text(const Decimal& value) {
    const int exponent = value.point - 1;
    std::string text = value.digits.substr(0, 1);
    if (value.digits.size() > 1) text += "." + value.digits.substr(1);
    text += exponent < 0 ? "E-" : "E+";
    const std::string size = std::to_string(std::abs(exponent));
    return text + (size.size() < 2 ? "0" : "") + size;
}

template <class Real>
std::string default_text(Real value, int significant, Real fixed_limit) {
    if (std::isnan(value)) return " NaN";
    if (std::isinf(value)) return value < 0 ? "-Inf" : " Inf";
    const Decimal decimal = to_decimal(value, significant);
    if (decimal.digits.empty()) return " 0";
    const Real size = std::abs(value);
    const bool fixed = size >= static_cast<Real>(1e-4) && size < fixed_limit && decimal.point <= significant;
    return (decimal.negative ? "-" : " ") + (fixed ? fixed_text(decimal) : exponent_text(decimal));
}

/// Adds one unit in the last place of a digit text; a carry lengthens it in front.
bool increment(std::string& digits) {
    for (auto i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return false;
        }
        digits[i] = '0';
    }
    digits.insert(digits.begin(), '1');
    return true;
}

std::string pattern_text(Decimal value, std::string_view pattern) {
    const auto dot = pattern.find('.');
    const std::string_view decimals = dot == std::string_view::npos ? "" : pattern.substr(dot + 1);
    const auto required = static_cast<std::size_t>(std::count(decimals.begin(), decimals.end(), '0'));
    const int places = static_cast<int>(decimals.size());

    // Digits before and after the point, padded on both sides, then cut after `places`.
    std::string digits = value.digits;
    if (value.point < 0) digits.insert(0, static_cast<std::size_t>(-value.point), '0');
    const int point = std::max(value.point, 0);
    const auto kept = static_cast<std::size_t>(point + places);
    const bool up = digits.size() > kept && digits[kept] >= '5';
    digits.resize(kept, '0');
    auto whole = static_cast<std::size_t>(point);
    if (up && increment(digits)) ++whole;

    std::string fraction = digits.substr(whole);
    while (fraction.size() > required && fraction.back() == '0') fraction.pop_back();
    std::string text = whole == 0 ? "0" : digits.substr(0, whole);
    if (!fraction.empty()) text += "." + fraction;
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    return (value.negative && !zero ? "-" : "") + text;
}

template <class Real>
std::string formatted(Real value, std::string_view pattern, int significant) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-Inf" : "Inf";
    return pattern_text(to_decimal(value, significant), pattern);
}

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

std::string number_to_text(float value) {
    return default_text(value, 7, 1e7F);
}

std::string number_to_text(double value) {
    return default_text(value, 15, 1e15);
}

std::string number_to_text(std::int32_t value) {
    return (value < 0 ? "" : " ") + std::to_string(value);
}

std::string format_number(float value, std::string_view pattern) {
    return formatted(value, pattern, 7);
}

std::string format_number(double value, std::string_view pattern) {
    return formatted(value, pattern, 15);
}

std::string format_number(std::int32_t value, std::string_view pattern) {
    return formatted(static_cast<double>(value), pattern, 15);
}

void append_hundredths(std::string& text, double value) {
    // Below this limit the scaled value and the 15 digits that decide a tie differ by less than the margin.
    constexpr double limit = 1e9;
    constexpr double margin = 1e-3;
    const double scaled = std::abs(value) * 100;
    const double whole = std::floor(scaled);
    const bool clear = std::abs(value) < limit && std::abs(scaled - whole - 0.5) > margin;
    if (!clear) {
        text += format_number(value, "0.00");
        return;
    }
    const auto hundredths = static_cast<std::int64_t>(whole) + (scaled - whole > 0.5 ? 1 : 0);
    char buffer[24];
    char* at = buffer;
    if (value < 0 && hundredths != 0) *at++ = '-';
    at = std::to_chars(at, buffer + sizeof buffer, hundredths / 100).ptr;
    *at++ = '.';
    *at++ = static_cast<char>('0' + hundredths / 10 % 10);
    *at++ = static_cast<char>('0' + hundredths % 10);
    text.append(buffer, at);
}

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

std::int32_t round_to_even(double value) {
    const double rounded = value - std::remainder(value, 1.0);
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max()))
        throw Fault(FaultKind::overflow);
    return static_cast<std::int32_t>(rounded);
}

float to_single(double value) {
    const auto single = static_cast<float>(value);
    if (std::isinf(single) && std::isfinite(value)) throw Fault(FaultKind::overflow);
    return single;
}

}  // namespace anomalis
