#include "inversion/trial_rows.h"

#include <algorithm>

namespace anomalis::inversion {

namespace {

void copy_calculated_stage(const ChannelTable& from, ChannelTable& to) {
    for (int row = row_raw; row <= row_total_gradient; ++row) {
        const auto source = from.row(row, stage_calculated);
        std::copy(source.begin(), source.end(), to.row(row, stage_calculated).begin());
    }
}

}  // namespace

void start_trial_rows(Workspace& workspace) {
    workspace.mag.work = workspace.mag.data;
    workspace.grav.work = workspace.grav.data;
}

void accept_trial_rows(Workspace& workspace) {
    copy_calculated_stage(workspace.mag.work, workspace.mag.data);
    copy_calculated_stage(workspace.grav.work, workspace.grav.data);
}

void drop_trial_rows(Workspace& workspace) {
    copy_calculated_stage(workspace.mag.data, workspace.mag.work);
    copy_calculated_stage(workspace.grav.data, workspace.grav.work);
}

}  // namespace anomalis::inversion
