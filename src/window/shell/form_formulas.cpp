#include "window/shell/form_formulas.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>

#include "edit/change.h"
#include "forward/formula_difference.h"
#include "window/panels/charts_panel.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_anomalis.h"
#include "window/shell/form_menus.h"

namespace anomalis::window {

namespace {

/// White on a red that stands out from every palette.
const char* const warning_style =
    "QPushButton { color: white; background: #b3261e; border-radius: 3px; padding: 1px 6px; }";

}  // namespace

FormFormulas::FormFormulas(Form_anomalis& form) : QObject(&form), form_(form), difference_(new QPushButton) {
    exact_ = form.menus().add_action(
        form.menus().model_menu(), "menu_exact_formulas", tr("E&xact formulas"),
        tr("Calculate the field of the bodies as section and plan draw them; without the mark with "
           "the classic formulas"));
    exact_->setCheckable(true);
    connect(exact_, &QAction::triggered, this, &FormFormulas::choose);
    connect(&form.menus().model_menu(), &QMenu::aboutToShow, this, &FormFormulas::refresh);
    connect(&form.charts(), &ChartsPanel::misfit_found, this, &FormFormulas::refresh);
    difference_->setObjectName("Command_exact_formulas");
    difference_->setFlat(true);
    difference_->setFocusPolicy(Qt::TabFocus);
    difference_->setToolTip(tr(
        "The largest difference between the classic and the exact curve of the current body, as a share of "
        "the peak. A click changes over to the exact formulas"));
    connect(difference_, &QPushButton::clicked, this, [this] { choose(true); });
    form.status().addPermanentWidget(difference_);
    difference_->hide();
}

void FormFormulas::choose(bool exact) {
    const Formulas wanted = exact ? Formulas::exact : Formulas::classic;
    edit::Workbench& workbench = form_.workbench();
    Workspace& workspace = workbench.session.workspace;
    if (form_.guards().closed() || workspace.formulas == wanted) return refresh();
    form_.commit_entries();
    workspace.formulas = wanted;
    edit::note_change(workbench, {exact ? "exact formulas" : "classic formulas", "", false});
    form_.model_edited();
    refresh();
}

void FormFormulas::refresh() {
    exact_->setChecked(form_.workbench().session.workspace.formulas == Formulas::exact);
    show_difference();
}

void FormFormulas::show_difference() {
    Session& session = form_.workbench().session;
    Workspace& workspace = session.workspace;
    const int body = form_.workbench().view.current_body;
    const bool known = workspace.formulas == Formulas::classic && edit::line_loaded(workspace) && body >= 1 &&
                       body <= workspace.body_count;
    difference_->setVisible(known);
    if (!known) return;
    Faults faults;
    const double share = forward::formula_difference(workspace, body, faults).largest();
    show_faults(faults, session.prompts);
    const bool notable = share > forward::notable_difference;
    difference_->setText(share >= forward::no_common_measure
                             ? tr("Classic formulas: no exact curve")
                             : tr("Classic formulas: %1 % off").arg(100 * share, 0, 'f', 1));
    difference_->setStyleSheet(notable ? warning_style : "");
    difference_->setProperty("notable", notable);
}

}  // namespace anomalis::window
