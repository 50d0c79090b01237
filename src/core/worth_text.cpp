#include "core/worth_text.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"

namespace anomalis {

namespace {

int power_of_ten(double value) {
    return static_cast<int>(std::floor(std::log10(value)));
}

}  // namespace

std::string text_of_worth(double value, double worth) {
    constexpr int digits_of_a_single = 7;  // more than that no parameter of a body has
    int decimals = worth > 0 && std::isfinite(worth) ? 1 - power_of_ten(worth) : 1;
    if (std::abs(value) > 0 && std::isfinite(value))
        decimals = std::min(decimals, digits_of_a_single - 1 - power_of_ten(std::abs(value)));
    constexpr int most_decimals = 12;
    std::string pattern = "0";
    if (decimals > 0)
        pattern += "." + std::string(static_cast<std::size_t>(std::min(decimals, most_decimals)), '0');
    return format_number(value, pattern);
}

}  // namespace anomalis
