#include "window/shell/form_views.h"

#include <QAction>
#include <QMenu>

#include "core/paths.h"
#include "edit/display_check.h"
#include "show/pointer_panels.h"
#include "window/panels/charts_panel.h"
#include "window/panels/definitions_page.h"
#include "window/panels/processing_panel.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_anomalis.h"
#include "window/shell/form_bodies.h"
#include "window/shell/form_menus.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

FormViews::FormViews(Form_anomalis& form) : QObject(&form), form_(form) {
    add_file_entries();
    add_bodies_entries();
    add_chart_entries();
}

void FormViews::add_file_entries() {
    FormMenus& menus = form_.menus();
    QMenu& file = menus.file_menu();
    QAction* leave = form_.findChild<QAction*>("menu_exit");
    const auto add = [&](const char* name, const QString& text, const QString& tip) {
        QAction* action = menus.add_action(file, name, text, tip);
        file.insertAction(leave, action);
        return action;
    };
    QAction* save = add("menu_save_directory", tr("Save &working directory"),
                        tr("Keep the current folder as the one that the next session starts in"));
    QAction* restore = add("menu_restore_directory", tr("Return to working &directory"),
                           tr("Make the kept folder the current one again"));
    logging_ = add("menu_do_logging", tr("&Logging"),
                   tr("Write what is done into axm_logging.dat in the current folder"));
    logging_->setCheckable(true);
    file.insertSeparator(leave);
    connect(save, &QAction::triggered, this, &FormViews::save_directory);
    connect(restore, &QAction::triggered, this, &FormViews::restore_directory);
    connect(logging_, &QAction::toggled, this, &FormViews::toggle_logging);
}

void FormViews::add_bodies_entries() {
    FormMenus& menus = form_.menus();
    QMenu& bodies = menus.bodies_menu();
    QMenu* highlight = menus.add_menu(bodies, "menu_highlight", tr("&Highlight current body"));
    QAction* on = menus.add_action(*highlight, "menu_highlight_on", tr("&On"),
                                   tr("Draw the current body in magenta, in the section and in the plan"));
    on->setCheckable(true);
    on->setChecked(form_.workbench().view.highlight_on);
    connect(on, &QAction::toggled, this, &FormViews::set_highlight);
    QAction* defaults =
        menus.add_action(bodies, "menu_save_defaults", tr("Save current body parameters as &default"),
                         tr("New bodies start with type, dip, sizes, density, susceptibility and colour of "
                            "this one"));
    connect(defaults, &QAction::triggered, this, &FormViews::save_defaults);
}

void FormViews::add_chart_entries() {
    chart::GrapherWidget& section = form_.charts().chart_widget(edit::chart_section);
    section.set_menu_opening([this](float x, float y) { section_menu_opens(x, y); });
    add_here_ = new QAction(tr("Add a body here"), section.menu());
    add_here_->setObjectName("menu_add_body_here");
    add_here_->setToolTip(tr("A new body with its top at the pointer"));
    add_here_->setEnabled(false);
    connect(add_here_, &QAction::triggered, this, &FormViews::add_body_here);
    section.menu()->insertAction(section.menu()->actions().value(0), add_here_);
    chart::GrapherWidget& plan = form_.charts().plan_widget();
    for (chart::GrapherWidget* chart : {&section, &plan}) {
        const bool to_plan = chart == &section;
        auto* other = new QAction(to_plan ? tr("Show Plan") : tr("Show Section"), chart->menu());
        other->setObjectName(to_plan ? "menu_section_show_plan" : "menu_plan_show_section");
        connect(other, &QAction::triggered, this, [this, to_plan] { form_.charts().show_plan(to_plan); });
        QAction* first = chart->menu()->actions().value(to_plan ? 1 : 0);
        chart->menu()->insertAction(first, other);
        chart->menu()->insertSeparator(first);
    }
}

void FormViews::section_menu_opens(float x, float y) {
    menu_place_ = show::place_under(form_.charts().chart_widget(edit::chart_section).chart(), x, y);
    add_here_->setEnabled(menu_place_ && !form_.guards().closed());
}

void FormViews::add_body_here() {
    if (menu_place_) form_.bodies().add_body_here(menu_place_->x, menu_place_->y);
}

void FormViews::enter_model_page() {
    edit::Workbench& workbench = form_.workbench();
    flow::ModelView& view = form_.charts().view();
    DefinitionsPage& page = form_.definitions_page();
    commit_boxes(page);
    form_.update_line_state();
    if (edit::line_loaded(workbench.session.workspace)) {
        const MessageScope messages(workbench.session.prompts);  // shown when the first tab is back
        const edit::DisplayCheck check =
            edit::validate_model_display(workbench, page.processing().display_texts());
        if (check.status != 0) {
            form_.show_definitions_tab();
            if (check.box) page.processing().box(*check.box)->setFocus();
            return;
        }
        page.processing().update_base_frame();
    }
    view.set_on_page(true);
    view.display_model();
}

void FormViews::toggle_logging(bool on) {
    Session& session = form_.workbench().session;
    if (on) {
        session.log.turn_on(session.prompts);
    } else {
        session.log.turn_off(session.prompts);
    }
}

void FormViews::save_directory() {
    form_.workbench().session.save_directory();
    form_.status().show_text(tr("Sessions start in %1").arg(QString::fromStdString(current_folder())));
}

void FormViews::restore_directory() {
    form_.workbench().session.restore_directory();
    form_.status().show_text(tr("The current folder is %1").arg(QString::fromStdString(current_folder())));
}

void FormViews::save_defaults() {
    const edit::Workbench& workbench = form_.workbench();
    const int current = workbench.view.current_body;
    if (form_.guards().closed() || current < 1 || current > workbench.session.workspace.body_count) return;
    workbench.session.save_body_defaults(current);
    form_.status().show_text(tr("New bodies start like body %1").arg(current));
}

void FormViews::set_highlight(bool on) {
    form_.workbench().view.highlight_on = on;
    form_.charts().view().display_model();
}

}  // namespace anomalis::window
