#pragma once

#include <functional>
#include <map>
#include <vector>

#include <QObject>

#include "window/shell/action_table.h"

class QAction;
class QMenu;
class QWidget;

namespace anomalis::window {

class EntryGate;
struct FormGuards;

/// The actions of the table, alive. Controllers say what each does; an action gets to its handler only
/// through the gate.
class Actions : public QObject {
    Q_OBJECT

  public:
    /// All outlive the actions; the keys work in `window`.
    Actions(QWidget& window, const edit::Workbench& workbench, const FormGuards& guards,
            const EntryGate& gate, int example_count);

    void on(ActionId id, std::function<void()> handler);
    /// The handler of a family is told which member was chosen, 0 the first.
    void on_member(ActionId id, std::function<void(int)> handler);

    /// What only a controller knows: beside its row, the action needs `possible` to do anything.
    void only_if(ActionId id, std::function<bool()> possible);

    QAction& action(ActionId id) { return *family(id).front(); }
    const std::vector<QAction*>& family(ActionId id) const;

    /// Whether actions can do anything, and their check marks, follow the model. A run keeps all but its stop
    /// closed.
    void refresh();

  private:
    QAction* make(QWidget& window, const ActionRow& row, int member);
    void trigger(const ActionRow& row, int member);
    bool can_do(const ActionRow& row) const;

    const edit::Workbench& workbench_;
    const FormGuards& guards_;
    const EntryGate& gate_;
    std::vector<std::vector<QAction*>> families_;  ///< by row
    std::vector<std::function<void(int)>> handlers_;
    std::map<ActionId, std::function<bool()>> possible_;
};

/// Puts entries above all others of a menu that has some, a line under them.
void put_first(QMenu& menu, const std::vector<QAction*>& entries);

}  // namespace anomalis::window
