#include "intake/formats/row_fields.h"

#include <algorithm>
#include <array>

#include "core/text.h"
#include "intake/formats/field_value.h"

namespace anomalis::intake {

namespace {

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

}  // namespace

std::size_t quoted_length(std::string_view text) {
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] != '"') continue;
        if (i + 1 == text.size() || text[i + 1] != '"') return i + 1;
        ++i;
    }
    return text.size();
}

std::string_view without_quotes(std::string_view field) {
    field = trim_field(field);
    if (field.size() >= 2 && field.front() == '"' && field.back() == '"')
        field = trim_field(field.substr(1, field.size() - 2));
    return field;
}

bool is_table_comment(std::string_view line) {
    const auto first = line.find_first_not_of(" \t");
    return first != std::string_view::npos &&
           std::string_view("#!/\\%").find(line[first]) != std::string_view::npos;
}

void split_separated(std::string_view line, char separator, std::vector<std::string_view>& fields) {
    fields.clear();
    const bool blanks = separator == ' ';
    std::size_t at = 0;
    for (;;) {
        while (at < line.size() && (line[at] == ' ' || (blanks && line[at] == '\t'))) ++at;
        if (blanks && at == line.size()) return;
        std::size_t end = at;
        if (at < line.size() && line[at] == '"') end += quoted_length(line.substr(at));
        while (end < line.size() && !(blanks ? is_blank(line[end]) : line[end] == separator)) ++end;
        fields.push_back(without_quotes(line.substr(at, end - at)));
        if (end == line.size()) return;
        at = end + 1;
    }
}

std::string_view fixed_field(std::string_view line, const SurveyColumn& column) {
    if (column.offset >= line.size()) return {};
    return trim_field(line.substr(column.offset, column.width));
}

void split_row(std::string_view line, const SurveyLayout& layout, std::vector<std::string_view>& fields) {
    if (!layout.fixed_width) return split_separated(line, layout.separator, fields);
    fields.clear();
    for (const SurveyColumn& column : layout.columns) fields.push_back(fixed_field(line, column));
}

std::string_view first_word(std::string_view line) {
    line = trim_field(line);
    return line.substr(0, line.find_first_of(" \t,;"));
}

LineHeader line_header(std::string_view row) {
    row = trim_field(row);
    const std::string_view word = first_word(row);
    constexpr std::array<std::string_view, 7> words{"line",  "tie",     "base",  "test",
                                                    "trend", "special", "random"};
    const bool known = std::any_of(words.begin(), words.end(),
                                   [word](std::string_view one) { return equal_ignoring_case(word, one); });
    if (!known || word.size() == row.size()) return {};
    std::string_view name = without_quotes(row.substr(word.size() + 1));
    while (!name.empty() && std::string_view(",; \t:").find(name.back()) != std::string_view::npos)
        name.remove_suffix(1);
    // A line of names may begin with "line" as well.
    const bool numbered = name.find_first_of("0123456789") != std::string_view::npos;
    if (!numbered || std::count(name.begin(), name.end(), ' ') > 2) return {};
    return {name, equal_ignoring_case(word, "tie")};
}

}  // namespace anomalis::intake
