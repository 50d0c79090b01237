#pragma once

#include <vector>

#include <QWidget>

#include "edit/workbench.h"
#include "flow/examples.h"
#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

class QStackedWidget;

namespace anomalis::window {

class DataHeadView;
class DefinitionsPanel;
class EntryBox;
class FieldPanel;
class GraphOptionsPanel;
class ProcessingPanel;
class WelcomePanel;

/// The first tab: what the data are, how they are processed and drawn, and the head of the data file.
class DefinitionsPage : public QWidget {
    Q_OBJECT

  public:
    DefinitionsPage(edit::Workbench& workbench, FormGuards& guards, ModelNews& news,
                    const std::vector<flow::ExampleFile>& examples);

    DefinitionsPanel& definitions() { return *definitions_; }
    ProcessingPanel& processing() { return *processing_; }
    FieldPanel& field() { return *field_; }
    GraphOptionsPanel& graph_options() { return *graph_options_; }

    /// Fills the controls from the workspace, the final line's box only when it is asked for.
    void fill(bool with_final_line = false);
    void follow(WhatChanged what);

    /// The first box on show that holds a text which was refused, null when none does.
    EntryBox* first_refused() const;

  signals:
    /// `instead` says what holds in place of the text.
    void text_refused(const QString& caption, const QString& text, const QString& instead);

  private:
    /// Lays the head of the data file out for the present definition.
    void show_head();

    edit::Workbench& workbench_;
    DefinitionsPanel* definitions_;
    FieldPanel* field_;
    ProcessingPanel* processing_;
    GraphOptionsPanel* graph_options_;
    QStackedWidget* head_stack_;
    WelcomePanel* welcome_;
    DataHeadView* head_;
};

}  // namespace anomalis::window
