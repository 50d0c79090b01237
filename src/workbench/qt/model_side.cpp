#include "workbench/qt/model_side.h"

#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "workbench/qt/body_panel.h"
#include "workbench/qt/invert_panel.h"
#include "workbench/qt/move_panel.h"
#include "workbench/qt/panel.h"
#include "workbench/workbench.h"

namespace anomalis {

namespace {

constexpr int column_width = 372;  // pixels

}  // namespace

ModelSide::ModelSide(Workbench& workbench, FormGuards& guards)
    : workbench_(workbench),
      guards_(guards),
      body_(new BodyPanel(workbench, guards)),
      move_(new MovePanel(workbench, guards)),
      invert_(new InvertPanel(workbench, guards)),
      toggle_(make_button({"Command_toggle_invert_body", "Perform Inversion", "",
                           "Change between the bars that move the body and the controls of the inversion"})),
      views_(new QStackedWidget) {
    setFixedWidth(column_width);
    views_->addWidget(move_);
    views_->addWidget(invert_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 6, 8, 6);
    column->setSpacing(6);
    column->addWidget(body_);
    column->addWidget(toggle_);
    column->addWidget(views_);
    column->addStretch(1);
    connect(body_, &BodyPanel::edited, this, &ModelSide::edited);
    connect(body_, &BodyPanel::selected, this, &ModelSide::body_selected);
    connect(move_, &MovePanel::edited, this, &ModelSide::edited);
    connect(toggle_, &QPushButton::clicked, this, &ModelSide::toggle_invert_view);
}

void ModelSide::display_body_parameters() {
    const SuspendEvents suspend(guards_);
    body_->fill();
    move_->fill();
}

void ModelSide::reset_form_display() {
    workbench_.view.current_body = 1;
    show_invert_view(false);
    display_body_parameters();
}

bool ModelSide::invert_view() const {
    return views_->currentWidget() == invert_;
}

void ModelSide::show_invert_view(bool invert) {
    views_->setCurrentWidget(invert ? static_cast<QWidget*>(invert_) : move_);
    toggle_->setText(invert ? tr("Move This Body") : tr("Perform Inversion"));
}

void ModelSide::toggle_invert_view() {
    const Workspace& workspace = workbench_.session.workspace;
    if (guards_.closed() || !line_loaded(workspace) || workspace.body_count < 1) return;
    show_invert_view(!invert_view());
    emit invert_view_toggled(invert_view());
}

}  // namespace anomalis
