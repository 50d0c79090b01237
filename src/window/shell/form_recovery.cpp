#include "window/shell/form_recovery.h"

#include <QTimer>

#include "flow/recovery.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_anomalis.h"

namespace anomalis::window {

namespace {

constexpr int keeping_pause = 60'000;  // ms

}  // namespace

FormRecovery::FormRecovery(Form_anomalis& form) : QObject(&form), form_(form), timer_(new QTimer(this)) {
    timer_->setObjectName("Timer_recovery");
    timer_->setInterval(keeping_pause);
    connect(timer_, &QTimer::timeout, this, &FormRecovery::tick);
}

FormRecovery::~FormRecovery() = default;

void FormRecovery::start(const std::string& root) {
    keeper_ = std::make_unique<flow::RecoveryKeeper>(root);
    timer_->start();
    show_problem();
    if (flow::offer_recovery(form_.workbench(), *keeper_)) form_.show_recovered();
}

/// In the middle of a run the bodies hold what is being tried; the model was kept when it began.
void FormRecovery::tick() {
    if (!keeper_ || form_.guards().busy) return;
    keeper_->tick(form_.workbench());
    show_problem();
}

void FormRecovery::keep_now() {
    if (!keeper_) return;
    keeper_->keep(form_.workbench());
    show_problem();
}

void FormRecovery::finish() {
    timer_->stop();
    if (keeper_) keeper_->finish();
}

void FormRecovery::show_problem() {
    const std::string problem = keeper_->take_problem();
    if (!problem.empty())
        form_.status().show_text(
            tr("The model cannot be kept for recovery: %1").arg(QString::fromStdString(problem)));
}

}  // namespace anomalis::window
