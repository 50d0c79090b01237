#include "flow/export_flow.h"

#include <functional>
#include <vector>

#include "core/failure.h"
#include "core/paths.h"
#include "core/save_question.h"
#include "edit/ensemble_in_force.h"
#include "edit/workbench.h"
#include "flow/kept_files.h"
#include "model/refresh_model.h"
#include "output/clean_tables.h"
#include "output/ensemble_table.h"
#include "output/tables.h"

namespace anomalis::flow {

namespace {

/// The name that an export proposes: that of the model with another ending; "" without a model file.
std::string proposed_name(const Workspace& workspace, const std::string& ending) {
    const std::string& model_file = workspace.model_file;
    return model_file.empty() ? "" : folder_name(model_file) + base_name(model_file) + ending;
}

/// Asks, calculates what is out of date, writes. `write` returns 0 or -1; it is handed what the table must
/// say of the numbers in it.
Exported export_file(
    edit::Workbench& workbench, const FileRequest& request,
    const std::function<int(const std::string& path, const std::vector<std::string>& failures)>& write) {
    Session& session = workbench.session;
    const std::string folder = current_folder();
    Exported exported{ExportOutcome::cancelled, ""};
    const auto path = ask_save_path(session.prompts, request);
    if (path && refused_over_open_file("The export", *path, session.workspace, session.prompts)) {
        exported.outcome = ExportOutcome::failed;
    } else if (path) {
        const MessageScope scope(session.prompts);
        std::vector<std::string> failures;
        const int status = report_failure(session.prompts, "Nothing was exported: ", [&] {
            if (edit::line_loaded(session.workspace)) model::refresh_model(session);
            // What a body failed with was told when it was calculated, perhaps long ago.
            failures = model::calculation_failures(session);
        });
        exported = status == 0 && write(*path, failures) == 0 ? Exported{ExportOutcome::written, *path}
                                                              : Exported{ExportOutcome::failed, ""};
    }
    change_to_folder(folder);
    return exported;
}

using MapWriter = std::function<int(const std::string& path, const Workspace& workspace, Prompts& prompts,
                                    const std::vector<std::string>& failures)>;

Exported export_map(edit::Workbench& workbench, const FileRequest& request, const MapWriter& write) {
    Session& session = workbench.session;
    const Workspace& workspace = session.workspace;
    if (workspace.station_count <= 0 && workspace.body_count <= 0) return {};
    // Better said before a name is asked for.
    const int known = report_failure(
        session.prompts, "Nothing was exported: ", [&] { output::require_coordinate_system(workspace); });
    if (known != 0) return {ExportOutcome::failed, ""};
    return export_file(workbench, request,
                       [&](const std::string& path, const std::vector<std::string>& failures) {
                           return write(path, workspace, session.prompts, failures);
                       });
}

}  // namespace

Exported export_profile_data(edit::Workbench& workbench) {
    Session& session = workbench.session;
    if (session.workspace.station_count <= 0) return {};
    const FileRequest request{"Select the profile data file to create",
                              "Profile Data Files (*.csv)|*.csv|All files (*.*)|*.*",
                              proposed_name(session.workspace, ".csv"), "csv"};
    return export_file(
        workbench, request, [&](const std::string& path, const std::vector<std::string>& failures) {
            return output::write_profile_table(path, session.workspace, session.prompts, failures);
        });
}

Exported export_clean_profile(edit::Workbench& workbench) {
    Session& session = workbench.session;
    if (session.workspace.station_count <= 0) return {};
    const FileRequest request{"Select the clean profile table to create",
                              "Tables (*.csv)|*.csv|All files (*.*)|*.*",
                              proposed_name(session.workspace, "_profile_clean.csv"), "csv"};
    return export_file(
        workbench, request, [&](const std::string& path, const std::vector<std::string>& failures) {
            return output::write_clean_profile_table(path, session.workspace, session.prompts, failures);
        });
}

Exported export_clean_model(edit::Workbench& workbench) {
    Session& session = workbench.session;
    if (session.workspace.body_count <= 0) return {};
    const FileRequest request{"Select the clean table of bodies to create",
                              "Tables (*.csv)|*.csv|All files (*.*)|*.*",
                              proposed_name(session.workspace, "_model_clean.csv"), "csv"};
    return export_file(
        workbench, request, [&](const std::string& path, const std::vector<std::string>& failures) {
            return output::write_clean_model_table(path, session.workspace, session.prompts, failures);
        });
}

Exported export_geojson(edit::Workbench& workbench) {
    return export_map(
        workbench,
        {"Select the GeoJSON file to create", "GeoJSON (*.geojson)|*.geojson|All files (*.*)|*.*",
         proposed_name(workbench.session.workspace, ".geojson"), "geojson"},
        output::write_geojson);
}

Exported export_geopackage(edit::Workbench& workbench, output::GisSystem system) {
    return export_map(workbench,
                      {"Select the GeoPackage to create", "GeoPackages (*.gpkg)|*.gpkg|All files (*.*)|*.*",
                       proposed_name(workbench.session.workspace, ".gpkg"), "gpkg"},
                      [system](const std::string& path, const Workspace& workspace, Prompts& prompts,
                               const std::vector<std::string>& failures) {
                          return output::write_geopackage(path, workspace, system, prompts, failures);
                      });
}

Exported export_ensemble(edit::Workbench& workbench) {
    Session& session = workbench.session;
    const auto ensemble = edit::ensemble_in_force(workbench);
    if (!ensemble) return {};
    const FileRequest request{"Select the table of models to create",
                              "Tables (*.csv)|*.csv|All files (*.*)|*.*",
                              proposed_name(session.workspace, "_uncertainty.csv"), "csv"};
    return export_file(workbench, request, [&](const std::string& path, const std::vector<std::string>&) {
        return output::write_ensemble_table(path, session.workspace, *ensemble, session.prompts);
    });
}

std::string screenshot_path(const Workspace& workspace, ScreenshotKind kind, bool plan) {
    if (plan) return proposed_name(workspace, "_plan.bmp");
    return proposed_name(workspace, kind == ScreenshotKind::form ? "_model_form.bmp" : "_model_graph.bmp");
}

}  // namespace anomalis::flow
