#include "window/shell/busy_input.h"

#include <utility>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QTabBar>

namespace anomalis::window {

namespace {

bool is_input(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TabletPress:
        case QEvent::TabletMove:
        case QEvent::TabletRelease:
        case QEvent::NativeGesture:
            return true;
        default:
            return false;
    }
}

bool takes_input(const QWidget& widget) {
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QAbstractSlider*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget) ||
           qobject_cast<const QAbstractItemView*>(&widget) || qobject_cast<const QTabBar*>(&widget);
}

}  // namespace

BusyInput::BusyInput(QMainWindow& window, QWidget& stop_button, QAction& stop_action,
                     std::function<void()> stop, std::function<void(QKeyCombination)> turned_away)
    : QObject(&window),
      window_(window),
      stop_button_(stop_button),
      stop_action_(stop_action),
      stop_(std::move(stop)),
      turned_away_(std::move(turned_away)) {
    stop_action_.setEnabled(false);
}

void BusyInput::follow(bool running) {
    stop_action_.setEnabled(running);
    if (running) {
        switch_off();
        QApplication::instance()->installEventFilter(this);
    } else {
        QApplication::instance()->removeEventFilter(this);
        switch_on();
    }
}

void BusyInput::switch_off() {
    focus_ = QApplication::focusWidget();
    for (QWidget* widget : window_.findChildren<QWidget*>()) {
        if (is_served(widget) || !takes_input(*widget) || widget->testAttribute(Qt::WA_ForceDisabled))
            continue;
        const auto* box = qobject_cast<const QLineEdit*>(widget);
        if (!widget->isEnabled() || (box && box->isReadOnly())) continue;
        widget->setEnabled(false);  // a bar or an arrow that is held down stops repeating
        widgets_.emplace_back(widget);
    }
    for (QAction* action : window_.findChildren<QAction*>()) {
        if (action == &stop_action_ || !action->isEnabled()) continue;
        action->setEnabled(false);
        actions_.emplace_back(action);
    }
}

void BusyInput::switch_on() {
    for (const auto& widget : widgets_)
        if (widget) widget->setEnabled(true);
    for (const auto& action : actions_)
        if (action) action->setEnabled(true);
    widgets_.clear();
    actions_.clear();
    if (focus_) focus_->setFocus();
}

bool BusyInput::is_served(const QObject* watched) const {
    return watched == &stop_button_ || (second_button_ && watched == second_button_);
}

/// A message box that a fault has opened must be answered. Events of the window itself find their widget
/// later, and come here again.
bool BusyInput::lets_through(const QObject* watched) const {
    return QApplication::activeModalWidget() || watched->isWindowType() || is_served(watched) ||
           watched == &stop_action_;
}

bool BusyInput::eventFilter(QObject* watched, QEvent* event) {
    if (!is_input(event->type()) || QApplication::activeModalWidget()) return false;
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<QKeyEvent&>(*event);
        if (key.key() == Qt::Key_Escape) {
            if (event->type() == QEvent::KeyPress) stop_();
            event->accept();
            return true;
        }
        turned_away_(key.keyCombination());
    }
    return !lets_through(watched);
}

}  // namespace anomalis::window
