#include "window/shell/form_files.h"

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QGridLayout>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>

#include "core/failure.h"
#include "core/paths.h"
#include "diagnostics/qt/form_find_file.h"
#include "diagnostics/qt/window_facts.h"
#include "edit/transform_change.h"
#include "flow/export_drawing.h"
#include "transform/qt/form_define_point_transform.h"
#include "window/panels/definitions_page.h"
#include "window/panels/definitions_panel.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_anomalis.h"
#include "window/shell/form_menus.h"
#include "window/shell/screenshot.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

namespace {

constexpr double twips_a_pixel = 15;
constexpr int transform_row = 7;  // of the definitions, beside the load
constexpr int transform_column = 4;

QString qt_text(const std::string& text) {
    return QString::fromStdString(text);
}

}  // namespace

FormFiles::FormFiles(Form_anomalis& form) : QObject(&form), form_(form) {
    add_save_entries();
    add_export_entries();
    add_recent_entries();
    add_buttons();
    add_transform_button();
    make_misfit_frame(form_);
    FormMenus& menus = form_.menus();
    QAction* find = menus.add_action(menus.help_menu(), "menu_find_file", tr("&Find File in Path"),
                                     tr("What the program finds of its files, folders and libraries"));
    connect(find, &QAction::triggered, this, &FormFiles::find_file);
}

QAction* FormFiles::add_entry(QAction* before, const char* name, const QString& text, const QString& tip) {
    QMenu& file = form_.menus().file_menu();
    QAction* action = form_.menus().add_action(file, name, text, tip);
    file.insertAction(before, action);
    return action;
}

void FormFiles::add_save_entries() {
    const auto entries = form_.menus().file_menu().actions();
    QAction* separator = entries.value(1);  // behind the entry that reads everything
    separator->setObjectName("menu_open_model_2");
    QAction* save = add_entry(separator, "menu_open_model_1", tr("&Save Data Format and Model Definitions"),
                              tr("Write everything into a workspace file of a name to be chosen, and the "
                                 "tables beside it"));
    save->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    connect(save, &QAction::triggered, this, &FormFiles::save_as);
    auto* key = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), &form_);
    key->setObjectName("Shortcut_save");
    connect(key, &QShortcut::activated, this, &FormFiles::save_by_key);
}

void FormFiles::add_export_entries() {
    FormMenus& menus = form_.menus();
    QMenu& file = menus.file_menu();
    const auto entries = file.actions();
    const auto place = entries.indexOf(form_.findChild<QAction*>("menu_open_model_3")) + 1;
    QAction* before = entries.value(place);
    file.insertSeparator(before);
    QMenu* drawings = menus.add_menu(file, "menu_export_dxf", tr("Export &DXF"));
    file.insertAction(before, drawings->menuAction());
    QAction* solids = menus.add_action(*drawings, "menu_export_dxf_0", tr("&3-D Bodies"),
                                       tr("Write the bodies as faces in space, for CAD"));
    QAction* plan = menus.add_action(*drawings, "menu_export_dxf_1", tr("&Plan"),
                                     tr("Write the profile and the outlines of the bodies, for CAD"));
    connect(solids, &QAction::triggered, this, [this] { export_drawing(false); });
    connect(plan, &QAction::triggered, this, [this] { export_drawing(true); });
    QAction* profile = add_entry(before, "menu_export_data", tr("Export data &values"),
                                 tr("Write the profile, one line a station: observed and calculated"));
    connect(profile, &QAction::triggered, this, [this] { export_table(flow::export_profile_data); });
    QMenu* clean = menus.add_menu(file, "menu_export_clean", tr("Export &clean tables"));
    file.insertAction(before, clean->menuAction());
    QAction* rows =
        menus.add_action(*clean, "menu_export_clean_0", tr("&Profile"),
                         tr("One row a station, as data-frame libraries read it without options"));
    QAction* bodies = menus.add_action(*clean, "menu_export_clean_1", tr("&Bodies"),
                                       tr("One row a body, as data-frame libraries read it without options"));
    connect(rows, &QAction::triggered, this, [this] { export_table(flow::export_clean_profile); });
    connect(bodies, &QAction::triggered, this, [this] { export_table(flow::export_clean_model); });
    file.insertSeparator(before);
}

void FormFiles::add_recent_entries() {
    QMenu& file = form_.menus().file_menu();
    const auto entries = file.actions();
    const auto leave = entries.indexOf(form_.findChild<QAction*>("menu_exit"));
    QAction* before = entries.value(leave - 1);  // the separator above it
    recent_separator_ = file.insertSeparator(before);
    recent_separator_->setObjectName("sep_file_list");
    for (int i = 0; i < flow::most_recent_files; ++i) {
        const std::string name = "menu_file_list_" + std::to_string(i);
        QAction* entry = add_entry(before, name.c_str(), QString(), tr("Open this workspace file"));
        connect(entry, &QAction::triggered, this, [this, i] { open_recent(i); });
        recent_.at(static_cast<std::size_t>(i)) = entry;
    }
}

QPushButton* FormFiles::add_button(const char* name, const QString& text, const QString& tip) {
    auto* button = new QPushButton(text);
    name_control(*button, name, text, tip);
    form_.findChild<QWidget*>("Frame_buttons")->layout()->addWidget(button);
    return button;
}

