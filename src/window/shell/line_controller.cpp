#include "window/shell/line_controller.h"

#include <QApplication>
#include <QGridLayout>
#include <QPushButton>

#include "edit/transform_change.h"
#include "edit/workbench.h"
#include "flow/kept_files.h"
#include "flow/open_flow.h"
#include "intake/load_report.h"
#include "transform/qt/form_define_point_transform.h"
#include "window/panels/definitions_page.h"
#include "window/panels/definitions_panel.h"
#include "window/panels/processing_panel.h"
#include "window/panels/status_panels.h"
#include "window/shell/entry_gate.h"
#include "window/shell/form_load_report.h"
#include "window/shell/new_line.h"

namespace anomalis::window {

namespace {

constexpr int transform_row = 7;  // of the definitions, beside the load
constexpr int transform_column = 4;

/// The pointer shows that work is going on, on every way out.
class WaitCursor {
  public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace

LineController::LineController(edit::Workbench& workbench, const EntryGate& gate, ModelNews& news,
                               DefinitionsPage& page, StatusPanels& status)
    : QObject(&page), workbench_(workbench), gate_(gate), news_(news), page_(page), status_(status) {
    DefinitionsPanel& definitions = page_.definitions();
    connect(&definitions, &DefinitionsPanel::data_file_wanted, this, [this] {
        if (gate_.pass()) choose_data();
    });
    connect(&definitions, &DefinitionsPanel::load_wanted, this, [this] {
        if (gate_.pass()) load();
    });
    QPushButton* transform =
        make_button({"Command_define_observed_transform", "Define transform...", "",
                     "Turn, stretch and shift the coordinates of the data file, and change "
                     "their elevations, before anything else is done with them"});
    connect(&status_, &StatusPanels::message_clicked, this, &LineController::show_report);
    definitions.grid()->addWidget(transform, transform_row, transform_column, Qt::AlignLeft);
    connect(transform, &QPushButton::clicked, this, [this] {
        if (gate_.pass()) define_transform();
    });
}

void LineController::load() {
    const MessageScope messages(workbench_.session.prompts);  // shown when the pointer is an arrow again
    const WaitCursor wait;
    status_.show_progress(0);
    page_.definitions().blank_results();
    const flow::LoadResult result = flow::load_line(workbench_);
    show(result);
    status_.show_progress(-1);
    if (workbench_.reports.load)
        status_.show_text(QString::fromStdString(intake::report_summary(*workbench_.reports.load)));
}

void LineController::show_line() {
    show(flow::line_on_show(workbench_.session.workspace));
}

void LineController::show(const flow::LoadResult& result) {
    page_.definitions().show_result(result);
    page_.processing().show_base_texts(result.mag_base, result.grav_base);
    begin_anew(workbench_, news_, News::line);
}

void LineController::line_dropped(WhatChanged also) {
    page_.definitions().blank_results();
    news_.tell(News::line | also);
}

void LineController::choose_data() {
    if (flow::choose_data_file(workbench_)) line_dropped(News::boxes);
}

void LineController::show_report() {
    if (!workbench_.reports.load) return;
    if (!report_) report_ = new FormLoadReport(page_.window());
    report_->show_report(*workbench_.reports.load);
}

void LineController::define_transform() {
    Session& session = workbench_.session;
    transform::TransformDialog dialog(session.workspace.transform, transform_tab_,
                                      transform::stored_transform_folder(session.settings), session.prompts,
                                      flow::kept_files(session.workspace));
    transform::Form_define_point_transform form(dialog, session.settings, page_.window());
    const int result = form.exec();
    transform_tab_ = dialog.tab();
    if (result != QDialog::Accepted || !edit::change_transform(workbench_, dialog.transform())) return;
    line_dropped(News::definition);
    status_.show_text(tr("The transform has changed: load the data again"));
}

}  // namespace anomalis::window
