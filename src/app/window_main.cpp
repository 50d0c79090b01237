#include <QApplication>
#include <QFileInfo>
#include <QTimer>

#include "core/session.h"
#include "workbench/examples.h"
#include "workbench/qt/form_anomalis.h"
#include "workbench/qt/form_recovery.h"
#include "workbench/qt/look.h"
#include "workbench/qt/qt_prompts.h"
#include "workbench/recovery.h"

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("Anomalis");
    anomalis::apply_look(application);

    anomalis::QtPrompts prompts;
    anomalis::Session session(prompts, anomalis::Settings(anomalis::default_settings_path(), prompts));
    anomalis::init_system(session.system);
    anomalis::Form_anomalis form(session, anomalis::find_examples(session.system.exe_folder));
    prompts.set_window(&form);
    form.show();
    if (const QStringList arguments = QApplication::arguments(); arguments.size() > 1)
        form.open_file(QFileInfo(arguments[1]).absoluteFilePath().toStdString());
    QTimer::singleShot(0, &form, [&form] { form.recovery().start(anomalis::recovery_root()); });
    const int status = QApplication::exec();
    prompts.set_window(nullptr);
    return status;
}
