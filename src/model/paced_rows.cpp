#include "model/paced_rows.h"

#include <utility>

#include "core/workspace.h"
#include "filter/filters.h"
#include "forward/body_price.h"

namespace anomalis::model {

namespace {

bool sum_stands(const Channel& channel, const Workspace& workspace) {
    return channel.calculated_filtered &&
           channel.summed.size() == static_cast<std::size_t>(workspace.body_count);
}

}  // namespace

double filter_work_ahead(const Workspace& workspace) {
    if (workspace.station_count <= 0) return 0;
    const bool responses = forward::work_ahead(workspace) > 0;
    int chains = 0;
    const auto count = [&](bool present, const Channel& channel) {
        if (!present) return;
        chains += channel.observed_filtered ? 0 : 1;
        chains += sum_stands(channel, workspace) && !responses ? 0 : 1;
    };
    count(workspace.has_mag(), workspace.mag);
    count(workspace.has_grav(), workspace.grav);
    return chains * filter::chain_work(workspace);
}

void with_rows_kept(Workspace& workspace, Pacer& pacer, const std::function<void(Pacer& filters)>& work) {
    if (filter_work_ahead(workspace) < TurnPacer::usual_turn) return work(no_pace());
    Channel mag = workspace.mag;
    Channel grav = workspace.grav;
    try {
        work(pacer);
    } catch (const Stopped&) {
        workspace.mag = std::move(mag);
        workspace.grav = std::move(grav);
        throw;
    }
}

}  // namespace anomalis::model
