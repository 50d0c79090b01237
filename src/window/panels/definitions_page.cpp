#include "window/panels/definitions_page.h"

#include <QHBoxLayout>
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
    auto* left = new QVBoxLayout;
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
    right->addWidget(graph_options_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 8, 8, 8);
    row->setSpacing(8);
    row->addLayout(left);
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
