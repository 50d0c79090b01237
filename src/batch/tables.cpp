#include "output/tables.h"

#include <array>
#include <utility>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "output/clean_tables.h"
#include "output/dxf.h"

namespace anomalis::batch {

bool run_forward(const ForwardOptions& options, BatchSession& batch) {
    return batch.open_ready(options.model) &&
           batch.write_result(options.output, output::profile_table_text(batch.session.workspace)) == 0;
}

bool run_export(const ExportOptions& options, BatchSession& batch) {
    const OpenState state = batch.open(options.model);
    if (state == OpenState::unread) return false;
    Workspace& workspace = batch.session.workspace;
    bool done = true;
    const auto write = [&](const std::string& path, int (*writer)(const std::string&, Workspace&, Prompts&)) {
        if (!path.empty() && writer(path, workspace, batch.prompts) != 0) done = false;
    };
    // Bodies can be drawn without a line, where the file says that they stand.
    write(options.body_dxf, output::write_body_dxf);
    write(options.plan_dxf, [](const std::string& path, Workspace& w, Prompts& prompts) {
        return output::write_plan_dxf(path, w, prompts);
    });
    const std::array tables{
        std::pair{&options.profile_table, &output::write_profile_table},
        std::pair{&options.model_table, &output::write_model_table},
        std::pair{&options.mesh, &output::write_mesh_header},
        std::pair{&options.clean_profile, &output::write_clean_profile_table},
        std::pair{&options.clean_model, &output::write_clean_model_table},
    };
    for (const auto& [path, writer] : tables) {
        if (path->empty()) continue;
        if (state != OpenState::ready || writer(*path, workspace, batch.prompts) != 0) done = false;
    }
    return done;
}

}  // namespace anomalis::batch
