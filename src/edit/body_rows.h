#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/body_parameters.h"

// The rows of the parameter grid: what each one is called and how it is written, by the type of the body.
// From row 4 on a row's number is its parameter code, and core/body_parameters.h says all about it.
namespace anomalis::edit {

inline constexpr int body_row_count = last_param_code;
enum BodyRowNumber : int {
    row_type = 1,
    row_east = 2,
    row_north = 3,
    row_first_parameter = first_param_code
};

struct BodyRow {
    std::string_view caption;  ///< blank, or "N/A", where the type has no such parameter
    std::string_view format;   ///< of the number; "" for the type's name
    std::string_view unit;
    bool used = false;  ///< shows something; a parameter row then takes value, mark and limits
};

/// Row 1 to 18. Types without rows of their own have those of the sheets.
BodyRow body_row(std::int32_t type, int row);

/// What the row means for this type, its unit and the numbers it takes; "" for a row that is not used.
std::string body_row_tip(std::int32_t type, int row);

/// A parameter's value as the grid writes it.
std::string parameter_text(std::int32_t type, int param_code, float value);

}  // namespace anomalis::edit
