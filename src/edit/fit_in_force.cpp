#include "edit/fit_in_force.h"

#include <algorithm>

#include "core/model_mark.h"
#include "edit/workbench.h"

namespace anomalis::edit {

const FitRecord* fit_in_force(const Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    if (!workspace.fit) return nullptr;
    if (!workbench.fit_stands) workbench.fit_stands = as_fitted(workspace);
    return *workbench.fit_stands ? &*workspace.fit : nullptr;
}

const FittedParameter* fitted_parameter(const Workbench& workbench, int body, int param_code) {
    const FitRecord* fit = fit_in_force(workbench);
    if (!fit) return nullptr;
    const auto found = std::ranges::find_if(fit->parameters, [&](const FittedParameter& p) {
        return p.body == body && p.param_code == param_code;
    });
    return found == fit->parameters.end() ? nullptr : &*found;
}

}  // namespace anomalis::edit
