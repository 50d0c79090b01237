#include "window/shell/served_run.h"

#include <QApplication>

#include "window/shell/busy_input.h"
#include "window/shell/qt_prompts.h"

namespace anomalis::window {

void serve_run(bool running, Prompts& prompts, BusyInput& busy) {
    if (auto* served = dynamic_cast<QtPrompts*>(&prompts)) served->serve_input(running);
    busy.follow(running);
    if (running) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

}  // namespace anomalis::window
