#pragma once

#include <QObject>

class QAction;
class QPushButton;

namespace anomalis::window {

class Form_anomalis;

/// The choice of the formulas: its menu entry, and in the status bar how far the classic curve of the current
/// body is from the exact one, with a click to change over.
class FormFormulas : public QObject {
    Q_OBJECT

  public:
    explicit FormFormulas(Form_anomalis& form);

  private:
    void choose(bool exact);
    /// Menu and status bar follow what is in force and what was calculated.
    void refresh();
    void show_difference();

    Form_anomalis& form_;
    QAction* exact_;
    QPushButton* difference_;
};

}  // namespace anomalis::window
