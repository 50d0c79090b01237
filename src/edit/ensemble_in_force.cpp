#include "edit/ensemble_in_force.h"

#include <algorithm>
#include <cmath>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "edit/body_form.h"
#include "edit/body_rows.h"
#include "edit/interval_text.h"
#include "edit/workbench.h"

namespace anomalis::edit {

namespace {

/// A value that was moved is seen without the mark of the whole model, which a step of a bar need not wait
/// for. The mark alone tells that nothing was moved.
bool value_was_moved(const Workspace& workspace, const Ensemble& ensemble) {
    constexpr double file_digits = 1e-4;
    return std::ranges::any_of(ensemble.parameters, [&](const EnsembleParameter& p) {
        if (p.body < 1 || p.body > workspace.body_count) return true;
        const auto now = static_cast<double>(body_param(workspace.body(p.body), p.param_code).value);
        const auto then = static_cast<double>(p.value);
        return std::abs(now - then) > file_digits * std::max(1.0, std::abs(then));
    });
}

bool in_force(const Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    if (!workspace.ensemble || workbench.session.inversion.running) return false;
    if (!workbench.ensemble_stands)
        workbench.ensemble_stands = !value_was_moved(workspace, *workspace.ensemble) &&
                                    bears_mark(workspace, workspace.ensemble->model_mark);
    return *workbench.ensemble_stands;
}

const EnsembleParameter* of_row(const Workbench& workbench, int row) {
    const ModelBody* body = current_body(workbench);
    if (!body || row < row_first_parameter || row > body_row_count || !body_row(body->type, row).used)
        return nullptr;
    return ensemble_parameter(workbench, workbench.view.current_body, row);
}

}  // namespace

std::shared_ptr<const Ensemble> ensemble_in_force(const Workbench& workbench) {
    return in_force(workbench) ? workbench.session.workspace.ensemble : nullptr;
}

const EnsembleParameter* ensemble_parameter(const Workbench& workbench, int body, int param_code) {
    if (!in_force(workbench)) return nullptr;
    const auto& parameters = workbench.session.workspace.ensemble->parameters;
    const auto found = std::ranges::find_if(
        parameters, [&](const EnsembleParameter& p) { return p.body == body && p.param_code == param_code; });
    return found == parameters.end() ? nullptr : &*found;
}

ValueBand value_band(const EnsembleParameter& parameter) {
    ValueBand band{.open_below = !std::isfinite(parameter.lower),
                   .open_above = !std::isfinite(parameter.upper)};
    const double room = parameter.upper - parameter.lower;
    if (!band.open_below && !band.open_above && room > 0)
        band.place = (static_cast<double>(parameter.value) - parameter.lower) / room;
    return band;
}

std::optional<ValueBand> grid_band(const Workbench& workbench, int row) {
    const EnsembleParameter* parameter = of_row(workbench, row);
    return parameter ? std::optional(value_band(*parameter)) : std::nullopt;
}

std::string grid_band_tip(const Workbench& workbench, int row) {
    const EnsembleParameter* parameter = of_row(workbench, row);
    if (!parameter) return {};
    const BodyRow plan =
        body_row(current_body(workbench)->type, row, workbench.session.preferences.susceptibility_unit);
    const FittedParameter band = in_unit(
        {.value = parameter->value, .lower = parameter->lower, .upper = parameter->upper}, plan.factor);
    const std::string words = interval_words(band);
    const bool numbers = std::isfinite(band.lower) || std::isfinite(band.upper);
    return "90 % of the models: " + (numbers ? with_unit(words, plan) : words);
}

}  // namespace anomalis::edit
