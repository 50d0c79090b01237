#include "core/preferences.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

#include "core/numbers.h"
#include "core/settings.h"

namespace anomalis {

namespace {

struct Row {
    std::string_view key;
    int lowest, highest;
    int (*get)(const Preferences&);
    void (*set)(Preferences&, int);
};

constexpr int last_colour = 0xFFFFFF;
constexpr int widest_curve = 6;

constexpr std::array rows{
    Row{"ObservedColour", 0, last_colour, [](const Preferences& p) { return p.observed.colour; },
        [](Preferences& p, int v) { p.observed.colour = v; }},
    Row{"ObservedWidth", 1, widest_curve, [](const Preferences& p) { return p.observed.width; },
        [](Preferences& p, int v) { p.observed.width = v; }},
    Row{"CalculatedColour", 0, last_colour, [](const Preferences& p) { return p.calculated.colour; },
        [](Preferences& p, int v) { p.calculated.colour = v; }},
    Row{"CalculatedWidth", 1, widest_curve, [](const Preferences& p) { return p.calculated.width; },
        [](Preferences& p, int v) { p.calculated.width = v; }},
    Row{"DarkCharts", 0, 1, [](const Preferences& p) { return int{p.dark_charts}; },
        [](Preferences& p, int v) { p.dark_charts = v != 0; }},
    Row{"Legend", 0, 1, [](const Preferences& p) { return int{p.legend}; },
        [](Preferences& p, int v) { p.legend = v != 0; }},
    Row{"Grid", 0, 1, [](const Preferences& p) { return int{p.grid}; },
        [](Preferences& p, int v) { p.grid = v != 0; }},
    Row{"SusceptibilityUnit", 0, 2,
        [](const Preferences& p) { return static_cast<int>(p.susceptibility_unit); },
        [](Preferences& p, int v) { p.susceptibility_unit = static_cast<SusceptibilityUnit>(v); }},
    Row{"AutosaveSeconds", 10, 3600, [](const Preferences& p) { return p.autosave_seconds; },
        [](Preferences& p, int v) { p.autosave_seconds = v; }},
    Row{"Threads", 0, 256, [](const Preferences& p) { return p.threads; },
        [](Preferences& p, int v) { p.threads = v; }},
};

std::optional<int> whole_number(const std::string& text) {
    constexpr double most = 1e9;
    double value = 0;
    if (!parse_number(text, value) || value != std::trunc(value) || std::abs(value) > most) return {};
    return static_cast<int>(value);
}

std::optional<int> stored(const Settings& settings, const Row& row) {
    const std::optional<int> value = whole_number(settings.get(settings_section, row.key));
    if (!value || *value < row.lowest || *value > row.highest) return {};
    return value;
}

}  // namespace

Preferences read_preferences(const Settings& settings) {
    Preferences preferences;
    for (const Row& row : rows)
        if (const auto value = stored(settings, row)) row.set(preferences, *value);
    return preferences;
}

int keep_preferences(const Preferences& preferences, Settings& settings) {
    const Preferences usual;
    int status = 0;
    for (const Row& row : rows) {
        const int value = row.get(preferences);
        if (value == stored(settings, row).value_or(row.get(usual))) continue;
        if (settings.set(settings_section, row.key, std::to_string(value)) != 0) status = -1;
    }
    return status;
}

}  // namespace anomalis
