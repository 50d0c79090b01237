#include <algorithm>
#include <array>
#include <string>

#include "core/decimal_scan.h"
#include "core/numbers.h"
#include "core/text.h"
#include "intake/formats/field_value.h"

namespace anomalis::intake {

namespace {

constexpr int first_year = 1800, last_year = 2200;

bool is_leap(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

/// The middle of a day as a decimal year; nothing for a day that is none.
std::optional<double> decimal_year(int year, int month, int day) {
    constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < first_year || year > last_year || month < 1 || month > 12 || day < 1) return {};
    const auto length = [&](int m) {
        return lengths[static_cast<std::size_t>(m - 1)] + (m == 2 && is_leap(year));
    };
    if (day > length(month)) return {};
    int days = day - 1;
    for (int m = 1; m < month; ++m) days += length(m);
    return year + (days + 0.5) / (is_leap(year) ? 366 : 365);
}

/// The year that two digits mean: surveys with digits began about 1950.
int full_year(int year, std::size_t digits) {
    if (digits > 2) return year;
    return year < 50 ? 2000 + year : 1900 + year;
}

int month_of(std::string_view word) {
    constexpr std::array<std::string_view, 12> months{"jan", "feb", "mar", "apr", "may", "jun",
                                                      "jul", "aug", "sep", "oct", "nov", "dec"};
    const auto found = std::find_if(months.begin(), months.end(), [word](std::string_view month) {
        return equal_ignoring_case(word.substr(0, 3), month);
    });
    return found == months.end() || word.size() < 3 ? 0 : static_cast<int>(found - months.begin()) + 1;
}

struct Part {
    std::string_view text;
    int number = -1;  ///< -1 for a word
};

/// Digits and words between other characters; a change from one to the other parts too.
std::vector<Part> parts_of(std::string_view text) {
    std::vector<Part> parts;
    const auto is_letter = [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; };
    for (std::size_t i = 0; i < text.size() && parts.size() < 8;) {
        std::size_t end = i;
        Part part;
        if (is_decimal_digit(text[i])) {
            part.number = 0;
            for (; end < text.size() && is_decimal_digit(text[end]) && end - i < 9; ++end)
                part.number = 10 * part.number + (text[end] - '0');
        } else {
            while (end < text.size() && is_letter(text[end])) ++end;
        }
        if (end == i) {
            ++i;
            continue;
        }
        part.text = text.substr(i, end - i);
        parts.push_back(part);
        i = end;
    }
    return parts;
}

std::optional<double> date_of_digits(int number, std::size_t digits) {
    const int high = number / 10000, middle = number / 100 % 100, low = number % 100;
    if (digits == 8) {
        if (const auto found = decimal_year(high, middle, low)) return found;
        const int year = number % 10000, day = number / 1000000, month = number / 10000 % 100;
        if (const auto found = decimal_year(year, month, day)) return found;
        return decimal_year(year, day, month);
    }
    if (digits == 6 || digits == 5) {
        if (const auto found = decimal_year(full_year(high, 2), middle, low)) return found;
        return decimal_year(full_year(low, 2), middle, high);
    }
    return {};
}

std::optional<double> date_of_parts(const std::vector<Part>& parts) {
    const Part &a = parts[0], &b = parts[1], &c = parts[2];
    if (a.number >= 0 && b.number < 0 && c.number >= 0)
        return decimal_year(full_year(c.number, c.text.size()), month_of(b.text), a.number);
    if (a.number < 0 && b.number >= 0 && c.number >= 0)
        return decimal_year(full_year(c.number, c.text.size()), month_of(a.text), b.number);
    if (a.number < 0 || b.number < 0 || c.number < 0) return {};
    if (a.text.size() == 4) return decimal_year(a.number, b.number, c.number);
    const int year = full_year(c.number, c.text.size());
    if (const auto found = decimal_year(year, b.number, a.number)) return found;
    if (const auto found = decimal_year(year, a.number, b.number)) return found;
    return c.text.size() == 4 ? std::nullopt : decimal_year(full_year(a.number, 2), b.number, c.number);
}

}  // namespace

std::optional<double> read_date(std::string_view text) {
    text = trim_field(text);
    double value = 0;
    if (parse_number(text, value)) {
        if (value < 0) return {};
        // A decimal year, or the digits of a day.
        if (value >= first_year && value <= last_year) return value;
        if (value >= 1e8 || value != static_cast<int>(value)) return {};
        const std::size_t digits = value >= 1e6 ? 8 : value >= 1e5 ? 6 : value >= 1e4 ? 5 : 0;
        return date_of_digits(static_cast<int>(value), digits);
    }
    const std::vector<Part> parts = parts_of(text);
    if (parts.size() < 3) return {};
    return date_of_parts(parts);
}

}  // namespace anomalis::intake
