#include "core/fitting_number.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"

namespace anomalis {

namespace {

constexpr int least_kept_digits = 4, most_mantissa_decimals = 6;

std::string pattern_of(int decimals) {
    return decimals > 0 ? "0." + std::string(static_cast<std::size_t>(decimals), '0') : "0";
}

std::string without_empty_decimals(std::string text) {
    if (text.find('.') == std::string::npos) return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
    return text;
}

/// Digits from the first that is not 0 on.
int digits_of(std::string_view text) {
    const auto first = std::ranges::find_if(text, [](char c) { return c >= '1' && c <= '9'; });
    return static_cast<int>(std::count_if(first, text.end(), [](char c) { return c >= '0' && c <= '9'; }));
}

std::string in_powers_of_ten(double value, int decimals) {
    int power = static_cast<int>(std::floor(std::log10(std::abs(value))));
    std::string mantissa = format_number(value / std::pow(10.0, power), pattern_of(decimals));
    if (std::abs(prefix_number(mantissa)) >= 10) {
        ++power;
        mantissa = format_number(value / std::pow(10.0, power), pattern_of(decimals));
    }
    return without_empty_decimals(std::move(mantissa)) + "e" + std::to_string(power);
}

}  // namespace

std::string fitting_number(std::string_view text, const std::function<bool(const std::string&)>& fits) {
    std::string whole(text);
    double value = 0;
    if (fits(whole) || !parse_number(text, value) || value == 0) return whole;
    const std::size_t point = text.find('.');
    const bool fixed = text.find_first_of("eE") == std::string_view::npos;
    if (fixed && point != std::string_view::npos) {
        for (auto decimals = static_cast<int>(text.size() - point - 1); decimals >= 0; --decimals) {
            std::string shorter = without_empty_decimals(format_number(value, pattern_of(decimals)));
            const bool same = prefix_number(shorter) == value;
            if ((same || digits_of(shorter) >= least_kept_digits) && fits(shorter)) return shorter;
        }
    }
    for (int decimals = most_mantissa_decimals; decimals > 0; --decimals) {
        std::string shorter = in_powers_of_ten(value, decimals);
        if (fits(shorter)) return shorter;
    }
    std::string shortest = in_powers_of_ten(value, 0);
    return shortest.size() < whole.size() ? shortest : whole;
}

}  // namespace anomalis
