#pragma once

#include <utility>
#include <vector>

#include <QObject>

#include "window/shell/action_table.h"

class QAction;
class QMainWindow;
class QMenu;

namespace anomalis::window {

class Actions;
struct MenuItem;

/// The menu bar, made from the menu tree.
class Menus : public QObject {
    Q_OBJECT

  public:
    Menus(QMainWindow& window, Actions& actions, const edit::Workbench& workbench);

    /// Menus that speak of a loaded line are there exactly while there is one, the line above a family while
    /// that has an entry to show.
    void refresh();

  signals:
    /// Some menu of the bar is about to be looked at, after marks and texts were brought up to date.
    void opening();
    void closing();

  private:
    QMenu* open_menu(QMainWindow& window, QMenu* above, const MenuItem& item);
    void add_entries(QMenu& menu, ActionId id);

    Actions& actions_;
    const edit::Workbench& workbench_;
    std::vector<std::pair<QMenu*, When>> bar_;
    std::vector<std::pair<QAction*, ActionId>> lines_above_families_;
    std::vector<std::pair<QMenu*, ActionId>> family_menus_;  ///< of nothing else
};

}  // namespace anomalis::window
