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

std::string limit_text(float limit) {
    return is_set(limit) ? shortest_text(limit) : std::string();
}

std::string value_text(const ModelBody& body, int row) {
    switch (row) {
        case row_type:
            return std::string(body_type_name(body.type));
        case row_east:
            return format_number(body.east, body_row(body.type, row).format);
        case row_north:
            return format_number(body.north, body_row(body.type, row).format);
        default:
            return parameter_text(body.type, row, body_param(body, row).value);
    }
}

const FittedParameter* fitted(const Workbench& workbench, int row) {
    return fitted_parameter(workbench, workbench.view.current_body, row);
}

std::string interval_tip(const FittedParameter& parameter, std::string_view unit) {
    const std::string words = interval_words(parameter);
    const bool has_numbers = std::isfinite(parameter.lower) || std::isfinite(parameter.upper);
    return "\n90 % interval of the last fit: " + words +
           (has_numbers && !unit.empty() ? " " + std::string(unit) : "");
}

void tell(Workbench& workbench, int row, std::string_view what) {
    note_change(workbench,
                {of_current_body(workbench, std::string(param_name(row)) + std::string(what)), "", false});
}

GridChange enter_value(Workbench& workbench, const ModelBody& body, int row, std::string_view text) {
    const auto typed = parse_single(text);
    if (!typed || !value_range(body.type, row).holds(*typed)) return GridChange::refused;
    const float stored = body_param(body, row).value;
    const double difference = std::abs(static_cast<double>(*typed) - static_cast<double>(stored));
    if (difference <= body_parameter(row).least_difference) return GridChange::unchanged;
    store_parameter(workbench, row, *typed);
    tell(workbench, row, "");
    return GridChange::stored;
}

GridChange enter_limit(Workbench& workbench, BodyParam& param, int row, int column, std::string_view text) {
    auto typed = trim_blanks(text).empty() ? unset : parse_single(text);
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
    if (column == grid_value) return value_text(*body, row);
    if (row < row_first_parameter || column == grid_vary) return {};
    const BodyParam& param = body_param(*body, row);
    return limit_text(column == grid_min ? param.min : param.max);
}

std::string grid_unit(const Workbench& workbench, int row) {
    const ModelBody* body = current_body(workbench);
    if (!body) return {};
    const BodyRow plan = body_row(body->type, row);
    return plan.used ? std::string(plan.unit) : std::string();
}

std::string grid_error(const Workbench& workbench, int row) {
    const ModelBody* body = current_body(workbench);
    if (!body || !is_parameter(*body, row)) return {};
    const FittedParameter* parameter = fitted(workbench, row);
    return parameter ? interval_mark(*parameter) : std::string();
}

std::string grid_tip(const Workbench& workbench, int row, int column) {
    const ModelBody* body = current_body(workbench);
    if (!body || !body_row(body->type, row).used) return {};
    const bool parameter = is_parameter(*body, row);
    if (parameter && column == grid_vary)
        return grid_vary_mark(workbench, row) == VaryMark::held
                   ? "The inversion never changes this of a wire"
                   : "Checked: the inversion may change this parameter";
    if (parameter && column == grid_min)
        return "Lower limit of the inversion, in the unit of the value; blank takes the usual one";
    if (parameter && column == grid_max)
        return "Upper limit of the inversion, in the unit of the value; blank takes the usual one";
    std::string tip = body_row_tip(body->type, row);
    if (const FittedParameter* fit = parameter ? fitted(workbench, row) : nullptr)
        tip += interval_tip(*fit, body_row(body->type, row).unit);
    return tip;
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
    const BodyParam& param = body_param(*current_body(workbench), row);
    if (column == grid_value) return shortest_text(param.value);
    return limit_text(column == grid_min ? param.min : param.max);
}

GridChange enter_grid_text(Workbench& workbench, int row, int column, std::string_view text) {
    if (!grid_editable(workbench, row, column)) return GridChange::refused;
    ModelBody& body = *current_body(workbench);
    if (column == grid_value) return enter_value(workbench, body, row, text);
    return enter_limit(workbench, body_param(body, row), row, column, text);
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
