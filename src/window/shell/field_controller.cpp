#include "window/shell/field_controller.h"

#include <QTimer>

#include "core/failure.h"
#include "edit/workbench.h"
#include "flow/field_question.h"
#include "window/panels/definitions_page.h"
#include "window/panels/settings_panels.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/shell/form_field.h"
#include "window/shell/line_controller.h"

namespace anomalis::window {

FieldController::FieldController(edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                                 ModelNews& news, DefinitionsPage& page, LineController& line,
                                 StatusPanels& status)
    : QObject(&page), workbench_(workbench), news_(news), page_(page), line_(line), status_(status) {
    actions.on(ActionId::field_from_place, [this] { ask(); });
    actions.on(ActionId::remove_igrf, [this] { change_readings(-1); });
    actions.on(ActionId::add_igrf, [this] { change_readings(1); });
    connect(&page.field(), &FieldPanel::place_and_date_wanted, this, [this, &gate] {
        if (gate.pass()) ask();
    });
}

void FieldController::ask() {
    Session& session = workbench_.session;
    Form_field form(session.workspace, page_.window());
    if (form.exec() != QDialog::Accepted) return;
    const int failure = report_failure(session.prompts, "The field stays as it was: ", [&] {
        flow::take_field(workbench_, form.question());
    });
    if (failure != 0) return;
    page_.field().fill();
    news_.tell(News::settings);
    status_.show_text(QString::fromStdString(session.workspace.source.field_origin));
}

void FieldController::change_readings(int step) {
    if (!flow::change_igrf(workbench_, step)) return;
    page_.fill();
    line_.load();
}

void FieldController::follow(WhatChanged what) {
    const Workspace& workspace = workbench_.session.workspace;
    if (!(what & News::line) || !workspace.source.field_missing || !workspace.has_mag()) return;
    if (!edit::line_loaded(workspace)) return;
    // Behind what the load says of itself.
    QTimer::singleShot(0, this, [this] {
        status_.add_text(tr(
            "The earth's field is not set: magnetics are not modelled. Ctrl+E gives it from place and date"));
    });
}

}  // namespace anomalis::window
