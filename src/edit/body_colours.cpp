#include "edit/body_colours.h"

#include <algorithm>
#include <vector>

#include "core/angles.h"
#include "edit/change.h"
#include "edit/colour_ramp.h"
#include "edit/workbench.h"

namespace anomalis::edit {

double colour_value(const Workspace& workspace, const ModelBody& body, ColourProperty property) {
    constexpr double micro = 1e6;
    const auto susceptibility = static_cast<double>(body.susc.value);
    switch (property) {
        case ColourProperty::susceptibility:
            return std::max(susceptibility, 0.0);
        case ColourProperty::remanence:
            return static_cast<double>(workspace.field.intensity) * static_cast<double>(body.rem_q.value) *
                   susceptibility / (4 * pi * micro);
        case ColourProperty::density:
            break;
    }
    return static_cast<double>(body.density.value);
}

bool colour_bodies(Workbench& workbench, ColourProperty property) {
    Workspace& workspace = workbench.session.workspace;
    if (workspace.body_count < 1) return false;
    std::vector<double> values;
    for (int i = 1; i <= workspace.body_count; ++i)
        values.push_back(colour_value(workspace, workspace.body(i), property));
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    const double low = *lowest, range = *highest - *lowest;
    if (!(range > 0)) {
        workbench.session.prompts.remark("The bodies all have the same specified value");
        return false;
    }
    for (int i = 1; i <= workspace.body_count; ++i)
        workspace.body(i).colour = ramp_colour((values[static_cast<std::size_t>(i - 1)] - low) / range);
    note_change(workbench, {"colour bodies", "", false});
    return true;
}

}  // namespace anomalis::edit
