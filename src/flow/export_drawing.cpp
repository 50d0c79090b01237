#include "flow/export_drawing.h"

#include "core/failure.h"
#include "core/paths.h"
#include "edit/workbench.h"
#include "flow/kept_files.h"
#include "model/refresh_model.h"
#include "output/dxf.h"

namespace anomalis::flow {

namespace {

template <class Write>
Exported export_drawing(Session& session, const std::string& title, const std::string& ending, Write write) {
    const MessageScope scope(session.prompts);
    const std::string folder = current_folder();
    const std::string& model = session.workspace.model_file;
    FileRequest request;
    request.title = title;
    request.filter = "DXF files (*.dxf)|*.dxf|All files (*.*)|*.*";
    request.default_name = model.empty() ? "" : folder_name(model) + base_name(model) + ending;
    request.default_extension = "dxf";
    request.confirm_overwrite = true;
    Exported exported{ExportOutcome::cancelled, ""};
    const auto path = session.save_file_dialog(request);
    if (path && refused_over_open_file("The drawing", *path, session.workspace, session.prompts)) {
        exported.outcome = ExportOutcome::failed;
    } else if (path) {
        // What is drawn is the model as it stands, also when no chart has shown it yet.
        const int status =
            report_failure(session.prompts, "Nothing was exported: ", [&] { model::refresh_model(session); });
        exported = status == 0 && write(*path) == 0 ? Exported{ExportOutcome::written, *path}
                                                    : Exported{ExportOutcome::failed, ""};
    }
    change_to_folder(folder);
    return exported;
}

}  // namespace

Exported export_body_dxf(edit::Workbench& workbench) {
    Session& session = workbench.session;
    if (session.workspace.body_count <= 0) return {};
    return export_drawing(session, "Enter name of 3D model DXF export file", "_3d.dxf",
                          [&](const std::string& path) {
                              return output::write_body_dxf(path, session.workspace, session.prompts);
                          });
}

Exported export_plan_dxf(edit::Workbench& workbench) {
    Session& session = workbench.session;
    return export_drawing(session, "Enter name of DXF export file", ".dxf", [&](const std::string& path) {
        return output::write_plan_dxf(path, session.workspace, session.prompts);
    });
}

}  // namespace anomalis::flow
