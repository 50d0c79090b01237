#include "intake/report_words.h"

#include <cmath>

#include "core/numbers.h"
#include "intake/row_facts.h"

namespace anomalis::intake {

std::string short_number(double value) {
    const double size = std::abs(value);
    if (!std::isfinite(value)) return "beyond all numbers";
    if (size >= 100 || size == 0) return format_number(value, "0");
    if (size >= 1) return format_number(value, "0.#");
    const double place = std::pow(10.0, std::floor(std::log10(size)) - 1);
    return shortest_text(static_cast<float>(std::round(value / place) * place));
}

std::string metres(double value) {
    return short_number(value) + " m";
}

std::string length_text(double length) {
    return length >= 1000 ? format_number(length / 1000, "0.0") + " km" : metres(length);
}

std::string counted(long count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string value_text(double value, std::string_view channel) {
    return shortest_text(value) + " " + std::string(unit_of_channel(channel));
}

}  // namespace anomalis::intake
