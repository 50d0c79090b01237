#include "window/panels/definitions_page.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "show/data_head.h"
#include "window/panels/definitions_panel.h"
#include "window/panels/processing_panel.h"
#include "window/panels/settings_panels.h"
#include "window/panels/welcome_panel.h"
#include "window/widgets/data_head_view.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int widest_options = 700;  // pixels

/// A low window scrolls the column rather than squeeze it; the column is never cut at its side.
class ColumnScroller : public QScrollArea {
  public:
    explicit ColumnScroller(QWidget* column) {
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidgetResizable(true);
        setFocusPolicy(Qt::NoFocus);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
        setWidget(column);
        column->setAutoFillBackground(false);
        viewport()->setAutoFillBackground(false);
        verticalScrollBar()->installEventFilter(this);
    }
    QSize sizeHint() const override { return widget()->sizeHint() + QSize(bar_width(), 0); }
    QSize minimumSizeHint() const override {
        return {widget()->minimumSizeHint().width() + bar_width(), least_height};
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool bar = watched == verticalScrollBar();
        if (bar && (event->type() == QEvent::Show || event->type() == QEvent::Hide)) updateGeometry();
        return QScrollArea::eventFilter(watched, event);
    }

  private:
    static constexpr int least_height = 300;
    int bar_width() const {
        return verticalScrollBar()->isVisible() ? verticalScrollBar()->sizeHint().width() : 0;
    }
};

}  // namespace

DefinitionsPage::DefinitionsPage(edit::Workbench& workbench, FormGuards& guards, ModelNews& news,
                                 const std::vector<flow::ExampleFile>& examples)
    : workbench_(workbench),
      definitions_(new DefinitionsPanel(workbench, guards, news)),
      field_(new FieldPanel(workbench, guards, news)),
      processing_(new ProcessingPanel(workbench, guards, news)),
      graph_options_(new GraphOptionsPanel(workbench, guards, news)),
      head_stack_(new QStackedWidget),
      welcome_(new WelcomePanel("Frame_welcome", examples)),
      head_(new DataHeadView) {
    auto* column = new QWidget;
    auto* left = new QVBoxLayout(column);
    left->setContentsMargins(0, 0, 0, 0);
    left->setSpacing(8);
    left->addWidget(definitions_);
    left->addWidget(field_);
    left->addWidget(processing_);
    left->addStretch();
    head_stack_->addWidget(welcome_);
    head_stack_->addWidget(head_);
    auto* right = new QVBoxLayout;
    right->setSpacing(8);
    right->addWidget(head_stack_, 1);
    // Numbers need no more room on a wide screen; the head of the file does.
    graph_options_->setMaximumWidth(widest_options);
    auto* options = new QHBoxLayout;
    options->addWidget(graph_options_, 1000);
    options->addStretch(1);
    right->addLayout(options);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 8, 8, 8);
    row->setSpacing(8);
    row->addWidget(new ColumnScroller(column));
    row->addLayout(right, 1);

    for (SettingsPanel* panel :
         {static_cast<SettingsPanel*>(field_), static_cast<SettingsPanel*>(processing_),
          static_cast<SettingsPanel*>(graph_options_)})
        connect(panel, &SettingsPanel::text_refused, this, &DefinitionsPage::text_refused);
}

void DefinitionsPage::fill(bool with_final_line) {
    definitions_->fill(with_final_line);
    field_->fill();
    processing_->fill();
    graph_options_->fill();
    show_head();
}

EntryBox* DefinitionsPage::first_refused() const {
    for (EntryBox* box : findChildren<EntryBox*>())
        if (box->refused() && box->isVisibleTo(this)) return box;
    return nullptr;
}

void DefinitionsPage::follow(WhatChanged what) {
    if (what & News::boxes) return fill(bool(what & News::step_taken));
    if (what & (News::settings | News::line)) processing_->show_filter_tips();
    if (what & News::settings) {
        processing_->update_base_frame();
        field_->show_source();
    }
    if (what & News::definition) show_head();
}

void DefinitionsPage::show_head() {
    const DataDefinition& definition = workbench_.session.workspace.definition;
    head_->show_head(show::lay_out_data_head(definition, workbench_.head));
    head_->setPlaceholderText(tr("Nothing can be read from\n%1").arg(shown(definition.data_file)));
    head_stack_->setCurrentWidget(definition.data_file.empty() ? static_cast<QWidget*>(welcome_) : head_);
}

}  // namespace anomalis::window
