#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/model_body.h"

// The rows of the parameter grid: what each one is called, how it is written and which values it takes, by
// the type of the body. From row 4 on a row's number is its parameter code.
namespace anomalis::edit {

inline constexpr int body_row_count = 18;
enum BodyRowNumber : int { row_type = 1, row_east = 2, row_north = 3, row_first_parameter = 4 };

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

/// The values that a person may give to a parameter. The fit has wider limits of its own.
struct ValueRange {
    double low;
    double high;
    bool holds(double value) const { return value >= low && value <= high; }
};
ValueRange value_range(std::int32_t type, int param_code);

/// A keyed value this near to the stored one counts as none: 0.05 for angles, 0.001 for density and the
/// Koenigsberger ratio, 0 for the others.
double least_difference(int param_code);

}  // namespace anomalis::edit
