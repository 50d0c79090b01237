#include "window/shell/recovery_controller.h"

#include <QTimer>

#include "edit/workbench.h"
#include "flow/recovery.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_guards.h"
#include "window/shell/open_controller.h"

namespace anomalis::window {

namespace {

constexpr int milliseconds = 1000;  // a second

}  // namespace

RecoveryController::RecoveryController(QObject* parent, edit::Workbench& workbench, const FormGuards& guards,
                                       OpenController& open, StatusPanels& status)
    : QObject(parent),
      workbench_(workbench),
      guards_(guards),
      open_(open),
      status_(status),
      timer_(new QTimer(this)) {
    timer_->setObjectName("Timer_recovery");
    set_pause(workbench.session.preferences.autosave_seconds);
    connect(timer_, &QTimer::timeout, this, &RecoveryController::tick);
}

RecoveryController::~RecoveryController() = default;

void RecoveryController::start(const std::string& root) {
    keeper_ = std::make_unique<flow::RecoveryKeeper>(root);
    timer_->start();
    show_problem();
    emit keeping_began();
    if (flow::offer_recovery(workbench_, *keeper_)) open_.show_recovered();
}

/// In the middle of a run the bodies hold what is being tried; the model was kept when it began.
void RecoveryController::tick() {
    if (!keeper_ || guards_.busy()) return;
    keeper_->tick(workbench_);
    show_problem();
}

void RecoveryController::keep_now() {
    if (!keeper_) return;
    keeper_->keep(workbench_);
    show_problem();
}

void RecoveryController::set_pause(int seconds) {
    timer_->setInterval(seconds * milliseconds);
}

void RecoveryController::finish() {
    timer_->stop();
    if (keeper_) keeper_->finish();
}

const flow::ProgramFolder* RecoveryController::folder() const {
    return keeper_ ? keeper_->folder() : nullptr;
}

void RecoveryController::show_problem() {
    const std::string problem = keeper_->take_problem();
    if (!problem.empty())
        status_.show_text(
            tr("The model cannot be kept for recovery: %1").arg(QString::fromStdString(problem)));
}

}  // namespace anomalis::window
