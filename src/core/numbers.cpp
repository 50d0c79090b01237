#include "core/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "core/append_number.h"
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

std::string without_sign_blank(std::string text) {
    if (text.front() == ' ') text.erase(0, 1);
    return text;
}

template <class Real>
std::string round_trip(Real value) {
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
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

std::string pattern_text(const Decimal& value, std::string_view pattern) {
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

std::string shortest_text(float value) {
    return without_sign_blank(number_to_text(value));
}

std::string shortest_text(double value) {
    return without_sign_blank(number_to_text(value));
}

std::string shortest_text(std::int32_t value) {
    return std::to_string(value);
}

std::string round_trip_text(float value) {
    return round_trip(value);
}

std::string round_trip_text(double value) {
    return round_trip(value);
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
    append_fixed(text, value, 2);
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
