#pragma once

#include <string_view>
#include <vector>

#include "intake/formats/survey_layout.h"

// How a row of a table falls into fields.
namespace anomalis::intake {

/// Whether a line is a comment of a free table: "#", "!", "/", "\", "%" at its start.
bool is_table_comment(std::string_view line);

/// Bytes of a quoted field with both its quotes; a doubled quote does not close it. REQUIRES: it begins with
/// one.
std::size_t quoted_length(std::string_view text);
/// Trimmed, and without the quotes around it.
std::string_view without_quotes(std::string_view field);

/// Fields between separators, trimmed and without quotes. With the blank as separator any number of blanks
/// and tabs parts two fields.
void split_separated(std::string_view line, char separator, std::vector<std::string_view>& fields);

/// The field of a fixed place; what the line is too short for is empty.
std::string_view fixed_field(std::string_view line, const SurveyColumn& column);

/// A row's fields as a layout says, one a column at least where the row has them.
void split_row(std::string_view line, const SurveyLayout& layout, std::vector<std::string_view>& fields);

/// "Line 5690", "Tie 9010" as a row of its own.
struct LineHeader {
    std::string_view name;  ///< empty: the row is no header
    bool tie = false;
};
LineHeader line_header(std::string_view row);

/// The first word of a row.
std::string_view first_word(std::string_view line);

}  // namespace anomalis::intake
