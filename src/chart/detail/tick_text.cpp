#include "chart/detail/tick_text.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"

namespace anomalis::chart {

namespace {

constexpr double smallest_plain_interval = 0.002;
constexpr int most_digits = 9;
constexpr double finest_plain_interval = 1e-9 * (1.0 - 1e-6);
constexpr double whole_tolerance = 0.001;
constexpr double whole_tick = 1e-6;

int plain_digits(double interval) {
    int digits = 0;
    double scaled = std::abs(interval);
    while (digits < 3 && std::abs(scaled - std::round(scaled)) > whole_tolerance) {
        scaled *= 10.0;
        ++digits;
    }
    return digits;
}

/// For intervals so small that every one of them would pass for the whole number 0.
int fine_digits(double interval) {
    int digits = 0;
    double scaled = std::abs(interval);
    while (digits < most_digits && std::abs(scaled - std::round(scaled)) > whole_tolerance * scaled) {
        scaled *= 10.0;
        ++digits;
    }
    return digits;
}

std::string digits_pattern(int digits) {
    return digits <= 0 ? "0" : "0." + std::string(static_cast<std::size_t>(digits), '0');
}

/// The trailing space of the general text form has no place in a label.
std::string whole_number_text(double value) {
    return format_number(value, "0");
}

/// `digit` times the power `exponent` of 10, written out as far as three zeros go.
std::string decade_text(int digit, double exponent) {
    const std::string leading = std::to_string(digit);
    if (exponent >= 0 && exponent <= 3) return leading + std::string(static_cast<std::size_t>(exponent), '0');
    if (exponent < 0 && exponent >= -3)
        return "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + leading;
    return leading + "x10^" + whole_number_text(exponent);
}

/// The text of 1 to 9 times a power of 10; "" for any other value.
std::string digit_text(double size) {
    const double exponent = std::floor(std::log10(size) + whole_tick);
    const double digit = size / std::pow(10.0, exponent);
    if (!(std::abs(digit - std::round(digit)) < whole_tick * digit)) return "";
    return decade_text(static_cast<int>(std::round(digit)), exponent);
}

std::string base_text(double base) {
    return base == std::round(base) ? whole_number_text(base) : format_number(base, "0.######");
}

std::string logarithmic_text(double value, const AxisTransform& scale) {
    const double size = std::abs(value);
    if (size < whole_tick) return "0";
    const std::string sign = value < 0.0 ? "-" : "";
    if (size < 1.0 - whole_tick) {
        const int cutoff_decade = static_cast<int>(std::floor(std::log10(scale.cutoff()) + whole_tick));
        const int digits = std::min(std::max(0, 1 - cutoff_decade), most_digits);
        return format_number(scale.inverse(value), digits_pattern(digits));
    }
    if (std::abs(size - std::round(size)) > whole_tick) {
        const std::string text = scale.base() == 10.0 ? digit_text(std::abs(scale.inverse(value))) : "";
        return text.empty() ? significant_text(scale.inverse(value), 3) : sign + text;
    }
    const double exponent = std::round(size) - 1 + scale.cutoff_power();
    if (scale.base() == 10.0) return sign + decade_text(1, exponent);
    return sign + "1x" + base_text(scale.base()) + "^" + whole_number_text(exponent);
}

}  // namespace

std::string tick_format(double interval) {
    return digits_pattern(std::abs(interval) < smallest_plain_interval * (1.0 - 1e-9)
                              ? fine_digits(interval)
                              : plain_digits(interval));
}

std::string significant_text(double value, int digits) {
    if (value == 0.0 || !std::isfinite(value)) return "0";
    const int exponent = static_cast<int>(std::floor(std::log10(std::abs(value))));
    if (exponent < -4 || exponent >= 6) {
        const double mantissa = value / std::pow(10.0, exponent);
        return significant_text(mantissa, digits) + "x10^" + whole_number_text(exponent);
    }
    const int decimals = std::max(0, digits - 1 - exponent);
    const std::string pattern =
        decimals == 0 ? "0" : "0." + std::string(static_cast<std::size_t>(decimals), '#');
    // Digits before the point that are too many become zeros.
    const double grid = std::pow(10.0, std::max(0, exponent - digits + 1));
    return format_number(grid > 1.0 ? std::round(value / grid) * grid : value, pattern);
}

std::string resolved_text(double value, double interval) {
    constexpr double most_significant = 15.0;  // of a double
    if (value == 0.0) return "0";
    const double digits = std::floor(std::log10(std::abs(value)) + whole_tick) -
                          std::floor(std::log10(std::abs(interval)) + whole_tick) + 1.0;
    return significant_text(value, static_cast<int>(std::clamp(digits, 1.0, most_significant)));
}

std::string interval_text(double value, double interval) {
    // Nine digits after the point do not tell finer ones apart.
    if (std::abs(interval) < finest_plain_interval) return resolved_text(value, interval);
    return format_number(value, tick_format(interval));
}

std::string tick_text(double value, const AxisTransform& scale, const std::string& format) {
    return scale.logarithmic() ? logarithmic_text(value, scale) : format_number(value, format);
}

}  // namespace anomalis::chart
