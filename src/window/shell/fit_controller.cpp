#include "window/shell/fit_controller.h"

#include <QWidget>

#include "edit/fit_in_force.h"
#include "edit/workbench.h"
#include "flow/fit_remark.h"
#include "window/shell/actions.h"
#include "window/shell/form_fit.h"

namespace anomalis::window {

FitController::FitController(QWidget& window, edit::Workbench& workbench, Actions& actions)
    : QObject(&window), window_(window), workbench_(workbench) {
    actions.on(ActionId::fit_results, [this] { open(); });
}

void FitController::open() {
    if (!form_) form_ = new Form_fit(&window_);
    fill();
    form_->show();
    form_->raise();
    form_->activateWindow();
}

void FitController::fill() {
    const Workspace& workspace = workbench_.session.workspace;
    if (const FitRecord* fit = edit::fit_in_force(workbench_))
        return form_->show_fit(*fit, workspace, workbench_.session.preferences.susceptibility_unit);
    form_->show_words(workspace.fit ? QString::fromStdString(flow::changed_since(*workspace.fit))
                                    : tr("There is no fit yet: invert the model by least squares"));
}

/// In the middle of a run the bodies hold what is being tried.
void FitController::follow(WhatChanged what) {
    constexpr WhatChanged shown =
        News::parameters | News::bodies | News::settings | News::line | News::calculated | News::file;
    if (form_ && form_->isVisible() && (what & shown) && !workbench_.session.inversion.running) fill();
}

}  // namespace anomalis::window
