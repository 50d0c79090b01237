#include "window/shell/session_controller.h"

#include <QApplication>

#include "core/log_place.h"
#include "core/paths.h"
#include "core/session.h"
#include "core/version.h"
#include "diagnostics/qt/form_find_file.h"
#include "diagnostics/qt/window_facts.h"
#include "flow/examples.h"
#include "flow/kept_files.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/form_about.h"
#include "window/shell/form_keyboard_shortcuts.h"

namespace anomalis::window {

SessionController::SessionController(QWidget& window, Session& session, Actions& actions,
                                     StatusPanels& status)
    : QObject(&window), window_(window), session_(session), status_(status) {
    actions.on(ActionId::logging, [this] { toggle_logging(); });
    actions.on(ActionId::save_directory, [this] { save_directory(); });
    actions.on(ActionId::restore_directory, [this] { restore_directory(); });
    actions.on(ActionId::keyboard_shortcuts, [this] { Form_keyboard_shortcuts(&window_).exec(); });
    actions.on(ActionId::find_file, [this] { find_file(); });
    actions.on(ActionId::about, [this] { tell_version(); });
}

void SessionController::toggle_logging() {
    if (session_.log.on()) {
        session_.log.turn_off(session_.prompts);
    } else if (!flow::refused_over_open_file("The log", log_path_here(), session_.workspace,
                                             session_.prompts)) {
        session_.log.turn_on(session_.prompts);
    }
}

void SessionController::save_directory() {
    session_.save_directory();
    status_.show_text(tr("Sessions start in %1").arg(QString::fromStdString(current_folder())));
}

void SessionController::restore_directory() {
    session_.restore_directory();
    status_.show_text(tr("The current folder is %1").arg(QString::fromStdString(current_folder())));
}

void SessionController::find_file() {
    const diagnostics::EnvironmentFacts facts{QApplication::applicationFilePath().toStdString(),
                                              session_.settings.path(), diagnostics::window_component_lines(),
                                              flow::supporting_files(session_.system.exe_folder)};
    diagnostics::Form_find_file(session_.system, facts, session_.prompts, &window_).exec();
}

void SessionController::tell_version() {
    const std::string words = "Anomalis " + std::string(application_version()) +
                              "\n\nMagnetic and gravity anomalies along a survey profile.";
    (new FormAbout(QString::fromStdString(words), &window_))->show();
}

}  // namespace anomalis::window
