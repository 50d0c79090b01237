#include "core/worth_text.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"

namespace anomalis {

std::string text_of_worth(double value, double worth) {
    static const char* const patterns[] = {"0", "0.0", "0.00", "0.000", "0.0000", "0.00000"};
    constexpr int most = 5;
    const int decimals =
        worth > 0 && std::isfinite(worth) ? 1 - static_cast<int>(std::floor(std::log10(worth))) : 1;
    return format_number(value, patterns[std::clamp(decimals, 0, most)]);
}

}  // namespace anomalis
