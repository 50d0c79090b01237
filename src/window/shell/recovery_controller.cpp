#include "window/shell/recovery_controller.h"

#include <ctime>

#include <QAction>
#include <QTimer>

#include "edit/workbench.h"
#include "flow/recovery.h"
#include "window/panels/status_panels.h"
#include "window/panels/welcome_panel.h"
#include "window/shell/actions.h"
#include "window/shell/form_guards.h"
#include "window/shell/menus.h"
#include "window/shell/open_controller.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int milliseconds = 1000;  // a second

}  // namespace

RecoveryController::RecoveryController(QWidget& window, edit::Workbench& workbench, const FormGuards& guards,
                                       Actions& actions, Menus& menus, OpenController& open,
                                       StatusPanels& status)
    : QObject(&window),
      window_(window),
      workbench_(workbench),
      guards_(guards),
      actions_(actions),
      menus_(menus),
      open_(open),
      status_(status),
      timer_(new QTimer(this)) {
    timer_->setObjectName("Timer_recovery");
    set_pause(workbench.session.preferences.autosave_seconds);
    connect(timer_, &QTimer::timeout, this, &RecoveryController::tick);
    actions.on_member(ActionId::kept_model, [this](int index) { go_on_with(index); });
    for (WelcomePanel* panel : window_.findChildren<WelcomePanel*>()) {
        connect(panel, &WelcomePanel::kept_chosen, this, [this](int index) {
            actions_.family(ActionId::kept_model).at(static_cast<std::size_t>(index))->trigger();
        });
        connect(panel, &WelcomePanel::kept_unwanted, this, &RecoveryController::discard);
    }
    show_kept();
}

RecoveryController::~RecoveryController() = default;

void RecoveryController::start(const std::string& root) {
    keeper_ = std::make_unique<flow::RecoveryKeeper>(root);
    timer_->start();
    show_problem();
    emit keeping_began();
    kept_ = {};  // gives up what it has claimed
    kept_ = flow::KeptModels(root, std::time(nullptr));
    show_kept();
    tell_kept();
}

void RecoveryController::show_kept() {
    QStringList words;
    for (const flow::KeptModel& kept : kept_.list()) words << shown(flow::kept_model_words(kept));
    const auto& entries = actions_.family(ActionId::kept_model);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i]->setVisible(i < kept_.list().size());
        entries[i]->setText(words.value(static_cast<qsizetype>(i)).replace("&", "&&"));
    }
    menus_.refresh();
    for (WelcomePanel* panel : window_.findChildren<WelcomePanel*>()) panel->show_kept(words);
}

/// A file that was named at the start stands over the welcome.
void RecoveryController::tell_kept() {
    if (kept_.list().empty() || workbench_.session.workspace.definition.data_file.empty()) return;
    const QString words = shown(flow::kept_model_words(kept_.list().front()));
    status_.add_text(tr("Not saved when the program was left: %1").arg(words));
    status_.show_link(tr("Continue with it"),
                      [this] { actions_.family(ActionId::kept_model).front()->trigger(); });
}

void RecoveryController::go_on_with(int index) {
    const auto at = static_cast<std::size_t>(index);
    if (!keeper_ || at >= kept_.list().size()) return;
    const bool taken = kept_.take(at, workbench_, *keeper_);
    show_kept();
    show_problem();
    if (taken) open_.show_recovered();
}

void RecoveryController::discard(int index) {
    const auto at = static_cast<std::size_t>(index);
    if (!guards_.pass() || at >= kept_.list().size()) return;
    Prompts& prompts = workbench_.session.prompts;
    const std::string question = "Discard " + flow::kept_model_words(kept_.list()[at]) +
                                 "? It was never saved, and nothing brings it back.";
    if (prompts.choose(question, {"Discard", "Keep"}) != 0) return;
    kept_.discard(at, prompts);
    show_kept();
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

bool RecoveryController::leave() {
    if (!keeper_) return true;
    const bool kept = keeper_->leave(workbench_);
    if (!kept && !told_of_loss_) {
        told_of_loss_ = true;
        workbench_.session.prompts.message(
            "The model is not saved, and it cannot be kept for the next start: " + keeper_->take_problem() +
            ". Save it, or close the window once more to lose it.");
        return false;
    }
    timer_->stop();
    if (!kept) keeper_->finish(workbench_);
    return true;
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
