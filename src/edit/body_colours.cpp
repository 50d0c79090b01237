#include "edit/body_colours.h"

#include <algorithm>

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

std::vector<std::int32_t> colours_by(const Workspace& workspace, ColourProperty property) {
    std::vector<double> values;
    for (int i = 1; i <= workspace.body_count; ++i)
        values.push_back(colour_value(workspace, workspace.body(i), property));
    if (values.empty()) return {};
    const auto [low, high] = std::ranges::minmax(values);
    if (!(high > low)) return {};
    std::vector<std::int32_t> colours;
    for (const double value : values) colours.push_back(ramp_colour((value - low) / (high - low)));
    return colours;
}

std::optional<ColourProperty> coloured_by(const Workspace& workspace, std::optional<ColourProperty> last) {
    const auto holds = [&](ColourProperty property) {
        const std::vector<std::int32_t> colours = colours_by(workspace, property);
        for (int i = 1; i <= workspace.body_count && !colours.empty(); ++i)
            if (workspace.body(i).colour != colours[static_cast<std::size_t>(i - 1)]) return false;
        return !colours.empty();
    };
    if (last && holds(*last)) return last;
    for (const auto property :
         {ColourProperty::susceptibility, ColourProperty::remanence, ColourProperty::density})
        if (holds(property)) return property;
    return {};
}

bool colour_bodies(Workbench& workbench, ColourProperty property) {
    Workspace& workspace = workbench.session.workspace;
    if (workspace.body_count < 1) return false;
    const std::vector<std::int32_t> colours = colours_by(workspace, property);
    if (colours.empty()) {
        workbench.session.prompts.remark("The bodies all have the same specified value");
        return false;
    }
    for (int i = 1; i <= workspace.body_count; ++i)
        workspace.body(i).colour = colours[static_cast<std::size_t>(i - 1)];
    workbench.view.coloured_by = property;
    note_change(workbench, {"colour bodies", "", false});
    return true;
}

}  // namespace anomalis::edit
