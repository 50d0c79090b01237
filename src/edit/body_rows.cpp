#include "edit/body_rows.h"

#include <array>
#include <cmath>
#include <limits>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/susceptibility.h"

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
     "East of the reference point of the body: the point on the profile at its distance. Clean tables call "
     "it "
     "reference_east_m; their east_m is the middle of the top edge\nm"},
    {{"North", "0.0", "m", true},
     "North of the reference point of the body: the point on the profile at its distance. Clean tables call "
     "it reference_north_m; their north_m is the middle of the top edge\nm"},
}};

constexpr std::string_view wire_tip =
    "\nA wire has no density and no gravity, yet a gravity fit counts its density among the free parameters";

const HeadRow& head_row(int row) {
    if (row < 1) throw Fault(FaultKind::subscript);
    return head_rows.at(static_cast<std::size_t>(row - 1));
}

}  // namespace

BodyRow body_row(std::int32_t type, int row, SusceptibilityUnit unit) {
    if (row < row_first_parameter) return head_row(row).look;
    const GridLook& grid = body_parameter(row).grid;
    BodyRow look{grid.caption.of(type), grid.format.of(type), grid.unit.of(type), has_parameter(type, row)};
    if (is_susceptibility(type, row)) {
        look.unit = unit_name(unit);
        look.format = number_format(unit);
        look.factor = of_micro_si(unit);
    }
    return look;
}

std::string body_row_tip(std::int32_t type, int row, SusceptibilityUnit unit) {
    if (!body_row(type, row).used) return {};
    if (row >= row_first_parameter) return parameter_tip(type, row, unit);
    std::string tip(head_row(row).tip);
    if (row == row_type && carries_current(type)) tip += wire_tip;
    return tip;
}

std::string parameter_text(std::int32_t type, int param_code, float value, SusceptibilityUnit unit) {
    const BodyRow row = body_row(type, param_code, unit);
    return row.factor == 1 ? format_number(value, row.format)
                           : format_number(static_cast<double>(value) * row.factor, row.format);
}

std::string parameter_edit_text(std::int32_t type, int param_code, float value, SusceptibilityUnit unit) {
    const double factor = body_row(type, param_code, unit).factor;
    return shortest_text(factor == 1 ? value : static_cast<float>(static_cast<double>(value) * factor));
}

std::optional<float> keyed_parameter(std::int32_t type, int param_code, std::string_view text,
                                     SusceptibilityUnit unit) {
    const double factor = body_row(type, param_code, unit).factor;
    if (factor == 1) return parse_single(text);
    double number = 0;
    if (!parse_number(text, number)) return {};
    const double stored = number / factor;
    if (!(std::abs(stored) <= static_cast<double>(std::numeric_limits<float>::max()))) return {};
    return static_cast<float>(stored);
}

std::string with_unit(const std::string& number, const BodyRow& row) {
    if (row.unit.empty()) return number;
    return number + (row.unit == "°" ? "" : " ") + std::string(row.unit);
}

}  // namespace anomalis::edit
