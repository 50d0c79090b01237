#include "window/shell/watch_controller.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include "edit/workbench.h"
#include "flow/program_folder.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_guards.h"
#include "window/shell/recovery_controller.h"

namespace anomalis::window {

namespace {

constexpr int looking_pause = 60'000;  // ms

}  // namespace

WatchController::WatchController(QWidget& window, edit::Workbench& workbench, const FormGuards& guards,
                                 RecoveryController& recovery, StatusPanels& status)
    : QObject(&window), workbench_(workbench), guards_(guards), recovery_(recovery), status_(status) {
    window.installEventFilter(this);
    auto* timer = new QTimer(this);
    timer->setObjectName("Timer_watch");
    timer->setInterval(looking_pause);
    connect(timer, &QTimer::timeout, this, &WatchController::look);
    timer->start();
    connect(&recovery, &RecoveryController::keeping_began, this, &WatchController::follow);
}

/// What the command itself has to say comes first.
void WatchController::follow() {
    if (const auto* folder = recovery_.folder())
        folder->show_open_file(workbench_.session.workspace.model_file);
    watch_.begin();
    QMetaObject::invokeMethod(this, &WatchController::look, Qt::QueuedConnection);
}

bool WatchController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowActivate) look();
    return QObject::eventFilter(watched, event);
}

void WatchController::look() {
    if (guards_.busy()) return;
    const std::string news = watch_.news(workbench_, recovery_.folder());
    if (!news.empty()) status_.add_text(QString::fromStdString(news));
}

}  // namespace anomalis::window
