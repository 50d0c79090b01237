#include "window/shell/form_menus.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSignalBlocker>

namespace anomalis::window {

FormMenus::FormMenus(QMainWindow& window, const std::vector<flow::ExampleFile>& examples)
    : QObject(&window), window_(window) {
    make_file_menu(examples);
    make_view_menu();
    bodies_menu_ = add_bar_menu("menu_bodies", tr("&Bodies"));
    make_model_menu();
    make_help_menu();
    show_line_menus(false);
}

QMenu* FormMenus::add_bar_menu(const char* name, const QString& text) {
    QMenu* menu = window_.menuBar()->addMenu(text);
    menu->setObjectName(name);
    menu->setToolTipsVisible(true);
    return menu;
}

QMenu* FormMenus::add_menu(QMenu& parent, const char* name, const QString& text) {
    QMenu* menu = parent.addMenu(text);
    menu->setObjectName(name);
    menu->setToolTipsVisible(true);
    return menu;
}

QAction* FormMenus::add_action(QMenu& menu, const char* name, const QString& text, const QString& tip) {
    QAction* action = menu.addAction(text);
    action->setObjectName(name);
    action->setToolTip(tip);
    return action;
}

void FormMenus::make_file_menu(const std::vector<flow::ExampleFile>& examples) {
    QMenu* file = file_menu_ = add_bar_menu("menu_file", tr("&File"));
    QAction* read_all =
        add_action(*file, "menu_open_model_0", tr("&Read Data Format and Model Definitions"),
                   tr("Open a workspace file: how the data are read, the settings and the bodies"));
    read_all->setShortcut(QKeySequence::Open);
    connect(read_all, &QAction::triggered, this, &FormMenus::read_all_wanted);
    file->addSeparator();
    QAction* read_bodies = add_action(*file, "menu_open_model_3", tr("Read &Model Defintions"),
                                      tr("Take the bodies alone from another workspace file"));
    connect(read_bodies, &QAction::triggered, this, &FormMenus::read_bodies_wanted);
    if (!examples.empty()) {
        QMenu* menu = add_menu(*file, "menu_examples", tr("&Examples"));
        int number = 0;
        for (const flow::ExampleFile& example : examples) {
            const QString path = QString::fromStdString(example.path);
            QAction* entry = menu->addAction(QString::fromStdString(example.title));
            entry->setObjectName("menu_example_" + QString::number(number++));
            entry->setToolTip(tr("Open, load and show %1").arg(path));
            connect(entry, &QAction::triggered, this, [this, path] { emit example_chosen(path); });
        }
    }
    file->addSeparator();
    QAction* leave = add_action(*file, "menu_exit", tr("E&xit"), tr("Close the window; nothing is saved"));
    leave->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(leave, &QAction::triggered, this, &FormMenus::exit_wanted);
}

void FormMenus::make_view_menu() {
    view_menu_ = add_bar_menu("menu_view", tr("&View"));
    display_axes_ = add_action(*view_menu_, "menu_display_axes", tr("Display &Axes"),
                               tr("Axes and numbers on the charts"));
    display_axes_->setCheckable(true);
    display_axes_->setChecked(true);
    connect(display_axes_, &QAction::toggled, this, &FormMenus::display_axes_toggled);
    QMenu* mode = add_menu(*view_menu_, "menu_view_mode", tr("&Show"));
    auto* group = new QActionGroup(this);
    const std::array names{"menu_view_mode_0", "menu_view_mode_1"};
    const std::array texts{tr("&Section"), tr("&Plan")};
    const std::array tips{tr("The section below the curves"), tr("The plan below the curves")};
    for (std::size_t i = 0; i < view_modes_.size(); ++i) {
        view_modes_[i] = add_action(*mode, names[i], texts[i], tips[i]);
        view_modes_[i]->setCheckable(true);
        view_modes_[i]->setActionGroup(group);
        connect(view_modes_[i], &QAction::triggered, this, [this, i] { emit plan_wanted(i == 1); });
    }
    set_plan(false);
}

void FormMenus::make_model_menu() {
    model_menu_ = add_bar_menu("menu_model", tr("&Model"));
    recalc_ = add_action(*model_menu_, "menu_force_recalc", tr("Force &Recalc"),
                         tr("Calculate every body's response anew"));
    recalc_->setShortcut(QKeySequence(Qt::Key_F5));
    connect(recalc_, &QAction::triggered, this, &FormMenus::recalc_wanted);
}

void FormMenus::make_help_menu() {
    help_menu_ = add_bar_menu("menu_help", tr("&Help"));
    QAction* about = add_action(*help_menu_, "menu_about", tr("&About"), tr("Which version this is"));
    connect(about, &QAction::triggered, this, &FormMenus::about_wanted);
}

void FormMenus::show_line_menus(bool shown) {
    for (QMenu* menu : {view_menu_, bodies_menu_, model_menu_}) menu->menuAction()->setVisible(shown);
    display_axes_->setVisible(shown);
    recalc_->setEnabled(shown);
}

bool FormMenus::display_axes() const {
    return display_axes_->isChecked();
}

void FormMenus::set_display_axes(bool on) {
    const QSignalBlocker block(display_axes_);
    display_axes_->setChecked(on);
}

void FormMenus::set_plan(bool plan) {
    view_modes_[plan ? 1 : 0]->setChecked(true);
}

}  // namespace anomalis::window
