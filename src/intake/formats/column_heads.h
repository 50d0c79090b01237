#pragma once

#include <optional>
#include <span>
#include <string>

#include "intake/formats/table_shape.h"

// The names and units of the columns of a free table.
namespace anomalis::intake {

/// Names the layout's columns from the lines before its first row: a line of names, a comment that holds
/// them, a line with units below. Sets `names_row`, names and unit texts.
void name_columns(std::span<const NumberedLine> before_rows, const TableShape& shape, SurveyLayout& layout);

/// A name without a unit in brackets, and that unit: "east (m)" is "east" in "m".
void take_unit_off(SurveyColumn& column);

/// Gives columns without a name one, and those of one name different ones: "mag", "mag (2)".
void tell_names_apart(SurveyLayout& layout);

}  // namespace anomalis::intake
