#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "intake/formats/survey_format.h"

// What the lines of a table look like, found from its first few hundred.
namespace anomalis::intake {

/// A line of the head of a file with its number, from 1.
struct NumberedLine {
    std::string_view text;
    long number = 0;
};

struct TableShape {
    char separator = ' ';
    bool decimal_comma = false;
    bool fixed_width = false;
    std::size_t fields = 0;
    std::vector<SurveyColumn> places;  ///< offset and width of each field, for fixed width
    double share = 0;                  ///< of the lines that are rows of so many fields
};

/// Whether a field is what tables of numbers hold: a number, none, a date, degrees with minutes.
bool is_table_value(std::string_view field, bool decimal_comma);

/// Whether the fields are those of a row, not of a line with names: at least two numbers, and half of all.
bool is_table_row(std::span<const std::string_view> fields, bool decimal_comma);

/// The separator and decimal sign under which most lines are rows with one number of fields; columns at fixed
/// places where blanks stand for missing values or numbers touch. Nothing where the lines are no table.
/// `read_as` may say them.
std::optional<TableShape> find_table_shape(std::span<const NumberedLine> lines, const ReadAs& read_as = {});

/// Columns at fixed places, each ending where the numbers of nearly all rows end.
std::optional<TableShape> find_fixed_columns(std::span<const NumberedLine> lines);

/// Splits a line as the shape says.
void split_by_shape(std::string_view line, const TableShape& shape, std::vector<std::string_view>& fields);

}  // namespace anomalis::intake
