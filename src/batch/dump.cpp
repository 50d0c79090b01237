#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/dump_json.h"
#include "model/misfit.h"

namespace anomalis::batch {

namespace {

DumpedMisfit measured(Session& session) {
    const Workspace& workspace = session.workspace;
    Faults faults;
    const auto of = [&](const ChannelTable& data, int channel) {
        return model::channel_misfit(workspace, data, model::misfit_scale_of(channel), faults);
    };
    DumpedMisfit misfit;
    if (workspace.has_mag()) misfit.mag = of(workspace.mag.data, channel_mag);
    if (workspace.has_grav()) misfit.grav = of(workspace.grav.data, channel_grav);
    show_faults(faults, session.prompts);
    return misfit;
}

}  // namespace

bool run_dump(const DumpOptions& options, BatchSession& batch) {
    OpenState state{};
    DumpedMisfit misfit;
    {
        const MessageScope scope(batch.prompts);
        state = batch.open(options.model);
        if (state == OpenState::ready) misfit = measured(batch.session);
    }
    // Written also after a failed step: what could be read, and why there is no more.
    const auto source = [&](const TextSink& put) {
        put_dump(batch.session.workspace, misfit, batch.prompts, put);
    };
    return batch.write_result(options.output, source) == 0 && state == OpenState::ready;
}

}  // namespace anomalis::batch
