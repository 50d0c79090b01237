#include "window/shell/history_controller.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/open_flow.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/line_controller.h"
#include "window/shell/menus.h"

namespace anomalis::window {

HistoryController::HistoryController(QWidget& window, edit::Workbench& workbench, Actions& actions,
                                     Menus& menus, ModelNews& news, LineController& line,
                                     StatusPanels& status)
    : QObject(&window),
      window_(window),
      workbench_(workbench),
      actions_(actions),
      news_(news),
      line_(line),
      status_(status) {
    actions.on(ActionId::undo, [this] { move(true); });
    actions.on(ActionId::redo, [this] { move(false); });
    connect(&menus, &Menus::opening, this, &HistoryController::show_names);
    connect(&menus, &Menus::closing, &actions, &Actions::refresh);
    qApp->installEventFilter(this);
}

void HistoryController::show_names() {
    const edit::History& history = workbench_.history;
    const auto show = [this](ActionId id, const std::string& name, bool possible) {
        const QString verb = tr(action_row(id).text);
        QAction& action = actions_.action(id);
        action.setText(name.empty() ? verb : verb + " " + QString::fromStdString(name).replace("&", "&&"));
        action.setEnabled(possible);
    };
    show(ActionId::undo, history.undo_name(), history.can_undo());
    show(ActionId::redo, history.redo_name(), history.can_redo());
}

void HistoryController::move(bool back) {
    const edit::HistoryStep step = back ? edit::undo_change(workbench_) : edit::redo_change(workbench_);
    if (!step.moved) {
        status_.show_text(back ? tr("Nothing to undo") : tr("Nothing to redo"));
        return;
    }
    tell(step);
    status_.show_text(
        (back ? tr("Undone: %1") : tr("Made again: %1")).arg(QString::fromStdString(step.what)));
}

void HistoryController::tell(const edit::HistoryStep& step) {
    if (step.another_file || step.line_lost) flow::refresh_data_head(workbench_);
    if (step.settings) news_.tell(News::boxes | News::step_taken);
    if (step.line_lost) line_.line_dropped({});
    if (step.line_back) line_.show_line();
    if (step.line_wanted) line_.load();
    news_.tell(News::bodies | News::current_body | News::settings | News::file);
}

bool HistoryController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride) return false;
    const auto* box = qobject_cast<QLineEdit*>(watched);
    if (!box || box->isModified() || box->window() != &window_) return false;
    const QKeyCombination pressed = static_cast<QKeyEvent&>(*event).keyCombination();
    if (pressed != action_row(ActionId::undo).key && pressed != action_row(ActionId::redo).key) return false;
    event->ignore();
    return true;
}

}  // namespace anomalis::window
