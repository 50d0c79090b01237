#include "edit/workbench.h"

namespace anomalis::edit {

std::array<bool, 2> unset_base_levels(const Workspace& workspace) {
    return {workspace.mag.base == unset, workspace.grav.base == unset};
}

void note_base_levels(Workbench& workbench, const std::array<bool, 2>& were_unset) {
    const auto are_unset = unset_base_levels(workbench.session.workspace);
    for (const std::size_t channel : {channel_mag, channel_grav})
        if (were_unset.at(channel)) workbench.base_from_mean.at(channel) = !are_unset.at(channel);
}

bool line_loaded(const Workspace& workspace) {
    const int n = workspace.station_count;
    return n > 0 && workspace.distances.count() == n && workspace.distances[n] > 0;
}

}  // namespace anomalis::edit
