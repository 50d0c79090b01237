#include "output/tables.h"

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "output/clean_tables.h"
#include "output/dxf.h"
#include "output/gis_files.h"

namespace anomalis::batch {

bool run_forward(const ForwardOptions& options, BatchSession& batch) {
    return batch.open_ready(options.model) &&
           batch.write_result(options.output, [&batch](const TextSink& put) {
               output::put_profile_table(batch.session.workspace, put, batch.failures());
           }) == 0;
}

bool run_export(const ExportOptions& options, BatchSession& batch) {
    const OpenState state = batch.open(options.model);
    if (state == OpenState::unread) return false;
    const Workspace& workspace = batch.session.workspace;
    bool done = true;
    const auto write = [&](const std::string& path, bool possible, auto writer, const auto&... failures) {
        if (path.empty()) return;
        if (!possible || writer(path, workspace, batch.prompts, failures...) != 0) done = false;
    };
    // Bodies can be drawn and listed without a line, where the file says that they stand.
    write(options.body_dxf, true, &output::write_body_dxf);
    write(options.plan_dxf, true, &output::write_plan_dxf);
    const bool ready = state == OpenState::ready;
    const bool listed = ready || state == OpenState::no_data;
    const std::vector<std::string> failures = batch.failures();
    write(options.profile_table, ready, &output::write_profile_table, failures);
    write(options.model_table, listed, &output::write_model_table, failures);
    write(options.mesh, ready, &output::write_mesh_header);
    write(options.clean_profile, ready, &output::write_clean_profile_table, failures);
    write(options.clean_model, listed, &output::write_clean_model_table, failures);
    write(options.geojson, listed, &output::write_geojson, failures);
    const auto write_package = [&](const std::string& path, const auto& model, auto& prompts,
                                   const auto& told) {
        const auto system = options.wgs84 ? output::GisSystem::geographic : output::GisSystem::of_line;
        return output::write_geopackage(path, model, system, prompts, told);
    };
    write(options.geopackage, listed, write_package, failures);
    return done;
}

}  // namespace anomalis::batch
