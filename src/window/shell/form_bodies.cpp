#include "window/shell/form_bodies.h"

#include <array>

#include <QAction>
#include <QMenu>
#include <QSignalBlocker>

#include "edit/body_colours.h"
#include "edit/body_list.h"
#include "edit/pipe_tie.h"
#include "window/panels/charts_panel.h"
#include "window/panels/model_side.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_anomalis.h"
#include "window/shell/form_menus.h"

namespace anomalis::window {

namespace {

QString numbered(const char* name, int index) {
    return QString("%1_%2").arg(name).arg(index);
}

}  // namespace

FormBodies::FormBodies(Form_anomalis& form) : QObject(&form), form_(form) {
    wire_side();
    fill_bodies_menu();
    fill_model_menu();
}

void FormBodies::wire_side() {
    ModelSide& side = form_.side();
    connect(&side, &ModelSide::edited, &form_, &Form_anomalis::model_edited);
    connect(&side, &ModelSide::body_wanted, this,
            [this](int number) { form_.charts().view().select_body(number); });
    connect(&form_.charts(), &ChartsPanel::body_selected, &side, &ModelSide::display_body_parameters);
    connect(&side, &ModelSide::text_refused, this, [this](const QString& caption, const QString& text) {
        form_.status().show_text(
            tr("%1: “%2” is not accepted, the value stays").arg(caption, text.left(40).simplified()));
    });
}

QAction* FormBodies::add_entry(QMenu& menu, const QString& name, const QString& text, const QString& tip,
                               Command command) {
    QAction* action = form_.menus().add_action(menu, "", text, tip);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, [this, command = std::move(command)] { run(command); });
    return action;
}

void FormBodies::run(const Command& command) {
    if (form_.guards().closed()) return;
    form_.side().commit();
    if (command()) form_.model_edited();
    show_tie();
}

void FormBodies::fill_bodies_menu() {
    FormMenus& menus = form_.menus();
    QMenu& bodies = menus.bodies_menu();
    edit::Workbench& workbench = form_.workbench();
    const std::array adds{tr("&Add a new body"), tr("&Copy current body"), tr("S&plit current body")};
    const std::array add_tips{
        tr("A thick sheet across the line, in the middle of the view, its top on the ground"),
        tr("A second body like the current one, beside it along the line"),
        tr("Two bodies of half the width in the place of the current one")};
    for (int i = 0; i < 3; ++i) {
        const auto at = static_cast<std::size_t>(i);
        QAction* entry = add_entry(bodies, numbered("menu_add_body", i), adds[at], add_tips[at],
                                   [this, i] { return add_body(static_cast<edit::AddMode>(i)); });
        if (i == 0) entry->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_B));
        if (i == 1) entry->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
    }
    QMenu* remove = menus.add_menu(bodies, "menu_delete_body", tr("&Delete"));
    add_entry(*remove, "menu_delete_body_0", tr("&All bodies"),
              tr("Delete every body; undo brings them back"), [this, &workbench] {
                  const bool some = workbench.session.workspace.body_count > 0;
                  edit::delete_all_bodies(workbench);
                  return end_delete(some);
              });
    add_entry(*remove, "menu_delete_body_1", tr("&Current body"),
              tr("Delete the current body; undo brings it back"),
              [this, &workbench] { return end_delete(edit::delete_current_body(workbench)); });
    QMenu* sort = menus.add_menu(bodies, "menu_sort_bodies", tr("&Sort"));
    const std::array orders{tr("&Ascending distance"), tr("&Descending distance"),
                            tr("Send current body to &start"), tr("Send current body to &end")};
    const std::array order_tips{
        tr("By distance along the profile; all bodies get numbered names"),
        tr("By distance along the profile, the far end first; all bodies get numbered "
           "names"),
        tr("The current body becomes body 1"), tr("The current body becomes the last")};
    for (int i = 0; i < 4; ++i) {
        const auto at = static_cast<std::size_t>(i);
        add_entry(*sort, numbered("menu_sort_bodies", i), orders[at], order_tips[at],
                  [&workbench, i] { return edit::sort_bodies(workbench, static_cast<edit::BodyOrder>(i)); });
    }
    add_entry(bodies, "menu_shift_bodies", tr("Shift All &Bodies laterally"),
              tr("Move every body along the profile by a distance in m, 1 or more either way"),
              [&workbench] { return edit::shift_bodies(workbench); });
    bodies.addSeparator();
}

