#include "show/chart_property_bag.h"

#include <utility>

#include "core/settings.h"
#include "core/text.h"

namespace anomalis::show {

namespace {

/// The settings trim their values; a text whose ends are blank keeps them between quotes.
std::string stored_text(const chart::PropertyValue& value) {
    const std::string text = chart::property_to_text(value);
    if (!std::holds_alternative<std::string>(value)) return text;
    const bool bare = std::string(trim_blanks(text)) == text && !text.starts_with('"');
    return bare ? text : '"' + text + '"';
}

std::string_view unquoted(std::string_view text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

ChartPropertyBag::ChartPropertyBag(Settings& settings, std::string section)
    : settings_(settings), section_(std::move(section)) {}

std::string ChartPropertyBag::spelled(std::string_view key) const {
    for (const std::string& known : settings_.keys(section_))
        if (equal_ignoring_case(known, key)) return known;
    return std::string(key);
}

chart::PropertyValue ChartPropertyBag::read_property(std::string_view key,
                                                     const chart::PropertyValue& fallback) const {
    const std::string text = settings_.get(section_, spelled(key));
    if (text == no_setting) return fallback;
    return chart::property_from_text(std::holds_alternative<std::string>(fallback) ? unquoted(text) : text,
                                     fallback);
}

void ChartPropertyBag::write_property(std::string_view key, const chart::PropertyValue& value,
                                      const chart::PropertyValue* default_value) {
    const std::string name = spelled(key);
    const std::string there = settings_.get(section_, name);
    if (there == no_setting && default_value != nullptr && value == *default_value) return;
    const std::string text = stored_text(value);
    if (text != there && settings_.set(section_, name, text) != 0) status_ = -1;
}

}  // namespace anomalis::show