void FormFiles::add_buttons() {
    QPushButton* charts = add_button("Command_Save_Screenshot_0", tr("Screenshot"),
                                     tr("Picture of the charts, or of the plan, to the clipboard and as a "
                                        "bitmap beside the workspace file"));
    QPushButton* whole = add_button("Command_Save_Screenshot_1", tr("Whole form"),
                                    tr("Picture of the whole window with the misfit, to the clipboard and as "
                                       "a bitmap beside the workspace file"));
    save_button_ = add_button("Command_save_axm_model", tr("Save"),
                              tr("Write everything into the workspace file it came from (Ctrl+S)"));
    save_button_->setEnabled(false);
    connect(charts, &QPushButton::clicked, this, [this] { screenshot(flow::ScreenshotKind::charts); });
    connect(whole, &QPushButton::clicked, this, [this] { screenshot(flow::ScreenshotKind::form); });
    connect(save_button_, &QPushButton::clicked, this, &FormFiles::save_by_button);
}

void FormFiles::add_transform_button() {
    QPushButton* button = make_button({"Command_define_observed_transform", "Define transform...", "",
                                       "Turn, stretch and shift the coordinates of the data file, and change "
                                       "their elevations, before anything else is done with them"});
    form_.definitions_page().definitions().grid()->addWidget(button, transform_row, transform_column,
                                                             Qt::AlignLeft);
    connect(button, &QPushButton::clicked, this, &FormFiles::define_transform);
}

void FormFiles::read_recent_files() {
    edit::Workbench& workbench = form_.workbench();
    workbench.recent_files = flow::read_recent_files(workbench.session.settings, recent_files_section);
    update();
}

void FormFiles::update() {
    const edit::Workbench& workbench = form_.workbench();
    save_button_->setEnabled(workbench.session.model_changed && !form_.guards().busy);
    recent_separator_->setVisible(!workbench.recent_files.empty());
    for (std::size_t i = 0; i < recent_.size(); ++i) {
        const bool used = i < workbench.recent_files.size();
        recent_[i]->setVisible(used);
        if (!used) continue;
        const std::string& path = workbench.recent_files[i];
        recent_[i]->setText(qt_text(flow::recent_file_caption(static_cast<int>(i) + 1, path)));
    }
}

bool FormFiles::may_act() {
    if (form_.guards().closed()) return false;
    commit_boxes(form_);
    return true;
}

flow::WindowLayout FormFiles::layout() const {
    const auto* tabs = form_.findChild<QWidget*>("Tab_model");
    return {tabs->width() * twips_a_pixel, form_.height() * twips_a_pixel, form_.menus().display_axes()};
}

void FormFiles::save_as() {
    if (may_act()) show_saved(flow::save_model(flow::SaveMode::with_dialog, form_.workbench(), layout()));
}

void FormFiles::save_by_button() {
    if (may_act()) show_saved(flow::save_by_button(form_.workbench(), layout()));
}

void FormFiles::save_by_key() {
    if (form_.workbench().session.workspace.model_file.empty()) {
        save_as();
    } else {
        save_by_button();
    }
}

void FormFiles::show_saved(flow::SaveOutcome outcome) {
    const std::string& path = form_.workbench().session.workspace.model_file;
    if (outcome == flow::SaveOutcome::saved) form_.status().show_text(tr("Saved as %1").arg(qt_text(path)));
    if (outcome == flow::SaveOutcome::nameless) form_.status().show_text(tr(flow::nameless_save_text));
    form_.show_caption();
}

void FormFiles::open_recent(int index) {
    if (!may_act()) return;
    form_.show_opened(flow::open_recent_file(form_.workbench(), index), flow::ReadMode::everything);
}

void FormFiles::export_table(flow::ExportOutcome (*export_flow)(edit::Workbench&)) {
    if (!may_act()) return;
    if (export_flow(form_.workbench()) == flow::ExportOutcome::nothing) QApplication::beep();
}

void FormFiles::export_drawing(bool plan) {
    if (!may_act()) return;
    Session& session = form_.workbench().session;
    plan ? flow::export_plan_dxf(session) : flow::export_body_dxf(session);
}

void FormFiles::screenshot(flow::ScreenshotKind kind) {
    if (!may_act()) return;
    edit::Workbench& workbench = form_.workbench();
    report_failure(workbench.session.prompts, "An error occurred while saving the screenshot: ", [&] {
        const std::string path = save_screenshot(form_, workbench, kind);
        form_.status().show_text(
            path.empty() ? tr("The picture is on the clipboard")
                         : tr("The picture is on the clipboard and in %1").arg(qt_text(file_name(path))));
    });
}

void FormFiles::define_transform() {
    if (!may_act()) return;
    edit::Workbench& workbench = form_.workbench();
    Session& session = workbench.session;
    transform::TransformDialog dialog(session.workspace.transform, transform_tab_,
                                      transform::stored_transform_folder(session.settings), session.prompts);
    transform::Form_define_point_transform form(dialog, session.settings, &form_);
    const int result = form.exec();
    transform_tab_ = dialog.tab();
    if (result != QDialog::Accepted || !edit::change_transform(workbench, dialog.transform())) return;
    DefinitionsPanel& definitions = form_.definitions_page().definitions();
    definitions.blank_results();
    emit definitions.definition_changed();
    form_.status().show_text(tr("The transform has changed: load the data again"));
}

void FormFiles::find_file() {
    Session& session = form_.workbench().session;
    const diagnostics::EnvironmentFacts facts{QApplication::applicationFilePath().toStdString(),
                                              session.settings.path(), diagnostics::window_component_lines(),
                                              flow::supporting_files(session.system.exe_folder)};
    diagnostics::Form_find_file(session.system, facts, session.prompts, &form_).exec();
}

}  // namespace anomalis::window
