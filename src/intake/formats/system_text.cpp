#include "intake/formats/system_text.h"

#include <algorithm>
#include <array>
#include <regex>

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

/// The code that a text gives, the outermost of a projection's being the last.
std::string code_in(const std::string& text) {
    static const std::regex code(R"re(EPSG\s*"?\s*[:,]{1,2}\s*"?\s*([0-9]{4,6}))re",
                                 std::regex::icase | std::regex::optimize);
    std::string found;
    for (auto at = std::sregex_iterator(text.begin(), text.end(), code); at != std::sregex_iterator(); ++at)
        found = "EPSG:" + (*at)[1].str();
    return found;
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
    static const std::regex name(R"re([A-Z][A-Za-z0-9() ]* / [A-Za-z ]*zone [0-9]{1,2}[NS]?)re",
                                 std::regex::optimize);
    for (const std::string& line : lines) {
        constexpr std::size_t longest_comment = 500;
        const std::string text = line.substr(0, longest_comment);
        if (const std::string code = code_in(text); !code.empty()) return code;
        std::smatch found;
        if (std::regex_search(text, found, name)) return found.str();
    }
    return "";
}

}  // namespace anomalis::intake
