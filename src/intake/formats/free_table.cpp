#include "intake/formats/free_table.h"

#include <algorithm>

#include "intake/formats/column_heads.h"
#include "intake/formats/field_value.h"
#include "intake/formats/row_fields.h"
#include "intake/formats/system_text.h"
#include "intake/formats/table_reader.h"
#include "intake/formats/table_shape.h"

namespace anomalis::intake {

namespace {

/// Of the lines that are no comments, the least share that must be rows: titles stand before short tables.
constexpr double fewest_rows = 0.3;
/// Comments may fill the head of a file; of the rows so many tell their shape.
constexpr std::size_t lines_for_shape = 600;

bool is_table_line(std::string_view line, bool line_headers) {
    if (trim_field(line).empty() || is_table_comment(line)) return false;
    return !line_headers || line_header(line).name.empty();
}

bool is_row(std::string_view line, const TableShape& shape, std::vector<std::string_view>& fields) {
    split_by_shape(line, shape, fields);
    if (!shape.fixed_width) return fields.size() == shape.fields && is_table_row(fields, shape.decimal_comma);
    return is_table_row(fields, false);
}

/// Numbers of the columns that hold words: dates and names.
void find_text_columns(std::span<const NumberedLine> lines, const TableShape& shape, SurveyLayout& layout) {
    std::vector<std::size_t> words(shape.fields), numbers(shape.fields);
    std::vector<std::string_view> fields;
    double value = 0;
    for (const NumberedLine& line : lines) {
        split_by_shape(line.text, shape, fields);
        if (fields.size() != shape.fields) continue;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (read_number(fields[i], shape.decimal_comma, value) || is_degree_minutes(fields[i])) {
                ++numbers[i];
            } else if (!is_null_text(fields[i])) {
                ++words[i];
            }
        }
    }
    for (std::size_t i = 0; i < shape.fields; ++i) layout.columns[i].text = words[i] > numbers[i];
}

/// Separators at the ends of all rows make a column of nothing.
void drop_empty_end(std::span<const NumberedLine> rows, TableShape& shape, SurveyLayout& layout) {
    std::vector<std::string_view> fields;
    for (const NumberedLine& line : rows) {
        split_by_shape(line.text, shape, fields);
        if (fields.size() == shape.fields && !fields.back().empty()) return;
    }
    if (shape.fields < 3) return;
    --shape.fields;
    layout.columns.pop_back();
}

}  // namespace

std::optional<SurveyLayout> recognise_free_table(const SurveySample& sample, bool line_headers,
                                                 std::string_view format) {
    std::vector<NumberedLine> lines;
    for (std::size_t i = 0; i < sample.lines.size() && lines.size() < lines_for_shape; ++i)
        if (is_table_line(sample.lines[i], line_headers))
            lines.push_back({sample.lines[i], static_cast<long>(i) + 1});
    auto shape = find_table_shape(lines, sample.read_as);
    if (!shape || shape->share < fewest_rows) return {};
    std::vector<std::string_view> fields;
    const auto first = std::find_if(lines.begin(), lines.end(), [&](const NumberedLine& line) {
        return is_row(line.text, *shape, fields);
    });
    if (first == lines.end()) return {};

    SurveyLayout layout;
    layout.path = sample.path;
    layout.format = format;
    layout.encoding = sample.encoding;
    layout.packed = sample.packed;
    layout.separator = shape->separator;
    layout.decimal_comma = shape->decimal_comma;
    layout.fixed_width = shape->fixed_width;
    layout.line_headers = line_headers;
    layout.first_row = first->number;
    layout.columns = shape->places;
    layout.columns.resize(shape->fields);
    find_text_columns({first, lines.end()}, *shape, layout);

    std::vector<NumberedLine> before;
    for (long number = 1; number < first->number; ++number) {
        const std::string& line = sample.lines[static_cast<std::size_t>(number - 1)];
        if (!line_headers || line_header(line).name.empty()) before.push_back({line, number});
    }
    name_columns(before, *shape, layout);
    if (!layout.fixed_width && layout.columns.back().name == "Column " + std::to_string(shape->fields))
        drop_empty_end({first, lines.end()}, *shape, layout);
    std::vector<std::string> comments;
    for (const NumberedLine& line : before)
        if (is_table_comment(line.text)) comments.emplace_back(line.text);
    layout.coordinate_system = system_in_comments(comments);
    return layout;
}

std::unique_ptr<RowReader> FreeTableFormat::open(const SurveyLayout& layout,
                                                 std::span<const std::size_t> wanted,
                                                 const FileStretch* stretch) const {
    return open_table(layout, wanted, table_sorter(layout), stretch);
}

SurveyPreview FreeTableFormat::preview(const SurveyLayout& layout, std::size_t most) const {
    return preview_table(layout, most, *table_sorter(layout));
}

}  // namespace anomalis::intake
