#pragma once

#include <span>
#include <string>
#include <vector>

#include "intake/survey/survey_index.h"

// The table of an imported line: one row a station, units in the names of its columns, and what it is in
// lines of comment, so that the usual way of loading reads it as it stands. Private to this room.
namespace anomalis::flow {

/// The readings and heights of a line with the names that its table gives them.
struct TableColumn {
    std::string name;  ///< "mag_nT"
    std::span<const double> values;
    int decimals = 3;  ///< at least as many digits as count behind the point; more where the values have more
    int most_decimals = 3;
};

/// A line break in `comments` becomes a blank. NaN becomes -1e32, which stands for no reading.
std::string survey_table_text(std::span<const TableColumn> columns, const std::vector<std::string>& comments);

/// Number of the first line of such a table that can be a row: comments may follow the names.
inline constexpr int first_table_line = 2;

}  // namespace anomalis::flow
