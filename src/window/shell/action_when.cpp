// When an action of the table can do anything, and which marks are set.

#include "edit/add_bodies.h"
#include "edit/pipe_tie.h"
#include "edit/workbench.h"
#include "window/shell/action_table.h"

namespace anomalis::window {

namespace {

bool has_current_body(const edit::Workbench& workbench) {
    const int number = workbench.view.current_body;
    return number >= 1 && number <= workbench.session.workspace.body_count;
}

template <class Test>
bool any_body(const Workspace& workspace, Test test) {
    for (int number = 1; number <= workspace.body_count; ++number)
        if (test(workspace.body(number))) return true;
    return false;
}

bool line_holds(When when, const edit::Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    if (!edit::line_loaded(workspace)) return false;
    switch (when) {
        case When::survey_line:
            return !workspace.source.file.empty();
        case When::igrf_in:
            return workspace.has_mag() && workspace.source.igrf_change > igrf_removed;
        case When::igrf_out:
            return workspace.has_mag() && workspace.source.igrf_change < igrf_added;
        default:
            return true;
    }
}

bool current_body_holds(When when, const edit::Workbench& workbench) {
    if (!has_current_body(workbench)) return false;
    const int number = workbench.view.current_body;
    const Workspace& workspace = workbench.session.workspace;
    switch (when) {
        case When::body_shown:
            return workbench.view.on_page;
        case When::body_across:
            return edit::stands_across(workspace, number);
        case When::body_before:
            return number > 1;
        case When::body_behind:
            return number < workspace.body_count;
        default:
            return true;
    }
}

bool bodies_hold(When when, const Workspace& workspace) {
    switch (when) {
        case When::several_bodies:
            return workspace.body_count > 1;
        case When::fixed_body:
            return any_body(workspace, [](const ModelBody& body) { return body.vary == 0; });
        case When::free_body:
            return any_body(workspace, [](const ModelBody& body) { return body.vary != 0; });
        case When::body_with_demag:
            return any_body(workspace,
                            [](const ModelBody& body) { return body.include_demagnetisation != 0; });
        case When::body_without_demag:
            return any_body(workspace,
                            [](const ModelBody& body) { return body.include_demagnetisation == 0; });
        case When::body_turned_off:
            return any_body(workspace, [](const ModelBody& body) { return body.turned_off != 0; });
        case When::body_in_use:
            return any_body(workspace, [](const ModelBody& body) { return body.turned_off == 0; });
        default:
            return workspace.body_count > 0;
    }
}

}  // namespace

bool holds(When when, const edit::Workbench& workbench) {
    const Session& session = workbench.session;
    switch (when) {
        case When::any_time:
        case When::always:
            return true;
        case When::line:
        case When::survey_line:
        case When::igrf_in:
        case When::igrf_out:
            return line_holds(when, workbench);
        case When::stations:
            return session.workspace.station_count > 0;
        case When::drawable:
            return session.workspace.station_count > 0 || session.workspace.body_count > 0;
        case When::bodies:
        case When::several_bodies:
        case When::fixed_body:
        case When::free_body:
        case When::body_with_demag:
        case When::body_without_demag:
        case When::body_turned_off:
        case When::body_in_use:
            return bodies_hold(when, session.workspace);
        case When::body:
        case When::body_shown:
        case When::body_across:
        case When::body_before:
        case When::body_behind:
            return current_body_holds(when, workbench);
        case When::best_model:
            return session.inversion.best_model_available;
        case When::kept_folder:
            return session.settings.get(settings_section, "WorkingDirectory") != no_setting;
        case When::running:
        case When::pointed:
            break;
    }
    return false;
}

bool is_set(Mark mark, const edit::Workbench& workbench) {
    const edit::ViewState& view = workbench.view;
    const Workspace& workspace = workbench.session.workspace;
    switch (mark) {
        case Mark::none:
            return false;
        case Mark::axes:
            return view.show_axes;
        case Mark::regional:
            return view.show_regional;
        case Mark::ensemble:
            return view.show_ensemble;
        case Mark::legend:
            return workbench.session.preferences.legend;
        case Mark::section:
            return !view.show_plan;
        case Mark::plan:
            return view.show_plan;
        case Mark::highlight:
            return view.highlight_on;
        case Mark::logging:
            return workbench.session.log.on();
        case Mark::pipe_tie:
            return edit::pipes_are_tied(workspace);
        case Mark::exact_formulas:
            return workspace.formulas == Formulas::exact;
    }
    return false;
}

}  // namespace anomalis::window
