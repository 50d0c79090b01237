#include "window/shell/find_controller.h"

#include <QMainWindow>
#include <QPushButton>
#include <QTimer>

#include "edit/workbench.h"
#include "window/panels/charts_panel.h"
#include "window/panels/definitions_panel.h"
#include "window/panels/find_panel.h"
#include "window/panels/model_page.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/busy_input.h"
#include "window/shell/entry_gate.h"
#include "window/shell/new_line.h"
#include "window/shell/page_controller.h"
#include "window/shell/served_run.h"

namespace anomalis::window {

FindController::FindController(const FindParts& parts, edit::Workbench& workbench, Actions& actions,
                               EntryGate& gate, FormGuards& guards, ModelNews& news, PageController& pages)
    : QObject(&parts.window),
      parts_(parts),
      workbench_(workbench),
      gate_(gate),
      news_(news),
      pages_(pages),
      panel_(new FindPanel(guards)),
      desk_(workbench, *this) {
    parts_.page.add_side(panel_);
    actions.on(ActionId::find_bodies, [this] { open(); });
    gate.add_editor([this] { put_back(); });
    wire_panel();
    connect(&parts_.definitions, &DefinitionsPanel::find_wanted, this, [this] {
        if (gate_.pass()) find_at_once();
    });
    busy_ = new BusyInput(
        parts_.window, panel_->keep_button(), actions.action(ActionId::stop_inversion),
        [this] { desk_.command_keep(); },
        [this](QKeyCombination) {
            parts_.status.show_text(
                tr("Looking for bodies. Esc keeps what was found, then other keys are "
                   "served"));
        });
    busy_->serve(panel_->cancel_button());
    panel_changed();
}

FindController::~FindController() = default;

void FindController::wire_panel() {
    connect(panel_, &FindPanel::most_chosen, this, [this](int most) { desk_.choose_most(most); });
    connect(panel_, &FindPanel::kinds_chosen, this,
            [this](flow::SheetKinds kinds) { desk_.choose_kinds(kinds); });
    connect(panel_, &FindPanel::channel_chosen, this, [this](int channel) { desk_.choose_channel(channel); });
    connect(panel_, &FindPanel::present_chosen, this, [this](bool free) { desk_.choose_present(free); });
    connect(panel_, &FindPanel::find_wanted, this, [this] {
        if (gate_.pass()) desk_.command_find();
    });
    connect(panel_, &FindPanel::keep_wanted, this, [this] { desk_.command_keep(); });
    connect(panel_, &FindPanel::cancel_wanted, this, [this] { desk_.command_cancel(); });
    connect(panel_, &FindPanel::card_shown, this, &FindController::preview);
    connect(panel_, &FindPanel::take_wanted, this, &FindController::take);
    connect(panel_, &FindPanel::close_wanted, this, [this] {
        if (gate_.pass()) close();
    });
}

bool FindController::is_open() const {
    return panel_->isVisibleTo(&parts_.page);
}

void FindController::open() {
    if (!edit::line_loaded(workbench_.session.workspace)) return;
    pages_.show_model();
    if (!workbench_.view.on_page) return;  // a box of the other page must be put right first
    parts_.page.show_side(panel_);
    parts_.charts.allow_hint(false);
    panel_changed();
    panel_->take_focus();
}

void FindController::find_at_once() {
    open();
    if (is_open() && workbench_.view.on_page) desk_.command_find();
}

void FindController::close() {
    wanted_ = -1;
    desk_.forget();
    parts_.page.show_side(nullptr);
    parts_.charts.allow_hint(true);
}

void FindController::preview(int index) {
    wanted_ = index;
    desk_.preview(index);
}

/// What is half typed elsewhere belongs to the model that goes.
void FindController::take(int index) {
    if (index >= 0 && gate_.pass()) desk_.take(index);
}

void FindController::put_back() {
    desk_.put_back();
}

/// The open model was drawn in between, unchanged.
void FindController::show_again() {
    if (wanted_ >= 0 && !parts_.charts.view().previewing() && workbench_.view.on_page) desk_.preview(wanted_);
}

void FindController::follow(WhatChanged what) {
    if (what & (News::line | News::form_reset)) {
        close();
    } else if (what & (News::parameters | News::bodies | News::settings | News::boxes)) {
        wanted_ = -1;
        desk_.forget();
    } else if (what & (News::view | News::calculated | News::file)) {
        show_again();
    }
    const Workspace& workspace = workbench_.session.workspace;
    parts_.definitions.offer_find(edit::line_loaded(workspace) && workspace.body_count == 0);
}

void FindController::panel_changed() {
    panel_->show_state(desk_, workbench_.session.workspace);
}

void FindController::run_changed() {
    const bool searching = desk_.state().searching;
    panel_changed();
    serve_run(searching, workbench_.session.prompts, *busy_);
    panel_changed();  // what was switched off is on again
    if (searching) {
        parts_.status.show_work(tr("Looking for bodies. Esc keeps what was found"));
        return;
    }
    wanted_ = desk_.state().models.empty() ? -1 : 0;
    parts_.status.show_text(QString::fromStdString(desk_.state().label));
    panel_->take_focus();
}

void FindController::show_model(const Workspace* model) {
    flow::ModelView& view = parts_.charts.view();
    if (model) {
        view.show_preview(*model);
    } else {
        view.end_preview();
    }
}

void FindController::model_taken(int found, bool first_bodies) {
    close();
    const WhatChanged what =
        News::boxes | News::step_taken | News::bodies | News::current_body | News::settings | News::file;
    if (first_bodies) {
        begin_anew(workbench_, news_, what);
    } else {
        news_.tell(what);
    }
    parts_.status.show_text(tr("%n bodies taken; Ctrl+Z takes them back", nullptr, found));
}

void FindController::close_wanted() {
    QTimer::singleShot(0, &parts_.window, &QWidget::close);
}

}  // namespace anomalis::window
