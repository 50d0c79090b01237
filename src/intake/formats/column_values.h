#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "intake/formats/survey_layout.h"

// What the values of the columns are like, from a part of a file.
namespace anomalis::intake {

/// One column of the rows that were looked at.
struct ColumnValues {
    std::vector<double> values;  ///< as the file has them, NaN for none; empty for columns of text
    std::size_t numbers = 0;     ///< of them that are no NaN
    double least = 0, greatest = 0, middle = 0;  ///< of the numbers; `middle` the median
    std::size_t distinct = 0;                    ///< values
    std::size_t changes = 0;                     ///< from row to row, of values or texts
    double typical_step = 0;                     ///< median size of the changes
    bool whole = true;                           ///< whole numbers alone

    double spread() const { return greatest - least; }
};

struct ValueSample {
    std::size_t rows = 0;
    std::vector<ColumnValues> columns;  ///< one a column of the layout
};

/// Reads the first rows of the file, some ten thousand.
ValueSample sample_values(const SurveyLayout& layout);

/// Finds the statistics of `values` again, without the nulls of the column.
void measure(ColumnValues& column, const std::vector<double>& nulls);

/// What a person writes who has no value: -99, -999.9, 9999, 1e10.
bool looks_like_dummy(double value);

/// Values that a file uses for none: far outside of all others, and there several times.
std::vector<double> repeated_extremes(const ColumnValues& column);

}  // namespace anomalis::intake
