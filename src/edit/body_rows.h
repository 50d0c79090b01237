#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/body_parameters.h"
#include "core/preferences.h"

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
    double factor = 1;  ///< of a stored number to the one that is shown and keyed
};

/// Row 1 to 18, with susceptibilities in a unit. Types without rows of their own have those of the sheets.
BodyRow body_row(std::int32_t type, int row, SusceptibilityUnit unit = SusceptibilityUnit::micro_si);

/// What the row means for this type, its unit and the numbers it takes; "" for a row that is not used.
std::string body_row_tip(std::int32_t type, int row, SusceptibilityUnit unit = SusceptibilityUnit::micro_si);

/// A parameter's stored value as the grid writes it.
std::string parameter_text(std::int32_t type, int param_code, float value,
                           SusceptibilityUnit unit = SusceptibilityUnit::micro_si);
/// The same with all its digits, to be edited.
std::string parameter_edit_text(std::int32_t type, int param_code, float value, SusceptibilityUnit unit);
/// A keyed number as it is stored; nothing when it is none or does not fit.
std::optional<float> keyed_parameter(std::int32_t type, int param_code, std::string_view text,
                                     SusceptibilityUnit unit);
/// "23.5 m", "45.0°", "0.05 SI": a number with the unit of a row.
std::string with_unit(const std::string& number, const BodyRow& row);

}  // namespace anomalis::edit
