#include <iostream>

#include <QApplication>
#include <QFileInfo>
#include <QTimer>

#include "app/window_arguments.h"
#include "chart/qt/installed_fonts.h"
#include "core/file_limit.h"
#include "core/session.h"
#include "flow/examples.h"
#include "flow/recovery.h"
#include "window/shell/desktop_theme.h"
#include "window/shell/form_anomalis.h"
#include "window/shell/look.h"
#include "window/shell/qt_prompts.h"
#include "window/shell/recovery_controller.h"
#include "window/shell/window_icon.h"

int main(int argc, char** argv) {
    anomalis::take_file_limit_as_error();
    const anomalis::WindowArguments arguments = anomalis::read_window_arguments(argc, argv);
    if (arguments.status >= 0) {
        (arguments.status == 0 ? std::cout : std::cerr) << arguments.told << std::flush;
        return arguments.status;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName("Anomalis");
    QGuiApplication::setDesktopFileName(anomalis::window::desktop_entry);
    QApplication::setWindowIcon(anomalis::window::window_icon());
    anomalis::window::apply_look(application);
    const anomalis::window::DesktopTheme theme(application);

    // In the terminal: no form could be read.
    if (const std::string told = anomalis::chart::missing_fonts(); !told.empty())
        std::cerr << told << std::endl;

    anomalis::window::QtPrompts prompts;
    anomalis::Session session(prompts, anomalis::Settings(anomalis::default_settings_path(), prompts));
    anomalis::init_system(session.system);
    anomalis::window::Form_anomalis form(session, anomalis::flow::find_examples(session.system.exe_folder));
    prompts.set_window(&form);
    form.show();
    if (!arguments.file.isEmpty()) form.open_file(QFileInfo(arguments.file).absoluteFilePath().toStdString());
    QTimer::singleShot(0, &form, [&form] { form.recovery().start(anomalis::flow::recovery_root()); });
    const int status = QApplication::exec();
    prompts.set_window(nullptr);
    return status;
}
