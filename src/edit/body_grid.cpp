#include "edit/body_grid.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/text.h"
#include "edit/body_form.h"
#include "edit/change.h"
#include "edit/fit_in_force.h"
#include "edit/interval_text.h"
#include "edit/workbench.h"
#include "forward/shape/reference_point.h"

namespace anomalis::edit {

namespace {

const char* const crossed_limits = "The lower limit must not be above the upper limit";

bool is_parameter(const ModelBody& body, int row) {
    return row >= row_first_parameter && row <= body_row_count && body_row(body.type, row).used;
}

bool is_set(float limit) {
    return limit > unset;
}

SusceptibilityUnit unit_in(const Workbench& workbench) {
    return workbench.session.preferences.susceptibility_unit;
}

BodyRow shown_row(const Workbench& workbench, const ModelBody& body, int row) {
    return body_row(body.type, row, unit_in(workbench));
}

std::string limit_text(const Workbench& workbench, const ModelBody& body, int row, int column) {
    const BodyParam& param = body_param(body, row);
    const float limit = column == grid_min ? param.min : param.max;
    return is_set(limit) ? parameter_edit_text(body.type, row, limit, unit_in(workbench)) : std::string();
}

std::string value_text(const Workbench& workbench, const ModelBody& body, int row) {
    switch (row) {
        case row_type:
            return std::string(body_type_name(body.type));
        case row_east:
            return format_number(body.east, body_row(body.type, row).format);
        case row_north:
            return format_number(body.north, body_row(body.type, row).format);
        default:
            return parameter_text(body.type, row, body_param(body, row).value, unit_in(workbench));
    }
}

const FittedParameter* fitted(const Workbench& workbench, int row) {
    return fitted_parameter(workbench, workbench.view.current_body, row);
}

std::string interval_tip(const FittedParameter& parameter, const BodyRow& row) {
    const std::string words = interval_words(in_unit(parameter, row.factor));
    const bool has_numbers = std::isfinite(parameter.lower) || std::isfinite(parameter.upper);
    return "\n90 % interval of the last fit: " + (has_numbers ? with_unit(words, row) : words);
}

/// What stands in the cell with all its digits and its unit, since the cell may have room for fewer.
std::string whole_value(const Workbench& workbench, const ModelBody& body, int row) {
    if (row == row_type) return {};
    return "\n" + with_unit(value_text(workbench, body, row), shown_row(workbench, body, row));
}

/// The axis of the sensor has no ground in it: how deep a body lies is told beside its elevation.
std::string burial_tip(const Workbench& workbench, const ModelBody& body, int row) {
    const std::string depth = row == param_top ? burial_text(workbench) : std::string();
    if (depth.empty()) return {};
    return "\nBurial depth " + depth +
           (body.type == pipe ? ": the ground above it less this less half the diameter"
                              : ": the ground above it less this");
}

std::string limit_tip(const Workbench& workbench, const ModelBody& body, int row, int column) {
    const std::string which = column == grid_min ? "Lower" : "Upper";
    const BodyRow plan = shown_row(workbench, body, row);
    const std::string limit = limit_text(workbench, body, row, column);
    if (!limit.empty())
        return which + " limit of the inversion: " + with_unit(limit, plan) + "; blank takes the usual one";
    return which + " limit of the inversion" +
           (plan.unit.empty() ? std::string() : " in " + std::string(plan.unit)) +
           "; blank takes the usual one";
}

void tell(Workbench& workbench, int row, std::string_view what) {
    note_change(workbench,
                {of_current_body(workbench, std::string(param_name(row)) + std::string(what)), "", false});
}

GridChange enter_value(Workbench& workbench, const ModelBody& body, int row, std::string_view text) {
    const SusceptibilityUnit unit = unit_in(workbench);
    const auto typed = keyed_parameter(body.type, row, text, unit);
    if (!typed || !value_range(body.type, row).holds(*typed)) return GridChange::refused;
    const float stored = body_param(body, row).value;
    const double difference = std::abs(static_cast<double>(*typed) - static_cast<double>(stored));
    if (difference <= body_parameter(row).least_difference) return GridChange::unchanged;
    // In another unit than that of the record a number comes back from the cell a rounding away.
    if (parameter_edit_text(body.type, row, *typed, unit) ==
        parameter_edit_text(body.type, row, stored, unit))
        return GridChange::unchanged;
    store_parameter(workbench, row, *typed);
    tell(workbench, row, "");
    return GridChange::stored;
}

GridChange enter_limit(Workbench& workbench, ModelBody& body, int row, int column, std::string_view text) {
    BodyParam& param = body_param(body, row);
    auto typed =
        trim_blanks(text).empty() ? unset : keyed_parameter(body.type, row, text, unit_in(workbench));
    if (!typed) return GridChange::refused;
    if (!is_set(*typed)) typed = unset;
    float& limit = column == grid_min ? param.min : param.max;
    if (limit == *typed) return GridChange::unchanged;
    const float low = column == grid_min ? *typed : param.min;
    const float high = column == grid_min ? param.max : *typed;
    if (is_set(low) && is_set(high) && low > high) {
        workbench.session.prompts.message(crossed_limits);
        return GridChange::refused;
    }
    limit = *typed;
    tell(workbench, row, column == grid_min ? " lower limit" : " upper limit");
    return GridChange::stored;
}

}  // namespace

std::string grid_text(const Workbench& workbench, int row, int column) {
    const ModelBody* body = current_body(workbench);
    if (!body) return {};
    const BodyRow plan = body_row(body->type, row);
    if (column == grid_property) return std::string(plan.caption);
    if (!plan.used) return {};
    if (column == grid_value) return value_text(workbench, *body, row);
    if (row < row_first_parameter || column == grid_vary) return {};
    return limit_text(workbench, *body, row, column);
}

std::string grid_unit(const Workbench& workbench, int row) {
    const ModelBody* body = current_body(workbench);
    if (!body) return {};
    const BodyRow plan = shown_row(workbench, *body, row);
    return plan.used ? std::string(plan.unit) : std::string();
}

std::string grid_error(const Workbench& workbench, int row) {
    const ModelBody* body = current_body(workbench);
    if (!body || !is_parameter(*body, row)) return {};
    const FittedParameter* parameter = fitted(workbench, row);
    const double factor = shown_row(workbench, *body, row).factor;
    return parameter ? interval_mark(in_unit(*parameter, factor)) : std::string();
}

std::string grid_tip(const Workbench& workbench, int row, int column) {
    const ModelBody* body = current_body(workbench);
    if (!body || !body_row(body->type, row).used) return {};
    const bool parameter = is_parameter(*body, row);
    if (parameter && column == grid_vary)
        return grid_vary_mark(workbench, row) == VaryMark::held
                   ? "The inversion never changes this of a wire"
                   : "Checked: the inversion may change this parameter";
    if (parameter && (column == grid_min || column == grid_max))
        return limit_tip(workbench, *body, row, column);
    std::string tip = body_row_tip(body->type, row, unit_in(workbench));
    if (column == grid_value) tip += whole_value(workbench, *body, row);
    tip += burial_tip(workbench, *body, row);
    if (const FittedParameter* fit = parameter ? fitted(workbench, row) : nullptr)
        tip += interval_tip(*fit, shown_row(workbench, *body, row));
    return tip;
}

std::string grid_note(const Workbench& workbench, int row, int column) {
    const ModelBody* body = current_body(workbench);
    if (!body || !body_row(body->type, row).used) return {};
    if (column == grid_property)
        return row == param_top                      ? "elev."
               : row == param_density                ? "contrast"
               : row == row_east || row == row_north ? "ref."
                                                     : "";
    if (column != grid_value || row != param_top) return {};
    const std::string depth = burial_text(workbench);
    return depth.empty() ? depth : depth + " deep";
}

VaryMark grid_vary_mark(const Workbench& workbench, int row) {
    const ModelBody* body = current_body(workbench);
    if (!body || !is_parameter(*body, row)) return VaryMark::none;
    if (body->type == wire && body_parameter(row).held_by_wires) return VaryMark::held;
    return body_param(*body, row).vary == 1 ? VaryMark::free : VaryMark::fixed;
}

bool grid_editable(const Workbench& workbench, int row, int column) {
    const ModelBody* body = current_body(workbench);
    return body && is_parameter(*body, row) &&
           (column == grid_value || column == grid_min || column == grid_max);
}

std::string grid_edit_text(const Workbench& workbench, int row, int column) {
    if (!grid_editable(workbench, row, column)) return {};
    const ModelBody& body = *current_body(workbench);
    if (column == grid_value)
        return parameter_edit_text(body.type, row, body_param(body, row).value, unit_in(workbench));
    return limit_text(workbench, body, row, column);
}

GridChange enter_grid_text(Workbench& workbench, int row, int column, std::string_view text) {
    if (!grid_editable(workbench, row, column)) return GridChange::refused;
    ModelBody& body = *current_body(workbench);
    if (column == grid_value) return enter_value(workbench, body, row, text);
    return enter_limit(workbench, body, row, column, text);
}

bool toggle_grid_vary(Workbench& workbench, int row) {
    const VaryMark mark = grid_vary_mark(workbench, row);
    if (mark == VaryMark::none || mark == VaryMark::held) return false;
    BodyParam& param = body_param(*current_body(workbench), row);
    param.vary = 1 - param.vary;
    tell(workbench, row, " vary");
    return true;
}

void store_parameter(Workbench& workbench, int param_code, float value) {
    ModelBody& body = *current_body(workbench);
    body_param(body, param_code).value = value;
    if (body_parameter(param_code).stale.place)
        forward::update_body_reference_point(workbench.session.workspace, static_cast<double>(value),
                                             body.east, body.north);
}

}  // namespace anomalis::edit
