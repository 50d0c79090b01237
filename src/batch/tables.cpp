#include "output/tables.h"

#include "batch/batch_session.h"
#include "batch/commands.h"

namespace anomalis {

bool run_forward(const ForwardOptions& options, BatchSession& batch) {
    return batch.open_ready(options.model) &&
           batch.write_result(options.output, profile_table_text(batch.session.workspace)) == 0;
}

bool run_export(const ExportOptions& options, BatchSession& batch) {
    if (!batch.open_ready(options.model)) return false;
    const Workspace& workspace = batch.session.workspace;
    bool done = true;
    const auto write = [&](const std::string& path,
                           int (*writer)(const std::string&, const Workspace&, Prompts&)) {
        if (!path.empty() && writer(path, workspace, batch.prompts) != 0) done = false;
    };
    write(options.profile_table, write_profile_table);
    write(options.model_table, write_model_table);
    write(options.mesh, write_mesh_header);
    return done;
}

}  // namespace anomalis
