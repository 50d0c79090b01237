#include "window/shell/form_history.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>

#include "edit/change.h"
#include "window/panels/status_panels.h"
#include "window/shell/form_anomalis.h"
#include "window/shell/form_menus.h"

namespace anomalis::window {

namespace {

const QKeySequence undo_keys(Qt::CTRL | Qt::Key_Z);
const QKeySequence redo_keys(Qt::CTRL | Qt::SHIFT | Qt::Key_Z);

}  // namespace

FormHistory::FormHistory(Form_anomalis& form) : QObject(&form), form_(form) {
    auto* menu = new QMenu(tr("&Edit"), &form);
    menu->setObjectName("menu_edit");
    menu->setToolTipsVisible(true);
    form.menuBar()->insertMenu(form.menus().view_menu().menuAction(), menu);
    undo_ =
        form.menus().add_action(*menu, "menu_undo", tr("&Undo"),
                                tr("Take the last change of the model or its settings back, up to %1 steps")
                                    .arg(edit::History::kept_steps));
    redo_ = form.menus().add_action(*menu, "menu_redo", tr("&Redo"), tr("Make the change again"));
    undo_->setShortcut(undo_keys);
    redo_->setShortcut(redo_keys);
    connect(undo_, &QAction::triggered, this, [this] { move(true); });
    connect(redo_, &QAction::triggered, this, [this] { move(false); });
    connect(menu, &QMenu::aboutToShow, this, &FormHistory::show_names);
    // Outside the menu both always answer to their keys.
    connect(menu, &QMenu::aboutToHide, this, [this] {
        undo_->setEnabled(true);
        redo_->setEnabled(true);
    });
    qApp->installEventFilter(this);
}

void FormHistory::show_names() {
    const edit::History& history = form_.workbench().history;
    const auto text = [](const QString& verb, const std::string& name) {
        return name.empty() ? verb : verb + " " + QString::fromStdString(name).replace("&", "&&");
    };
    undo_->setText(text(tr("&Undo"), history.undo_name()));
    redo_->setText(text(tr("&Redo"), history.redo_name()));
    undo_->setEnabled(history.can_undo());
    redo_->setEnabled(history.can_redo());
}

void FormHistory::move(bool back) {
    if (form_.guards().closed()) return;
    form_.commit_entries();
    const edit::HistoryStep step =
        back ? edit::undo_change(form_.workbench()) : edit::redo_change(form_.workbench());
    if (!step.moved) {
        form_.status().show_text(back ? tr("Nothing to undo") : tr("Nothing to redo"));
        return;
    }
    form_.history_moved(step);
    form_.status().show_text(
        (back ? tr("Undone: %1") : tr("Made again: %1")).arg(QString::fromStdString(step.what)));
}

bool FormHistory::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride) return false;
    const auto* box = qobject_cast<QLineEdit*>(watched);
    if (!box || box->isModified() || box->window() != &form_) return false;
    const auto& key = static_cast<QKeyEvent&>(*event);
    const QKeySequence pressed(key.keyCombination());
    if (pressed != undo_keys && pressed != redo_keys) return false;
    event->ignore();
    return true;
}

}  // namespace anomalis::window
