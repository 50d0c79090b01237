#include "window/shell/page_controller.h"

#include <QTabWidget>

#include "edit/display_check.h"
#include "edit/workbench.h"
#include "window/panels/charts_panel.h"
#include "window/panels/definitions_page.h"
#include "window/panels/model_page.h"
#include "window/panels/processing_panel.h"
#include "window/panels/settings_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"

namespace anomalis::window {

namespace {

enum Page { page_definitions = 0, page_model = 1 };

}  // namespace

PageController::PageController(const Pages& pages, edit::Workbench& workbench, Actions& actions,
                               const EntryGate& gate)
    : QObject(&pages.tabs), pages_(pages), workbench_(workbench), actions_(actions), gate_(gate) {
    connect(&pages_.tabs, &QTabWidget::currentChanged, this, &PageController::page_changed);
    actions.on(ActionId::next_tab, [this] { turn(1); });
    actions.on(ActionId::previous_tab, [this] { turn(-1); });
}

void PageController::show_definitions() {
    pages_.tabs.setCurrentIndex(page_definitions);
}

void PageController::show_model() {
    pages_.tabs.setCurrentIndex(page_model);
}

void PageController::turn(int step) {
    const int count = pages_.tabs.count();
    pages_.tabs.setCurrentIndex((pages_.tabs.currentIndex() + step + count) % count);
}

void PageController::follow(WhatChanged what) {
    if (what & News::line) pages_.model.show_model(edit::line_loaded(workbench_.session.workspace));
}

void PageController::page_changed(int index) {
    gate_.settle();
    if (index == page_model) {
        enter_model_page();
    } else {
        pages_.charts.view().set_on_page(false);
    }
    actions_.refresh();
}

QWidget* PageController::wrong_box() {
    ProcessingPanel& processing = pages_.definitions.processing();
    const edit::DisplayCheck check = edit::validate_model_display(workbench_, processing.display_texts());
    if (check.status != 0) return check.box ? processing.box(*check.box) : nullptr;
    EntryBox* refused = pages_.definitions.first_refused();
    if (refused)
        workbench_.session.prompts.message(tr("%1: “%2” is not accepted")
                                               .arg(refused->accessibleName(), refused->text().left(40))
                                               .toStdString());
    return refused;
}

void PageController::enter_model_page() {
    flow::ModelView& view = pages_.charts.view();
    if (edit::line_loaded(workbench_.session.workspace)) {
        const MessageScope messages(workbench_.session.prompts);  // shown when the first page is back
        pages_.definitions.graph_options().take_usual_values();
        if (QWidget* wrong = wrong_box()) {
            show_definitions();
            wrong->setFocus();
            return;
        }
        pages_.definitions.processing().update_base_frame();
    }
    view.set_on_page(true);
    view.display_model();
}

}  // namespace anomalis::window
