#pragma once

#include <QObject>

#include "window/shell/model_news.h"

class QWidget;

namespace anomalis::edit {
struct HistoryStep;
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class LineController;
class Menus;
class StatusPanels;

/// The menu Edit: one step back, one step forward.
class HistoryController : public QObject {
    Q_OBJECT

  public:
    HistoryController(QWidget& window, edit::Workbench& workbench, Actions& actions, Menus& menus,
                      ModelNews& news, LineController& line, StatusPanels& status);

  protected:
    /// A box without a half-typed text leaves the keys of undo and redo to the menu.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void show_names();
    void move(bool back);
    /// Boxes, line, bodies and charts follow a step.
    void tell(const edit::HistoryStep& step);

    QWidget& window_;
    edit::Workbench& workbench_;
    Actions& actions_;
    ModelNews& news_;
    LineController& line_;
    StatusPanels& status_;
};

}  // namespace anomalis::window
