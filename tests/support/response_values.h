#pragma once

#include <vector>

#include "core/response_table.h"

namespace anomalis {

/// A column of a response as it reads, held or not.
inline std::vector<float> column_values(const ResponseTable& response, int column) {
    std::vector<float> values;
    for (int row = 1; row <= response.rows(); ++row) values.push_back(response(row, column));
    return values;
}

/// All columns, one after the other.
inline std::vector<float> all_values(const ResponseTable& response) {
    std::vector<float> values;
    for (int column = 1; column <= ResponseTable::columns; ++column)
        for (const float value : column_values(response, column)) values.push_back(value);
    return values;
}

/// How many columns take memory.
inline int held_columns(const ResponseTable& response) {
    int held = 0;
    for (int column = 1; column <= ResponseTable::columns; ++column)
        held += response.column(column).empty() ? 0 : 1;
    return held;
}

}  // namespace anomalis
