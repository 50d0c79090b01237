#include "diagnostics/settings_facts.h"

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "core/settings_file.h"
#include "core/text.h"

namespace anomalis::diagnostics {

namespace {

void append_location(const SettingsTable& values, int location, std::vector<std::string>& lines) {
    for (const auto& [place, keys] : values) {
        if (place.location != location || place.root != settings_root) continue;
        for (const auto& [key, value] : keys)
            lines.push_back((place.section.empty() ? "" : place.section + "\\") + key + " = " +
                            single_line(value));
    }
}

}  // namespace

std::vector<std::string> settings_lines(const std::string& settings_path) {
    SettingsTable values;
    std::vector<std::string> lines{"Settings file: " +
                                   (settings_path.empty() ? "none" : single_line(settings_path))};
    try {
        if (!settings_path.empty() && !file_exists(settings_path).empty())
            values = parse_settings(read_whole_file(settings_path));
    } catch (const std::exception& failure) {
        lines.push_back("The settings file cannot be read: " + fault_text(failure));
    }
    lines.push_back("Registry Keys from VB: " + std::string(settings_root));
    append_location(values, 1, lines);
    lines.push_back("Registry Keys from BrightApp: " + std::string(settings_root));
    append_location(values, 0, lines);
    return lines;
}

}  // namespace anomalis::diagnostics
