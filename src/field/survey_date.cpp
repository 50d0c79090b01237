#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"
#include "field/main_field.h"

namespace anomalis::field {

namespace {

bool all_digits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Year, month and day of "1990-07-01", "1990/7/1" or "19900701".
std::optional<std::array<int, 3>> parts_of(std::string_view text) {
    std::array<std::string_view, 3> parts;
    constexpr std::size_t packed = 8;
    if (text.size() == packed && all_digits(text)) {
        parts = {text.substr(0, 4), text.substr(4, 2), text.substr(6)};
    } else {
        const std::size_t first = text.find_first_of("-/");
        const std::size_t second =
            first == std::string_view::npos ? first : text.find(text[first], first + 1);
        if (second == std::string_view::npos) return {};
        parts = {text.substr(0, first), text.substr(first + 1, second - first - 1), text.substr(second + 1)};
    }
    std::array<int, 3> numbers{};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        constexpr std::size_t year_digits = 4, day_digits = 2;
        const bool fits = i == 0 ? parts[i].size() == year_digits : parts[i].size() <= day_digits;
        if (!fits || !all_digits(parts[i])) return {};
        double number = 0;
        parse_number(parts[i], number);
        numbers[i] = static_cast<int>(number);
    }
    return numbers;
}

double year_of_day(const std::array<int, 3>& parts, std::string_view text) {
    using namespace std::chrono;
    const year_month_day date{year{parts[0]}, month{static_cast<unsigned>(parts[1])},
                              day{static_cast<unsigned>(parts[2])}};
    if (!date.ok()) throw Fault("There is no such day in the calendar: " + std::string(text));
    const sys_days start = sys_days{date.year() / January / 1};
    const sys_days next = sys_days{(date.year() + years{1}) / January / 1};
    return parts[0] + static_cast<double>((sys_days{date} - start).count()) /
                          static_cast<double>((next - start).count());
}

}  // namespace

double year_of_date(std::string_view text) {
    const std::string_view trimmed = trim_blanks(text);
    if (const auto parts = parts_of(trimmed)) return year_of_day(*parts, trimmed);
    double year = 0;
    constexpr double latest = 9999;
    if (!parse_number(trimmed, year) || year < 1 || year > latest)
        throw Fault("No date: \"" + std::string(trimmed) +
                    "\". It is a day such as 1990-07-01 or a decimal year such as 1990.5");
    return year;
}

}  // namespace anomalis::field
