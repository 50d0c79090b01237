#include "edit/body_rows.h"

#include <array>

#include "core/failure.h"
#include "core/numbers.h"

namespace anomalis::edit {

namespace {

/// A row above the parameters; all bodies have them.
struct HeadRow {
    BodyRow look;
    std::string_view tip;
};

constexpr std::array<HeadRow, row_first_parameter - 1> head_rows{{
    {{"Body Type", "", "", true}, "The kind of the body"},
    {{"East", "0.0", "m", true},
     "East of the reference point of the body, which follows from its distance\nm"},
    {{"North", "0.0", "m", true},
     "North of the reference point of the body, which follows from its distance\nm"},
}};

constexpr std::string_view wire_tip =
    "\nA wire has no density and no gravity, yet a gravity fit counts its density among the free parameters";

const HeadRow& head_row(int row) {
    if (row < 1) throw Fault(FaultKind::subscript);
    return head_rows.at(static_cast<std::size_t>(row - 1));
}

}  // namespace

BodyRow body_row(std::int32_t type, int row) {
    if (row < row_first_parameter) return head_row(row).look;
    const GridLook& grid = body_parameter(row).grid;
    return {grid.caption.of(type), grid.format.of(type), grid.unit.of(type), has_parameter(type, row)};
}

std::string body_row_tip(std::int32_t type, int row) {
    if (!body_row(type, row).used) return {};
    if (row >= row_first_parameter) return parameter_tip(type, row);
    std::string tip(head_row(row).tip);
    if (row == row_type && carries_current(type)) tip += wire_tip;
    return tip;
}

std::string parameter_text(std::int32_t type, int param_code, float value) {
    return format_number(value, body_row(type, param_code).format);
}

}  // namespace anomalis::edit
