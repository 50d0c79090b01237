#pragma once

#include "core/workspace.h"

// The fields that magnetics and gravity each have, picked by channel; private to this room.
namespace anomalis::filter {

struct BaseLevels {
    bool floating;
    float& base;
    float& mean;
    float& calc_base;
    float& calc_mean;
};

inline BaseLevels base_levels(Workspace& workspace, int channel) {
    if (channel == 0)
        return {workspace.mag.float_base == 1, workspace.mag.base, workspace.mag.mean,
                workspace.mag.calc_base, workspace.mag.calc_mean};
    return {workspace.grav.float_base == 1, workspace.grav.base, workspace.grav.mean,
            workspace.grav.calc_base, workspace.grav.calc_mean};
}

/// The mark that says the filtered rows of a channel and stage are valid.
inline bool& filtered_mark(Workspace& workspace, int channel, int stage) {
    if (channel == 0)
        return stage == stage_observed ? workspace.mag.observed_filtered : workspace.mag.calculated_filtered;
    return stage == stage_observed ? workspace.grav.observed_filtered : workspace.grav.calculated_filtered;
}

}  // namespace anomalis::filter
