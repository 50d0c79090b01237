#include "intake/formats/gdf2_rows.h"

#include <algorithm>
#include <array>
#include <map>

#include "core/decimal_scan.h"
#include "core/failure.h"
#include "core/text.h"
#include "intake/formats/field_value.h"
#include "intake/formats/row_fields.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t type_bytes = 4;
/// Of the rows, for a way to read them to be right.
constexpr double most_rows = 0.9;
constexpr std::size_t rows_for_fitting = 600;

bool is_word(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; });
}

std::string_view type_of_row(std::string_view line) {
    const std::string_view word = first_word(line);
    return word.size() <= type_bytes && is_word(word) ? word : std::string_view();
}

bool is_comment_type(std::string_view type) {
    constexpr std::array<std::string_view, 4> types{"COMM", "PROJ", "TRNS", "DEFN"};
    return std::any_of(types.begin(), types.end(),
                       [type](std::string_view one) { return equal_ignoring_case(type, one); });
}

bool holds_value(std::string_view field, const SurveyColumn& column) {
    double value = 0;
    return column.text || is_null_text(field) || read_number(field, false, value) || is_degree_minutes(field);
}

/// The columns as defined, with one for the type of the record where rows begin with it.
std::vector<SurveyColumn> defined_columns(const Gdf2Record& record, bool typed) {
    std::vector<SurveyColumn> columns;
    std::size_t offset = 0;
    const auto place = [&](SurveyColumn column, std::size_t width) {
        column.offset = offset;
        column.width = width;
        offset += width;
        columns.push_back(std::move(column));
    };
    if (typed) {
        SurveyColumn type;
        type.name = "RT";
        type.text = true;
        place(type, std::max(record.type_width, type_bytes));
    }
    for (const Gdf2Field& field : record.fields) {
        SurveyColumn column;
        column.name = field.name;
        column.description = field.long_name;
        if (!field.comment.empty())
            column.description += (column.description.empty() ? "" : ", ") + field.comment;
        column.unit_text = field.unit;
        column.nulls = field.nulls;
        column.text = field.kind == Gdf2Kind::text;
        place(std::move(column), field.width);
    }
    return columns;
}

/// All columns moved by so many bytes; what the first loses in front is cut off it.
bool shift_columns(std::vector<SurveyColumn>& columns, std::ptrdiff_t shift) {
    for (SurveyColumn& column : columns) {
        const auto begin = static_cast<std::ptrdiff_t>(column.offset) + shift;
        const auto end = begin + static_cast<std::ptrdiff_t>(column.width);
        if (end <= 0) return false;
        column.offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(begin, 0));
        column.width = static_cast<std::size_t>(end) - column.offset;
    }
    return true;
}

/// Whether a boundary between two fields of fixed width goes through a number.
bool cuts_number(std::string_view line, std::size_t at) {
    const auto is_part = [](char c) { return is_decimal_digit(c) || c == '.'; };
    return at > 0 && at < line.size() && is_part(line[at - 1]) && is_part(line[at]);
}

bool row_fits(std::string_view line, const SurveyLayout& layout, std::vector<std::string_view>& fields) {
    split_row(line, layout, fields);
    if (fields.size() < layout.columns.size()) return false;
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
        if (!holds_value(fields[i], layout.columns[i])) return false;
        if (layout.fixed_width && cuts_number(line, layout.columns[i].offset)) return false;
    }
    return true;
}

double share_of_fitting(const std::vector<std::string_view>& rows, const SurveyLayout& layout) {
    std::vector<std::string_view> fields;
    const auto fitting = std::count_if(rows.begin(), rows.end(),
                                       [&](std::string_view row) { return row_fits(row, layout, fields); });
    return static_cast<double>(fitting) / static_cast<double>(rows.size());
}

/// The length that most rows have.
std::size_t usual_length(const std::vector<std::string_view>& rows) {
    std::map<std::size_t, int> counts;
    for (const std::string_view row : rows) ++counts[row.size()];
    return std::max_element(counts.begin(), counts.end(),
                            [](const auto& a, const auto& b) { return a.second < b.second; })
        ->first;
}

std::string separator_words(char separator) {
    return separator == '\t'  ? "tabs"
           : separator == ',' ? "commas"
           : separator == ';' ? "semicolons"
                              : "blanks";
}

/// Tries the ways to read the rows, the declared one first; the first that fits nearly all is taken, or the
/// one that fits most.
class Fitting {
  public:
    Fitting(const Gdf2Record& record, const std::vector<std::string_view>& rows, SurveyLayout& layout)
        : record_(record), rows_(rows), layout_(layout) {}

