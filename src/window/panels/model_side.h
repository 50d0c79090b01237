#pragma once

#include <QWidget>

#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

class QHBoxLayout;
class QPushButton;
class QStackedWidget;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class BodyGridView;
class BodyPanel;
class InvertPanel;
class MovePanel;
class PipePanel;

/// The right column of the model page: the current body, its parameters, and below them the bars that move it
/// or the controls of the inversion. It keeps its width when the window grows.
class ModelSide : public QWidget {
    Q_OBJECT

  public:
    ModelSide(edit::Workbench& workbench, FormGuards& guards, ModelNews& news);

    BodyPanel& body() { return *body_; }
    InvertPanel& invert() { return *invert_; }

    /// Shows the current body everywhere in the column; without one the controls are empty and disabled.
    void display_body_parameters();
    void follow(WhatChanged what);
    /// Takes over what is being typed: before a command, and before another page is shown.
    void commit();

    /// Shows the inversion, or the bars; nothing is told.
    void show_invert_view(bool invert);
    bool invert_view() const;

  signals:
    /// The person chose another body, which is not yet the current one.
    void body_wanted(int number);
    void text_refused(const QString& caption, const QString& text, const QString& instead);
    /// `Command_toggle_invert_body` was pressed.
    void other_view_wanted();

  private:
    QWidget* make_column();
    QWidget* make_tabs();
    void wire();
    void ask_for_other_view();

    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    BodyPanel* body_;
    BodyGridView* grid_;
    PipePanel* pipe_;
    QWidget* wire_;
    MovePanel* move_;
    InvertPanel* invert_;
    QPushButton* toggle_;   ///< the tab that is not on show
    QPushButton* on_show_;  ///< the one that is
    QHBoxLayout* tabs_ = nullptr;
    QStackedWidget* views_;
};

}  // namespace anomalis::window
