#include "flow/shown_limits.h"

#include <cmath>

#include "core/numbers.h"
#include "edit/body_form.h"
#include "edit/body_grid.h"
#include "edit/workbench.h"
#include "inversion/physical_limits.h"

namespace anomalis::flow {

namespace {

/// As the grid writes the value, without an empty decimal that the narrow cell has no room for.
std::string limit_text(const ModelBody& body, int row, float limit, SusceptibilityUnit unit) {
    std::string text = edit::parameter_text(body.type, row, limit, unit);
    constexpr double felt = 0.01;
    const double shown = prefix_number(text);
    const double exact = static_cast<double>(limit) * edit::body_row(body.type, row, unit).factor;
    if (std::abs(shown - exact) > felt * std::abs(exact))
        return edit::parameter_edit_text(body.type, row, limit, unit);
    if (text.find('.') == std::string::npos) return text;
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    return text;
}

}  // namespace

ShownLimit shown_limit(const edit::Workbench& workbench, int row, int column, InversionMethod method) {
    if (column != edit::grid_min && column != edit::grid_max) return {};
    if (edit::grid_vary_mark(workbench, row) != edit::VaryMark::free) return {};
    if (!edit::grid_text(workbench, row, column).empty()) return {};
    const ModelBody& body = *edit::current_body(workbench);
    const inversion::ParameterLimits limits =
        inversion::limits_in_force(workbench.session.workspace, body, row, method);
    const float limit = column == edit::grid_min ? limits.lower : limits.upper;
    if (!(limit > unset)) return {};
    const bool sweep = method == InversionMethod::sweep;
    const SusceptibilityUnit unit = workbench.session.preferences.susceptibility_unit;
    const std::string which = column == edit::grid_min ? "Lower" : "Upper";
    const std::string text = limit_text(body, row, limit, unit);
    return {text, which + " limit in force, " + edit::with_unit(text, edit::body_row(body.type, row, unit)) +
                      ", which nobody keyed: " + (sweep ? "default of the sweep" : "physical bound") +
                      ". A number keyed here takes its place"};
}

}  // namespace anomalis::flow
