#include "chart/property_bag.h"

#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::chart {

namespace {

std::string number_text(auto value) {
    return std::string(trim_blanks(number_to_text(value)));
}

std::string font_text(const Font& font) {
    std::string name = font.name;
    // The name must stay one field.
    for (char& c : name)
        if (c == ';' || static_cast<unsigned char>(c) < 0x20) c = ' ';
    return name + ";" + number_text(font.size) + ";" + flag_to_text(font.bold) + ";" +
           flag_to_text(font.italic);
}

std::vector<std::string> fields_of(std::string_view text) {
    std::vector<std::string> fields(1);
    for (const char c : text) {
        if (c == ';')
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

PropertyValue font_from(std::string_view text, const Font& fallback) {
    const std::vector<std::string> fields = fields_of(text);
    if (fields.size() != 4 || fields[0].empty() || !is_numeric(fields[1])) return fallback;
    const double size = prefix_number(fields[1]);
    if (!(size > 0.0)) return fallback;
    return Font{fields[0], size, text_to_flag(fields[2]), text_to_flag(fields[3])};
}

}  // namespace

std::string property_to_text(const PropertyValue& value) {
    return std::visit(
        [](const auto& held) -> std::string {
            using Held = std::remove_cvref_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, bool>)
                return flag_to_text(held);
            else if constexpr (std::is_same_v<Held, std::string>)
                return held;
            else if constexpr (std::is_same_v<Held, Font>)
                return font_text(held);
            else
                return number_text(held);
        },
        value);
}

PropertyValue property_from_text(std::string_view text, const PropertyValue& fallback) {
    return std::visit(
        [&](const auto& usual) -> PropertyValue {
            using Held = std::remove_cvref_t<decltype(usual)>;
            if constexpr (std::is_same_v<Held, std::string>) {
                return std::string(text);
            } else if constexpr (std::is_same_v<Held, Font>) {
                return font_from(text, usual);
            } else if constexpr (std::is_same_v<Held, bool>) {
                return text.empty() ? usual : text_to_flag(text);
            } else {
                if (!is_numeric(text)) return usual;
                const double number = prefix_number(text);
                if (std::abs(number) > static_cast<double>(std::numeric_limits<Held>::max())) return usual;
                if (std::is_same_v<Held, std::int32_t> && number != std::round(number)) return usual;
                return static_cast<Held>(number);
            }
        },
        fallback);
}

}  // namespace anomalis::chart
