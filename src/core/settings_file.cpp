#include "core/settings_file.h"

#include <charconv>

#include "core/failure.h"

namespace anomalis {

namespace {

constexpr std::string_view hex_digits = "0123456789abcdef";

/// Bytes above 127 belong to UTF-8 letters and stay.
std::string escaped(std::string_view text, std::string_view structure) {
    std::string result;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code >= 32 && code != 127 && c != '\\' && structure.find(c) == std::string_view::npos) {
            result += c;
        } else {
            result += {'\\', 'x', hex_digits[code / 16], hex_digits[code % 16]};
        }
    }
    return result;
}

bool unescape(std::string_view text, std::string& result) {
    result.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (static_cast<unsigned char>(text[i]) < 32) return false;
        if (text[i] != '\\') {
            result += text[i];
            continue;
        }
        if (i + 3 >= text.size() || text[i + 1] != 'x') return false;
        unsigned code = 0;
        const char* first = text.data() + i + 2;
        if (std::from_chars(first, first + 2, code, 16).ptr != first + 2) return false;
        result += static_cast<char>(code);
        i += 3;
    }
    return true;
}

/// "[location root/section]"
bool parse_place(std::string_view line, SettingsPlace& place) {
    if (line.size() < 5 || line.back() != ']' || line[2] != ' ') return false;
    if (line[1] != '0' && line[1] != '1') return false;
    place.location = line[1] - '0';
    const std::string_view names = line.substr(3, line.size() - 4);
    const auto slash = names.find('/');
    if (slash == std::string_view::npos) return false;
    return unescape(names.substr(0, slash), place.root) && unescape(names.substr(slash + 1), place.section);
}

}  // namespace

std::string settings_text(const SettingsTable& values) {
    std::string text =
        "# Settings of Anomalis. Written by the program; values changed here are read at its next start.\n";
    for (const auto& [place, keys] : values) {
        text += "\n[" + std::to_string(place.location) + " " + escaped(place.root, "/") + "/" +
                escaped(place.section, "/") + "]\n";
        for (const auto& [key, value] : keys) text += escaped(key, "=[#") + "=" + escaped(value, "") + "\n";
    }
    return text;
}

SettingsTable parse_settings(std::string_view text) {
    SettingsTable values;
    std::map<std::string, std::string>* keys = nullptr;
    for (long number = 1; !text.empty(); ++number) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line.empty() || line.front() == '#') continue;

        bool good = false;
        if (line.front() == '[') {
            SettingsPlace place;
            good = parse_place(line, place);
            if (good) keys = &values[place];
        } else if (const auto equals = line.find('='); equals != std::string_view::npos && keys) {
            std::string key, value;
            good = unescape(line.substr(0, equals), key) && unescape(line.substr(equals + 1), value);
            if (good) (*keys)[key] = value;
        }
        if (!good) throw Fault("line " + std::to_string(number) + " is not a setting");
    }
    return values;
}

}  // namespace anomalis
