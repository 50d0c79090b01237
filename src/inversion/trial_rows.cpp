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

/// A regional follows the model, and takes the observed residual row with it.
void copy_regional(const ChannelTable& from, ChannelTable& to, const Workspace& workspace) {
    const auto source = from.row(workspace.residual_row, stage_observed);
    std::copy(source.begin(), source.end(), to.row(workspace.residual_row, stage_observed).begin());
}

void copy_rows(const ChannelTable& from, ChannelTable& to, const Workspace& workspace) {
    copy_calculated_stage(from, to);
    copy_regional(from, to, workspace);
}

}  // namespace

void start_trial_rows(Workspace& workspace) {
    workspace.mag.work = workspace.mag.data;
    workspace.grav.work = workspace.grav.data;
}

void accept_trial_rows(Workspace& workspace) {
    copy_rows(workspace.mag.work, workspace.mag.data, workspace);
    copy_rows(workspace.grav.work, workspace.grav.data, workspace);
}

void drop_trial_rows(Workspace& workspace) {
    copy_rows(workspace.mag.data, workspace.mag.work, workspace);
    copy_rows(workspace.grav.data, workspace.grav.work, workspace);
}

}  // namespace anomalis::inversion
