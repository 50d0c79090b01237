#include "flow/take_line.h"

#include <memory>
#include <utility>

#include "core/paths.h"
#include "edit/body_form.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "edit/zoom.h"
#include "flow/new_line_choice.h"
#include "flow/open_flow.h"

namespace anomalis::flow {

void start_untitled(edit::Workbench& workbench, Workspace&& fresh, const NewLine& line) {
    Session& session = workbench.session;
    edit::settle_history(workbench);
    auto former = std::make_shared<Workspace>(std::move(session.workspace));
    session.workspace = std::move(fresh);
    session.workspace.model_file.clear();
    session.workspace.model_file_date = 0;
    edit::settle_bodies(session.workspace);
    drop_stations(session.workspace);
    reset_calculated_data(session.workspace, session.prompts);
    edit::note_other_model(workbench, line.step, std::move(former), line.title);
    workbench.base_from_mean = {};
    workbench.reports = {};
    if (line.imported) workbench.reports.imported = std::make_shared<intake::LoadReport>(*line.imported);
    workbench.view.current_body = 1;
    edit::reset_view(session.workspace, workbench.view, session.prompts);
    refresh_data_head(workbench);
}

Workspace workspace_of_new_line(const edit::Workbench& workbench) {
    const Session& session = workbench.session;
    Workspace fresh;
    fresh.bodies.resize(static_cast<std::size_t>(fresh.body_capacity) + 1);
    fresh.formulas = formulas_of_new_line(session.settings);
    forget_field(fresh);
    fresh.display = session.workspace.display;
    return fresh;
}

void start_with_data_file(edit::Workbench& workbench, const std::string& path) {
    Workspace fresh = workspace_of_new_line(workbench);
    fresh.definition = workbench.session.workspace.definition;
    fresh.definition.data_file = path;
    fresh.definition.data_file_as_named.clear();
    fresh.definition.data_file_date = 0;
    start_untitled(workbench, std::move(fresh), {.step = "data file", .title = file_name(path)});
}

}  // namespace anomalis::flow
