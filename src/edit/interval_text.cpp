#include "edit/interval_text.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "core/worth_text.h"

namespace anomalis::edit {

namespace {

constexpr double longest = 99999;
constexpr double lopsided = 1.2;  // one side more than a fifth longer than the other

/// The uncertainty that an interval tells: half of one with two sides, of a bound a tenth of itself.
double worth_of(const FittedParameter& p) {
    if (std::isfinite(p.lower) && std::isfinite(p.upper)) return (p.upper - p.lower) / 2;
    return std::abs(std::isfinite(p.lower) ? p.lower : p.upper) / 10;
}

std::string size_text(double size) {
    if (size > longest) return "1e" + format_number(std::round(std::log10(size)), "0");
    return text_of_worth(size, size);
}

}  // namespace

std::string interval_mark(const FittedParameter& p) {
    const bool below = std::isfinite(p.upper), above = std::isfinite(p.lower);
    if (!below && !above) return p.at_limit ? "at limit" : "±?";
    if (!above) return "<" + text_of_worth(p.upper, worth_of(p));
    if (!below) return ">" + text_of_worth(p.lower, worth_of(p));
    const double value = static_cast<double>(p.value);
    const double down = value - p.lower, up = p.upper - value;
    const auto [less, more] = std::minmax(down, up);
    if (less < 0 || more > lopsided * less) {
        const double worth = worth_of(p);
        return "-" + text_of_worth(down, worth) + " +" + text_of_worth(up, worth);
    }
    return "±" + size_text((p.upper - p.lower) / 2);
}

FittedParameter in_unit(FittedParameter p, double factor) {
    if (factor == 1) return p;
    p.value = static_cast<float>(static_cast<double>(p.value) * factor);
    p.lower *= factor;
    p.upper *= factor;
    return p;
}

std::string interval_words(const FittedParameter& p) {
    const bool below = std::isfinite(p.upper), above = std::isfinite(p.lower);
    if (!below && !above) return p.at_limit ? "held by its limit" : "not determined";
    const double worth = worth_of(p);
    if (!above) return "below " + text_of_worth(p.upper, worth);
    if (!below) return "above " + text_of_worth(p.lower, worth);
    return text_of_worth(p.lower, worth) + " to " + text_of_worth(p.upper, worth);
}

}  // namespace anomalis::edit
