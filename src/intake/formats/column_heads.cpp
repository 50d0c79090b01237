#include "intake/formats/column_heads.h"

#include <algorithm>
#include <array>
#include <set>

#include "core/text.h"
#include "intake/formats/byte_source.h"
#include "intake/formats/column_units.h"
#include "intake/formats/field_value.h"
#include "intake/formats/row_fields.h"

namespace anomalis::intake {

namespace {

/// What stands behind the marks of a comment.
std::string_view comment_text(std::string_view line) {
    const auto first = line.find_first_not_of(" \t#!/\\%");
    return first == std::string_view::npos ? std::string_view() : line.substr(first);
}

/// Fields between two blanks or more, for names of several words.
void split_wide(std::string_view line, std::vector<std::string_view>& fields) {
    fields.clear();
    line = trim_field(line);
    while (!line.empty()) {
        const auto gap = std::min({line.find("  "), line.find('\t'), line.size()});
        fields.push_back(trim_field(line.substr(0, gap)));
        line = trim_field(line.substr(gap));
    }
}

bool may_be_names(std::span<const std::string_view> fields) {
    double value = 0;
    std::size_t words = 0, numbers = 0;
    for (const std::string_view field : fields) {
        if (read_number(field, false, value)) ++numbers;
        words += std::any_of(field.begin(), field.end(),
                             [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; });
    }
    return words >= 2 && 2 * words >= fields.size() && 5 * numbers <= fields.size();
}

/// The fields of a line that names so many columns, under any of the ways to write such a line.
bool split_names(std::string_view line, const TableShape& shape, std::vector<std::string_view>& fields) {
    const auto fits = [&] { return fields.size() == shape.fields && may_be_names(fields); };
    const std::string_view text = is_table_comment(line) ? comment_text(line) : line;
    for (const char separator : {shape.separator, ',', ';', '\t', ' '}) {
        split_separated(text, separator, fields);
        if (fits()) return true;
        // A separator at the end of the names, but not of the rows.
        if (fields.size() == shape.fields + 1 && fields.back().empty()) {
            fields.pop_back();
            if (fits()) return true;
        }
    }
    split_wide(text, fields);
    if (fits()) return true;
    if (!shape.fixed_width) return false;
    split_by_shape(line, shape, fields);
    return fits();
}

/// "! Date: 1990-07-01" names no columns, however many words it has.
bool is_remark(std::string_view line) {
    return is_table_comment(line) && comment_text(line).find(": ") != std::string_view::npos;
}

bool are_units(std::span<const std::string_view> fields) {
    std::size_t units = 0;
    for (const std::string_view field : fields) {
        const bool bracket = field.size() > 2 && (field.front() == '(' || field.front() == '[');
        const bool known = bracket || unit_of_text(field).has_value();
        if (!known && !is_null_text(field)) return false;
        units += known;
    }
    return units > 0;
}

std::string_view without_brackets(std::string_view text) {
    if (text.size() > 2 &&
        ((text.front() == '(' && text.back() == ')') || (text.front() == '[' && text.back() == ']')))
        text = text.substr(1, text.size() - 2);
    return text;
}

}  // namespace

void take_unit_off(SurveyColumn& column) {
    const std::string& name = column.name;
    if (name.empty() || (name.back() != ')' && name.back() != ']')) return;
    const auto open = name.find_last_of(name.back() == ')' ? '(' : '[');
    if (open == std::string::npos || open == 0) return;
    const std::string inside = name.substr(open + 1, name.size() - open - 2);
    if (!unit_of_text(inside)) return;
    column.unit_text = inside;
    const auto last = name.find_last_not_of(" \t_", open - 1);
    if (last != std::string::npos) column.name.erase(last + 1);
}

void tell_names_apart(SurveyLayout& layout) {
    std::set<std::string> used;
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
        std::string& name = layout.columns[i].name;
        if (name.empty()) name = "Column " + std::to_string(i + 1);
        const std::string plain = name;
        for (int times = 2; !used.insert(name).second; ++times)
            name = plain + " (" + std::to_string(times) + ")";
        if (name != plain)
            layout.remarks.push_back("Two columns are named \"" + plain + "\"; the one at place " +
                                     std::to_string(i + 1) + " is shown as \"" + name + "\".");
    }
}

void name_columns(std::span<const NumberedLine> before_rows, const TableShape& shape, SurveyLayout& layout) {
    std::vector<std::string_view> fields, units;
    constexpr int nearest = 6;  // text between names and rows: rules, units
    int seen = 0;
    for (auto line = before_rows.rbegin(); line != before_rows.rend() && seen < nearest; ++line) {
        if (trim_field(line->text).empty() || is_remark(line->text)) continue;
        ++seen;
        if (units.empty()) {
            split_by_shape(is_table_comment(line->text) ? comment_text(line->text) : line->text, shape,
                           fields);
            if (fields.size() == shape.fields && are_units(fields)) {
                units = fields;
                continue;
            }
        }
        if (!split_names(line->text, shape, fields)) continue;
        layout.names_row = line->number;
        for (std::size_t i = 0; i < shape.fields; ++i) {
            layout.columns[i].name = std::string(fields[i]);
            take_unit_off(layout.columns[i]);
        }
        break;
    }
    for (std::size_t i = 0; i < units.size(); ++i)
        if (!is_null_text(units[i])) layout.columns[i].unit_text = std::string(without_brackets(units[i]));
    tell_names_apart(layout);
}

}  // namespace anomalis::intake
