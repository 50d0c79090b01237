#include <algorithm>

#include "core/decimal_scan.h"
#include "intake/formats/field_value.h"
#include "intake/formats/row_fields.h"
#include "intake/formats/table_shape.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t fewest_columns = 3;
/// Of the rows a few may be cut or broken.
constexpr double few = 0.02;

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

/// Whether nothing goes on from `at` to the next place: a blank on either side, or a decimal number that a
/// negative one touches ("123.45-99999.9").
bool parts_behind(std::string_view line, std::size_t at) {
    if (at + 1 >= line.size() || is_blank(line[at]) || is_blank(line[at + 1])) return true;
    if ((line[at + 1] != '-' && line[at + 1] != '*') || !(is_decimal_digit(line[at]) || line[at] == '.'))
        return false;
    for (std::size_t i = at + 1; i-- > 0 && !is_blank(line[i]);)
        if (line[i] == '.') return true;
    return false;
}

/// Rows by their characters: digits, and little that no number has.
bool may_be_row(std::string_view line) {
    std::size_t numeric = 0, other = 0, digits = 0;
    for (const char c : line) {
        if (is_blank(c)) continue;
        digits += is_decimal_digit(c);
        (is_decimal_digit(c) || std::string_view("+-.*eE").find(c) != std::string_view::npos ? numeric
                                                                                             : other)++;
    }
    return digits >= 4 && 4 * numeric >= 3 * (numeric + other);
}

/// The first places of those stretches that no field of nearly any row crosses: there fields end.
std::vector<std::size_t> common_ends(const std::vector<std::string_view>& rows) {
    std::size_t longest = 0;
    for (const std::string_view row : rows) longest = std::max(longest, row.size());
    const auto may_cross = static_cast<std::size_t>(few * static_cast<double>(rows.size()));
    std::vector<std::size_t> ends;
    bool in_gap = true;  // blanks before the first field belong to it
    bool any_text = false;
    for (std::size_t at = 0; at < longest; ++at) {
        std::size_t crossing = 0;
        for (const std::string_view row : rows) {
            crossing += !parts_behind(row, at);
            any_text = any_text || (at < row.size() && !is_blank(row[at]));
        }
        const bool gap = crossing <= may_cross;
        if (gap && (!in_gap || any_text)) {
            if (any_text) ends.push_back(at + 1);
            any_text = false;
        }
        in_gap = gap;
    }
    return ends;
}

std::vector<SurveyColumn> columns_to(const std::vector<std::size_t>& ends) {
    std::vector<SurveyColumn> places;
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        SurveyColumn column;
        column.offset = begin;
        column.width = end - begin;
        places.push_back(column);
        begin = end;
    }
    return places;
}

}  // namespace

std::optional<TableShape> find_fixed_columns(std::span<const NumberedLine> lines) {
    std::vector<std::string_view> rows;
    for (const NumberedLine& line : lines)
        if (may_be_row(line.text)) rows.push_back(line.text);
    if (rows.size() < 3 || rows.size() * 2 < lines.size()) return {};
    TableShape shape;
    shape.fixed_width = true;
    shape.places = columns_to(common_ends(rows));
    shape.fields = shape.places.size();
    if (shape.fields < fewest_columns) return {};
    std::vector<std::string_view> fields;
    std::size_t fitting = 0;
    for (const std::string_view row : rows) {
        split_by_shape(row, shape, fields);
        fitting += std::all_of(fields.begin(), fields.end(),
                               [](std::string_view field) { return is_table_value(field, false); });
    }
    shape.share = static_cast<double>(fitting) / static_cast<double>(lines.size());
    return shape;
}

}  // namespace anomalis::intake
