#include "window/shell/calculation_watch.h"

#include <algorithm>
#include <utility>

#include <QAction>
#include <QCoreApplication>
#include <QMainWindow>
#include <QTimer>

#include "window/panels/status_panels.h"
#include "window/shell/busy_input.h"
#include "window/shell/form_guards.h"

namespace anomalis::window {

CalculationWatch::CalculationWatch(const WatchParts& parts, FormGuards& guards)
    : parts_(parts),
      guards_(guards),
      busy_(new BusyInput(
          parts.window, parts.stop_button, parts.stop_action, [this] { leave(); },
          [this](QKeyCombination) {
              parts_.status.show_text(QObject::tr("Calculating. Esc stops it, then other keys are served"));
          })) {
    QObject::connect(&parts.stop_action, &QAction::triggered, busy_, [this] {
        if (shown_) leave();
    });
}

void CalculationWatch::begins(double units) {
    expected_ = units;
    done_ = 0;
    left_ = false;
    clock_.start();
}

bool CalculationWatch::turn(double units) {
    done_ += units;
    if (!shown_ && clock_.elapsed() < patience_) return false;
    if (!shown_) show();
    const double share = expected_ > 0 ? std::min(done_ / expected_, 1.0) : 0.0;
    parts_.status.show_progress(static_cast<int>(100 * share));
    QCoreApplication::processEvents();
    return left_;
}

void CalculationWatch::ended() {
    if (!shown_) return;
    hide();
    if (std::exchange(close_, false)) QTimer::singleShot(0, &parts_.window, &QWidget::close);
}

void CalculationWatch::show() {
    shown_ = guards_.calculating = true;
    parts_.status.show_work(QObject::tr("Calculating. Esc stops it"));
    busy_->follow(true);
}

void CalculationWatch::hide() {
    busy_->follow(false);
    shown_ = guards_.calculating = false;
    parts_.status.show_progress(-1);
    parts_.status.show_text(QString());
}

bool CalculationWatch::may_close() {
    if (!shown_) return true;
    leave();
    close_ = true;
    return false;
}

}  // namespace anomalis::window
