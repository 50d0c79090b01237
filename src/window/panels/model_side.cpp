#include "window/panels/model_side.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "edit/body_form.h"
#include "edit/workbench.h"
#include "window/panels/body_panel.h"
#include "window/panels/invert_panel.h"
#include "window/panels/move_panel.h"
#include "window/panels/pipe_panel.h"
#include "window/widgets/body_grid_view.h"
#include "window/widgets/entry_box.h"
#include "window/widgets/panel.h"

namespace anomalis::window {

namespace {

constexpr int column_width = 396;  // pixels

}  // namespace

ModelSide::ModelSide(edit::Workbench& workbench, FormGuards& guards, ModelNews& news)
    : workbench_(workbench),
      guards_(guards),
      news_(news),
      body_(new BodyPanel(workbench, guards, news)),
      grid_(new BodyGridView(workbench, guards, news)),
      pipe_(new PipePanel(workbench, guards, news)),
      wire_(make_wire_frame()),
      move_(new MovePanel(workbench, guards, news)),
      invert_(new InvertPanel(workbench.session, guards)),
      toggle_(make_button({"Command_toggle_invert_body", "Perform Inversion", "",
                           "Change between the bars that move the body and the controls of the inversion"})),
      on_show_(new QPushButton),
      views_(new QStackedWidget) {
    setFixedWidth(column_width);
    // A low window scrolls the column rather than squeeze it.
    auto* scroller = new QScrollArea;
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setWidgetResizable(true);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->setWidget(make_column());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroller);
    show_invert_view(false);
    wire();
}

QWidget* ModelSide::make_column() {
    views_->addWidget(move_);
    views_->addWidget(invert_);
    auto* holder = new QWidget;
    auto* column = new QVBoxLayout(holder);
    column->setContentsMargins(4, 6, 8, 6);
    column->setSpacing(6);
    QWidget* tabs = make_tabs();
    for (QWidget* part : std::initializer_list<QWidget*>{body_, grid_, pipe_, wire_, tabs, views_})
        column->addWidget(part);
    column->addStretch(1);
    return holder;
}

/// Two tabs over one place. The one that is not on show is the button that changes to it, so captions keep
/// their places while the button goes to the other side.
QWidget* ModelSide::make_tabs() {
    auto* holder = new QWidget;
    holder->setObjectName("Tabs_move_invert");
    tabs_ = new QHBoxLayout(holder);
    tabs_->setContentsMargins(0, 0, 0, 0);
    tabs_->setSpacing(0);
    for (QPushButton* tab : {on_show_, toggle_}) {
        tab->setProperty("tab", true);
        tab->setAutoDefault(false);
        tab->setCheckable(tab == on_show_);
        tabs_->addWidget(tab, 1);
    }
    on_show_->setObjectName("Label_view_on_show");
    on_show_->setChecked(true);
    on_show_->setFocusPolicy(Qt::NoFocus);
    on_show_->setAttribute(Qt::WA_TransparentForMouseEvents);
    return holder;
}

void ModelSide::wire() {
    connect(body_, &BodyPanel::body_wanted, this, &ModelSide::body_wanted);
    const auto value_stays = [this](const QString& caption, const QString& text) {
        emit text_refused(caption, text, tr("the value stays"));
    };
    connect(grid_, &BodyGridView::text_refused, this, value_stays);
    connect(pipe_, &PipePanel::text_refused, this, value_stays);
    connect(invert_, &InvertPanel::text_refused, this, &ModelSide::text_refused);
    connect(toggle_, &QPushButton::clicked, this, &ModelSide::ask_for_other_view);
}

void ModelSide::display_body_parameters() {
    const SuspendEvents suspend(guards_);
    const ModelBody* body = edit::current_body(std::as_const(workbench_));
    body_->fill();
    grid_->fill();
    pipe_->fill();
    pipe_->setVisible(body && body->type == pipe);
    wire_->setVisible(body && body->type == BodyType::wire);
    move_->fill();
}

void ModelSide::follow(WhatChanged what) {
    constexpr WhatChanged shown =
        News::parameters | News::bodies | News::current_body | News::settings | News::line | News::form_reset;
    if (what & shown) display_body_parameters();
}

void ModelSide::commit() {
    if (guards_.closed()) return;
    grid_->commit_editor();
    commit_boxes(*this);
}

bool ModelSide::invert_view() const {
    return views_->currentWidget() == invert_;
}

void ModelSide::show_invert_view(bool invert) {
    QWidget* shown = invert ? static_cast<QWidget*>(invert_) : move_;
    // The room below the grid is that of the view on show, not of the taller one.
    for (QWidget* view : std::initializer_list<QWidget*>{move_, invert_})
        view->setSizePolicy(QSizePolicy::Preferred,
                            view == shown ? QSizePolicy::Preferred : QSizePolicy::Ignored);
    views_->setCurrentWidget(shown);
    toggle_->setText(invert ? tr("Move This Body") : tr("Perform Inversion"));
    on_show_->setText(invert ? tr("Perform Inversion") : tr("Move This Body"));
    tabs_->removeWidget(toggle_);
    tabs_->insertWidget(invert ? 0 : 1, toggle_, 1);
}

void ModelSide::ask_for_other_view() {
    const Workspace& workspace = workbench_.session.workspace;
    if (!guards_.pass() || !edit::line_loaded(workspace) || workspace.body_count < 1) return;
    emit other_view_wanted();
}

}  // namespace anomalis::window
