#include "intake/formats/system_text.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "core/text.h"
#include "intake/formats/field_value.h"

namespace anomalis::intake {

namespace {

void replace_words(std::string& text, std::string_view words, std::string_view by) {
    const auto found = text.find(words);
    if (found != std::string::npos) text.replace(found, words.size(), by);
}

/// The name of a record PROJ: up to two blanks, with the words that registers of systems use.
std::string name_of_record(std::string_view record) {
    record = trim_field(record);
    const auto gap = std::min(record.find("  "), record.find('\t'));
    std::string name(trim_field(record.substr(0, gap)));
    replace_words(name, "Map Grid of Australia", "MGA");
    replace_words(name, "Australian Map Grid", "AMG");
    return name;
}

constexpr std::string_view digits = "0123456789";

/// Behind "EPSG": "EPSG:28355", "EPSG::28355", "EPSG\",\"28355\"". "" for none.
std::string code_number(std::string_view text) {
    constexpr std::string_view around = " \t\"";
    constexpr std::size_t most_marks = 2, fewest = 4, most = 6;
    const auto skip = [&text](std::string_view characters, std::size_t at_most = std::string_view::npos) {
        const std::size_t run = std::min({text.find_first_not_of(characters), text.size(), at_most});
        text.remove_prefix(run);
        return run;
    };
    skip(around);
    if (skip(":,", most_marks) == 0) return "";
    skip(around);
    const std::string_view number =
        text.substr(0, std::min({text.find_first_not_of(digits), text.size(), most}));
    return number.size() >= fewest ? std::string(number) : "";
}

/// The code that a text gives, the outermost of a projection's being the last.
std::string code_in(std::string_view text) {
    constexpr std::string_view authority = "EPSG";
    std::string found;
    for (std::size_t at = 0; at + authority.size() < text.size(); ++at) {
        if (!equal_ignoring_case(text.substr(at, authority.size()), authority)) continue;
        const std::string number = code_number(text.substr(at + authority.size()));
        if (!number.empty()) found = "EPSG:" + number;
    }
    return found;
}

constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

/// A name such as "GDA94 / MGA zone 55" or "WGS 84 / UTM zone 54S" about the bar at `bar`. "" for none.
std::string name_about(std::string_view text, std::size_t bar) {
    constexpr std::string_view capitals = letters.substr(0, 26), zone = "zone ";
    const std::string datum_characters = std::string(letters) + std::string(digits) + "() ";
    const std::size_t before = text.substr(0, bar).find_last_not_of(datum_characters);
    const std::size_t first = text.find_first_of(capitals, before == std::string_view::npos ? 0 : before + 1);
    if (first >= bar) return "";
    const std::size_t after = bar + 3;
    const std::size_t at = text.find(zone, after);
    if (at == std::string_view::npos) return "";
    if (text.substr(after, at - after).find_first_not_of(std::string(letters) + " ") !=
        std::string_view::npos)
        return "";
    constexpr std::size_t most_digits = 2;
    std::size_t end = at + zone.size();
    const std::size_t begin = end;
    while (end < text.size() && end < begin + most_digits && digits.find(text[end]) != std::string_view::npos)
        ++end;
    if (end == begin) return "";
    if (end < text.size() && (text[end] == 'N' || text[end] == 'S')) ++end;
    return std::string(text.substr(first, end - first));
}

bool is_projection_text(std::string_view text) {
    constexpr std::array<std::string_view, 6> words{"PROJCS[",  "GEOGCS[",  "PROJCRS[",
                                                    "GEOGCRS[", "GEODCRS[", "COMPD_CS["};
    return std::any_of(words.begin(), words.end(),
                       [text](std::string_view word) { return text.starts_with(word); });
}

}  // namespace

std::string system_of_metadata(std::span<const std::string> lines) {
    constexpr std::size_t longest_text = 20000;
    std::string whole;
    for (const std::string& line : lines) {
        const std::string_view text = trim_field(line);
        if (text.size() > 4 && equal_ignoring_case(text.substr(0, 4), "PROJ") && !is_projection_text(text) &&
            text[4] != '=')
            return name_of_record(text.substr(4));
        if (whole.size() < longest_text) whole += std::string(text);
    }
    if (const std::string code = code_in(whole.substr(0, longest_text)); !code.empty()) return code;
    return is_projection_text(whole) ? whole : "";
}

std::string system_in_comments(std::span<const std::string> lines) {
    constexpr std::size_t longest_comment = 500;
    for (const std::string& line : lines) {
        const std::string_view text = std::string_view(line).substr(0, longest_comment);
        if (const std::string code = code_in(text); !code.empty()) return code;
        for (auto bar = text.find(" / "); bar != std::string_view::npos; bar = text.find(" / ", bar + 1))
            if (const std::string name = name_about(text, bar); !name.empty()) return name;
    }
    return "";
}

}  // namespace anomalis::intake