void FormBodies::fill_model_menu() {
    FormMenus& menus = form_.menus();
    QMenu& model = menus.model_menu();
    edit::Workbench& workbench = form_.workbench();
    QMenu* colour = menus.add_menu(model, "menu_colour_body", tr("&Colour bodies by ..."));
    const std::array properties{tr("&Susceptability"), tr("&Remanent J"), tr("&Density")};
    const std::array property_tips{tr("Dark for the lowest susceptibility, yellow for the highest"),
                                   tr("Dark for the lowest remanent magnetisation, yellow for the highest"),
                                   tr("Dark for the lowest density, yellow for the highest")};
    for (int i = 0; i < 3; ++i) {
        const auto at = static_cast<std::size_t>(i);
        add_entry(
            *colour, numbered("menu_colour_body", i), properties[at], property_tips[at],
            [&workbench, i] { return edit::colour_bodies(workbench, static_cast<edit::ColourProperty>(i)); });
    }
    add_flag_menu("menu_set_fix_flags", tr("Set &Fix body flags"), edit::BodyFlag::fix,
                  {"Free every body for the inversion", "Fix every body",
                   "Fix the bodies that are free, free the others"});
    add_entry(*form_.findChild<QMenu*>("menu_set_fix_flags"), "menu_set_fix_flags_3",
              tr("Fix outside inversion &limits"),
              tr("Fix the bodies that stand outside the part of the line that is fitted"),
              [&workbench] { return edit::fix_outside_limits(workbench); });
    add_flag_menu("menu_set_demag_flags", tr("Set &Demag flags"), edit::BodyFlag::demagnetisation,
                  {"Calculate every body with demagnetisation",
                   "Calculate every body without demagnetisation", "Change the mark of every body"});
    add_flag_menu("menu_set_disable_flag", tr("Set &Use body flags"), edit::BodyFlag::use,
                  {"Use every body in the model", "Turn every body off", "Change the mark of every body"});
    tie_ = add_entry(model, "menu_tie_pipe_depth_susc", tr("&Tie Pipe Depth and Susceptability"),
                     tr("While a bar changes the depth of a pipe its susceptibility follows, so that the "
                        "anomaly keeps its size"),
                     [&workbench] {
                         const bool before = edit::pipes_are_tied(workbench.session.workspace);
                         edit::toggle_pipe_tie(workbench);
                         return edit::pipes_are_tied(workbench.session.workspace) != before;
                     });
    tie_->setCheckable(true);
    // A file may have brought the tie.
    connect(&model, &QMenu::aboutToShow, this, &FormBodies::show_tie);
}

void FormBodies::add_flag_menu(const char* name, const QString& text, edit::BodyFlag flag,
                               const std::array<const char*, 3>& tips) {
    FormMenus& menus = form_.menus();
    edit::Workbench& workbench = form_.workbench();
    QMenu* menu = menus.add_menu(menus.model_menu(), name, text);
    const std::array settings{tr("&On"), tr("O&ff"), tr("Fli&p")};
    for (int i = 0; i < 3; ++i) {
        const auto at = static_cast<std::size_t>(i);
        add_entry(*menu, numbered(name, i), settings[at], tr(tips[at]), [&workbench, flag, i] {
            return edit::set_body_flags(workbench, flag, static_cast<edit::FlagSetting>(i));
        });
    }
}

bool FormBodies::add_body(edit::AddMode mode) {
    return end_add(edit::add_body_from_menu(form_.workbench(), mode));
}

void FormBodies::add_body_here(double distance, double elevation) {
    run([this, distance, elevation] {
        return end_add(edit::add_body_at(form_.workbench(), distance, elevation));
    });
}

bool FormBodies::end_add(bool added) {
    if (!added) return false;
    if (form_.workbench().session.workspace.body_count == 1) form_.side().reset_form_display();
    form_.show_model_tab();
    return true;
}

bool FormBodies::end_delete(bool deleted) {
    if (deleted && form_.workbench().session.workspace.body_count == 0) form_.side().reset_form_display();
    return deleted;
}

void FormBodies::show_tie() {
    const QSignalBlocker block(tie_);
    tie_->setChecked(edit::pipes_are_tied(form_.workbench().session.workspace));
}

}  // namespace anomalis::window
