#pragma once

#include <QWidget>

#include "workbench/qt/form_guards.h"

class QPushButton;
class QStackedWidget;

namespace anomalis {

class BodyPanel;
class InvertPanel;
class MovePanel;
struct Workbench;

/// The right column of the model page: the current body, its parameters, and below them the bars that move it
/// or the controls of the inversion. It keeps its width when the window grows.
class ModelSide : public QWidget {
    Q_OBJECT

  public:
    ModelSide(Workbench& workbench, FormGuards& guards);

    InvertPanel& invert() { return *invert_; }

    /// Shows the current body everywhere in the column; without one the controls are empty and disabled.
    void display_body_parameters();
    /// Body 1 becomes the current one, the bars are shown. After a read, after the first body was added,
    /// after the last one was deleted.
    void reset_form_display();

    /// Shows the inversion, or the bars; nothing is told.
    void show_invert_view(bool invert);
    bool invert_view() const;

  signals:
    /// The model was changed.
    void edited();
    /// Another body became the current one.
    void body_selected();
    /// `Command_toggle_invert_body` was pressed and the other view is shown.
    void invert_view_toggled(bool invert);

  private:
    void toggle_invert_view();

    Workbench& workbench_;
    FormGuards& guards_;
    BodyPanel* body_;
    MovePanel* move_;
    InvertPanel* invert_;
    QPushButton* toggle_;
    QStackedWidget* views_;
};

}  // namespace anomalis
