#pragma once

#include <QObject>

class QAction;
class QMenu;

namespace anomalis::edit {
struct HistoryStep;
}  // namespace anomalis::edit

namespace anomalis::window {

class Form_anomalis;

/// The menu Edit: one step back, one step forward.
class FormHistory : public QObject {
    Q_OBJECT

  public:
    explicit FormHistory(Form_anomalis& form);

  protected:
    /// A box without a half-typed text leaves the keys of undo and redo to the menu.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void show_names();
    void move(bool back);

    Form_anomalis& form_;
    QAction* undo_;
    QAction* redo_;
};

}  // namespace anomalis::window