    bool find(bool typed) {
        const std::vector<SurveyColumn> defined = defined_columns(record_, typed);
        const std::size_t total = defined.back().offset + defined.back().width;
        const auto length = static_cast<std::ptrdiff_t>(usual_length(rows_));
        try_widths(defined, 0);
        // The declared type, or blanks in front of the first number, are missing.
        if (record_.type_field && !typed)
            try_widths(defined, static_cast<std::ptrdiff_t>(record_.type_width));
        try_widths(defined, length - static_cast<std::ptrdiff_t>(total));
        for (const char separator : {'\t', ',', ';', ' '}) try_separator(defined, separator);
        constexpr double half = 0.5;
        if (share_ < half) return false;
        layout_.columns = best_.columns;
        layout_.fixed_width = best_.fixed_width;
        layout_.separator = best_.separator;
        if (!declared_)
            layout_.remarks.push_back(
                layout_.fixed_width
                    ? "The rows begin elsewhere than the definition says: its widths are counted from the "
                      "end."
                    : "The rows do not have the widths of the definition: their fields are parted at " +
                          separator_words(layout_.separator) + ".");
        return true;
    }

  private:
    void try_widths(std::vector<SurveyColumn> columns, std::ptrdiff_t shift) {
        if (shift != 0 && !shift_columns(columns, shift)) return;
        SurveyLayout layout = layout_;
        layout.fixed_width = true;
        layout.columns = std::move(columns);
        take(layout, shift == 0);
    }
    void try_separator(std::vector<SurveyColumn> columns, char separator) {
        for (SurveyColumn& column : columns) column.offset = column.width = 0;
        SurveyLayout layout = layout_;
        layout.separator = separator;
        layout.columns = std::move(columns);
        take(layout, false);
    }
    void take(const SurveyLayout& layout, bool declared) {
        if (share_ >= most_rows) return;
        const double share = share_of_fitting(rows_, layout);
        if (share <= share_) return;
        share_ = share;
        best_ = layout;
        declared_ = declared;
    }

    const Gdf2Record& record_;
    const std::vector<std::string_view>& rows_;
    SurveyLayout& layout_;
    SurveyLayout best_;
    double share_ = 0;
    bool declared_ = false;
};

struct SampledRows {
    std::vector<std::string_view> rows;
    long first_line = 0;
    bool typed = false;
    std::string_view stranger;  ///< a row of a type that is not defined
    long stranger_line = 0;
};

SampledRows rows_of(const Gdf2Definition& definition, const SurveySample& sample) {
    SampledRows found;
    const Gdf2Record& record = *definition.data();
    found.typed = !record.type.empty() &&
                  std::any_of(sample.lines.begin(), sample.lines.end(), [&](const std::string& line) {
                      return equal_ignoring_case(type_of_row(line), record.type);
                  });
    for (std::size_t i = 0; i < sample.lines.size(); ++i) {
        const std::string& line = sample.lines[i];
        const RowUse use = gdf2_row_use(definition, found.typed, line);
        if (use == RowUse::unknown && found.stranger_line == 0) {
            found.stranger = line;
            found.stranger_line = static_cast<long>(i) + 1;
        }
        if (use != RowUse::row) continue;
        if (found.rows.size() == rows_for_fitting) break;
        if (found.rows.empty()) found.first_line = static_cast<long>(i) + 1;
        found.rows.push_back(line);
    }
    return found;
}

}  // namespace

RowUse gdf2_row_use(const Gdf2Definition& definition, bool typed, std::string_view line) {
    if (trim_field(line).empty()) return RowUse::passed_over;
    const std::string_view type = type_of_row(line);
    const Gdf2Record& data = *definition.data();
    if (type.empty()) return RowUse::row;
    if (is_comment_type(type)) return RowUse::passed_over;
    if (equal_ignoring_case(type, data.type)) return RowUse::row;
    if (definition.find(type) != nullptr) return RowUse::passed_over;
    // Where rows bear no type, the first word is a value of a text field.
    const bool text_first = !data.fields.empty() && data.fields.front().kind == Gdf2Kind::text;
    return typed || (data.type_field && !text_first) ? RowUse::unknown : RowUse::row;
}

bool fit_gdf2_rows(const Gdf2Definition& definition, const SurveySample& sample, SurveyLayout& layout) {
    const Gdf2Record& record = *definition.data();
    const SampledRows found = rows_of(definition, sample);
    if (found.rows.empty()) {
        if (found.stranger_line > 0)
            throw Fault(sample.path + ", line " + std::to_string(found.stranger_line) +
                        ": a record of type \"" + std::string(first_word(found.stranger)) + "\", but " +
                        sample.definition_path + " defines records of type \"" + record.type +
                        "\". Correct the type there or here.");
        throw Fault(sample.path + " holds no row of data.");
    }
    layout.first_row = found.first_line;
    if (found.typed) layout.record_type = record.type;
    if (!Fitting(record, found.rows, layout).find(found.typed)) return false;
    const std::size_t end = layout.columns.back().offset + layout.columns.back().width;
    if (layout.fixed_width && usual_length(found.rows) > end &&
        !trim_field(found.rows.front().substr(std::min(end, found.rows.front().size()))).empty())
        layout.remarks.push_back(
            "The rows hold more than the definition says; what stands behind is passed over.");
    return true;
}

}  // namespace anomalis::intake
