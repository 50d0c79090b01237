#include "window/shell/uncertainty_controller.h"

#include <utility>

#include <QApplication>
#include <QClipboard>
#include <QTimer>
#include <QWidget>

#include "edit/ensemble_in_force.h"
#include "edit/workbench.h"
#include "flow/export_flow.h"
#include "output/ensemble_table.h"
#include "window/panels/charts_panel.h"
#include "window/panels/export_notice.h"
#include "window/shell/actions.h"
#include "window/shell/form_ensemble.h"
#include "window/shell/form_uncertainty.h"
#include "window/shell/qt_prompts.h"
#include "window/shell/recovery_controller.h"

namespace anomalis::window {

namespace {

const char* const shown_key = "DisplayUncertainty";

}  // namespace

UncertaintyController::UncertaintyController(QWidget& window, edit::Workbench& workbench, Actions& actions,
                                             ModelNews& news, ChartsPanel& charts, StatusPanels& status,
                                             RecoveryController& recovery, std::function<int()> channel)
    : QObject(&window),
      window_(window),
      workbench_(workbench),
      news_(news),
      charts_(charts),
      status_(status),
      recovery_(recovery),
      channel_(std::move(channel)),
      desk_(workbench, *this) {
    workbench.view.show_ensemble = workbench.session.settings.get(settings_section, shown_key) != "0";
    actions.on(ActionId::uncertainty, [this] { open(); });
    actions.on(ActionId::display_uncertainty, [this] { toggle_shown(); });
}

UncertaintyController::~UncertaintyController() = default;

/// What was found is looked at again; without it a run is offered.
void UncertaintyController::open() {
    edit::ensemble_in_force(workbench_) ? open_results() : open_run();
}

void UncertaintyController::open_run() {
    if (!run_) {
        run_ = new Form_uncertainty(&window_);
        connect(run_, &Form_uncertainty::start_wanted, this, &UncertaintyController::start);
        connect(run_, &Form_uncertainty::stop_wanted, this, [this] { desk_.stop(); });
        connect(run_, &Form_uncertainty::cancel_wanted, this, [this] { desk_.cancel(); });
    }
    const std::string refusal = desk_.refusal();
    run_->show_words(QString::fromStdString(refusal), refusal.empty());
    run_->show();
}

void UncertaintyController::start() {
    body_ = 0;
    desk_.start(run_->choice(), channel_());
    run_->show_words(QString::fromStdString(desk_.outcome()), desk_.refusal().empty());
    if (std::exchange(close_after_, false)) {
        run_->hide();
        QTimer::singleShot(0, &window_, &QWidget::close);
        return;
    }
    if (!desk_.found()) return;
    run_->hide();
    open_results();
}

/// Only the form of the run gets keys and clicks meanwhile: it stands over all others.
void UncertaintyController::run_changed() {
    const bool running = desk_.running();
    if (running) recovery_.keep_now();
    if (auto* prompts = dynamic_cast<QtPrompts*>(&workbench_.session.prompts)) prompts->serve_input(running);
    run_->show_running(running);
}

void UncertaintyController::progress_changed() {
    run_->show_progress(desk_.progress());
}

void UncertaintyController::model_changed() {
    news_.tell(News::bodies | News::file);
}

bool UncertaintyController::may_close() {
    if (!desk_.running()) return true;
    desk_.cancel();
    close_after_ = true;
    return false;
}

void UncertaintyController::open_results() {
    if (!results_) {
        results_ = new Form_ensemble(&window_);
        connect(results_, &Form_ensemble::body_wanted, this, [this](int body) {
            body_ = body;
            fill_results();
        });
        connect(results_, &Form_ensemble::copy_wanted, this, [this] { copy_table(); });
        connect(results_, &Form_ensemble::save_wanted, this, [this] {
            const flow::Exported exported = flow::export_ensemble(workbench_);
            if (exported.outcome == flow::ExportOutcome::nothing) QApplication::beep();
            tell_export(status_, exported);
        });
        connect(results_, &Form_ensemble::run_wanted, this, [this] { open_run(); });
    }
    results_->show();
    fill_results();
    results_->raise();
    results_->activateWindow();
}

void UncertaintyController::fill_results() {
    const Workspace& workspace = workbench_.session.workspace;
    const auto ensemble = edit::ensemble_in_force(workbench_);
    if (ensemble) {
        const int body = body_ > 0 ? body_ : workbench_.view.current_body;
        return results_->show_ensemble(*ensemble, workspace, body,
                                       workbench_.session.preferences.susceptibility_unit);
    }
    results_->show_words(
        workspace.ensemble ? tr("The model has changed since its uncertainty was found. Undo the change, or "
                                "run again")
                           : tr("Nothing is known of this model's uncertainty yet: run again"));
}

void UncertaintyController::copy_table() {
    if (const auto ensemble = edit::ensemble_in_force(workbench_))
        QApplication::clipboard()->setText(
            QString::fromStdString(output::ensemble_table_text(workbench_.session.workspace, *ensemble)));
}

void UncertaintyController::toggle_shown() {
    bool& shown = workbench_.view.show_ensemble;
    shown = !shown;
    workbench_.session.settings.set(settings_section, shown_key, shown ? "1" : "0");
    news_.tell(News::view);
    charts_.view().redraw();
}

/// In the middle of a run the bodies hold what is being tried.
void UncertaintyController::follow(WhatChanged what) {
    constexpr WhatChanged shown = News::parameters | News::bodies | News::settings | News::line |
                                  News::current_body | News::calculated | News::file;
    if (what & (News::line | News::form_reset | News::current_body)) body_ = 0;
    if (results_ && results_->isVisible() && (what & shown) && !workbench_.session.inversion.running)
        fill_results();
}

}  // namespace anomalis::window
