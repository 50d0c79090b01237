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
        return {workspace.float_mag_base == 1, workspace.mag_base, workspace.mag_mean,
                workspace.mag_calc_base, workspace.mag_calc_mean};
    return {workspace.float_grav_base == 1, workspace.grav_base, workspace.grav_mean,
            workspace.grav_calc_base, workspace.grav_calc_mean};
}

/// The mark that says the filtered rows of a channel and stage are valid.
inline bool& filtered_mark(Workspace& workspace, int channel, int stage) {
    if (channel == 0)
        return stage == stage_observed ? workspace.mag_observed_filtered : workspace.mag_calculated_filtered;
    return stage == stage_observed ? workspace.grav_observed_filtered : workspace.grav_calculated_filtered;
}

}  // namespace anomalis::filter
