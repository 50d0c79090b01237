#include "window/shell/formulas_controller.h"

#include <QPushButton>
#include <QTimer>

#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/new_line_choice.h"
#include "forward/formula_difference.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int rest = 300;  // ms after the last change

/// White on a red that stands out from every palette.
const char* const warning_style =
    "QPushButton { color: white; background: #b3261e; border-radius: 3px; padding: 1px 6px; }";

QString usual_tip() {
    return FormulasController::tr(
        "The largest difference between the classic and the exact curve of the current body, as a share of "
        "the peak. A click changes over to the exact formulas");
}

}  // namespace

FormulasController::FormulasController(QObject* parent, edit::Workbench& workbench, Actions& actions,
                                       const EntryGate& gate, const FormGuards& guards, ModelNews& news,
                                       StatusPanels& status)
    : QObject(parent),
      workbench_(workbench),
      guards_(guards),
      news_(news),
      difference_(new QPushButton),
      rest_(new QTimer(this)),
      pieces_(new QTimer(this)) {
    actions.on(ActionId::exact_formulas,
               [this] { choose(workbench_.session.workspace.formulas == Formulas::classic); });
    difference_->setObjectName("Command_exact_formulas");
    difference_->setFlat(true);
    difference_->setFocusPolicy(Qt::TabFocus);
    constexpr int frame = 16;  // pixels
    difference_->setMinimumWidth(
        difference_->fontMetrics().horizontalAdvance(tr("Classic formulas: %1 % off").arg("100.0")) + frame);
    connect(difference_, &QPushButton::clicked, this, [this, &gate] {
        if (gate.pass()) choose(true);
    });
    status.addPermanentWidget(difference_);
    show_kind();
    rest_->setObjectName("Timer_formulas");
    rest_->setSingleShot(true);
    rest_->setInterval(rest);
    connect(rest_, &QTimer::timeout, this, &FormulasController::begin_comparing);
    pieces_->setObjectName("Timer_formulas_pieces");
    pieces_->setInterval(0);
    connect(pieces_, &QTimer::timeout, this, &FormulasController::compare_on);
}

FormulasController::~FormulasController() = default;

void FormulasController::choose(bool exact) {
    const Formulas wanted = exact ? Formulas::exact : Formulas::classic;
    Workspace& workspace = workbench_.session.workspace;
    if (workspace.formulas == wanted) return;
    workspace.formulas = wanted;
    flow::remember_formulas(workspace, workbench_.session.settings);
    edit::note_change(workbench_, {exact ? "exact formulas" : "classic formulas", "", false});
    news_.tell(News::settings);
}

bool FormulasController::can_be_compared() const {
    const Workspace& workspace = workbench_.session.workspace;
    const int body = workbench_.view.current_body;
    return workspace.formulas == Formulas::classic && edit::line_loaded(workspace) && body >= 1 &&
           body <= workspace.body_count;
}

/// What was changed but is not calculated yet cannot be compared.
void FormulasController::follow(WhatChanged what) {
    constexpr WhatChanged stale = News::parameters | News::bodies | News::settings | News::line;
    if (!can_be_compared()) {
        stop_comparing();
        show_kind();
    } else if (what & (News::calculated | News::current_body)) {
        stop_comparing();
        rest_->start();
    } else if (what & stale) {
        stop_comparing();
    }
}

void FormulasController::stop_comparing() {
    rest_->stop();
    pieces_->stop();
    comparison_.reset();
}

/// In the middle of a run the bodies hold what is being tried, and a hand that holds a body will move it on.
bool FormulasController::at_rest() const {
    return !guards_.busy() && !workbench_.view.body_held;
}

void FormulasController::begin_comparing() {
    comparison_ = std::make_unique<forward::FormulaComparison>(workbench_.session.workspace,
                                                               workbench_.view.current_body);
    compare_on();
}

void FormulasController::compare_on() {
    if (!at_rest()) {
        stop_comparing();
        return rest_->start();
    }
    Faults faults;
    if (comparison_->advance(faults)) return pieces_->start();
    const forward::FormulaDifference found = comparison_->found();
    stop_comparing();
    show_faults(faults, workbench_.session.prompts);
    show_difference(found);
}

/// Without a distance: the exact formulas stand back, the classic ones wait for a body.
void FormulasController::show_kind() {
    const bool exact = workbench_.session.workspace.formulas == Formulas::exact;
    difference_->setText(exact ? tr("Exact formulas") : tr("Classic formulas"));
    difference_->setToolTip(exact
                                ? tr("The field is that of the bodies as section and plan draw them. Model, "
                                     "Exact formulas goes back to the classic ones")
                                : usual_tip());
    difference_->setEnabled(!exact);
    show_notable(false);
}

void FormulasController::show_notable(bool notable) {
    if (notable == difference_->property("notable").toBool()) return;
    difference_->setStyleSheet(notable ? warning_style : "");
    difference_->setProperty("notable", notable);
}

void FormulasController::show_difference(const forward::FormulaDifference& found) {
    const double share = found.largest();
    const bool notable = share > forward::notable_difference;
    if (!found.left_out.empty()) {
        difference_->setText(tr("Classic formulas: not compared"));
    } else if (share >= forward::no_common_measure) {
        difference_->setText(tr("Classic formulas: no exact curve"));
    } else {
        difference_->setText(tr("Classic formulas: %1 % off").arg(100 * share, 0, 'f', 1));
    }
    difference_->setToolTip(
        found.left_out.empty() ? usual_tip() : plain_tip(tr("Not compared: %1").arg(shown(found.left_out))));
    difference_->setEnabled(true);
    show_notable(notable);
}

}  // namespace anomalis::window
